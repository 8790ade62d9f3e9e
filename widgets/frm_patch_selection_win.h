#pragma once

#include "app/session.h"
#include "input/windows/test_sound.h"

#include <QDialog>

class QLineEdit;
class QListWidget;
class QListWidgetItem;

#include <functional>

namespace tonvex {

/// Picks the sound of a channel from the patch table, or on the drum slot from the kits. Typing searches;
/// arrows move; a click or "Preview" sounds a note on the patch, while a song runs too; Enter or a double
/// click takes. Changes the song through the hub alone; left without, the slot has the patch that it had.
/// Open it with open(): it blocks neither the caller nor a run.
class frmPatchSelectionWin final : public QDialog {
    Q_OBJECT
public:
    frmPatchSelectionWin(Session& session, std::int32_t channelId, QWidget* parent);
    /// For a patch that is not the channel's own: the row shown chosen, and who is told instead of the hub.
    void Choose_For(int patchRow, std::function<void(int patchRow)> whoTakes);

    void accept() override;
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Search(const QString& text);
    void Preview(const QListWidgetItem* item);
    /// What was previewed gives way to what the slot had.
    void Restore();

    Session& session;
    std::int32_t channelId;
    QLineEdit* search;
    QListWidget* list;
    Test_Sound sound;
    std::function<void(int)> taken;
    int patchBefore; ///< row of the table that the slot sounded with
    bool previewed = false;
};

} // namespace tonvex
