#pragma once

#include "app/session.h"

#include <QDialog>

class QLineEdit;
class QListWidget;

namespace tonvex {

/// Picks the sound of a channel from the patch table, or on the drum slot from the kits. Typing searches;
/// arrows move; Enter or a double click takes. Changes the song through the hub alone.
/// Open it with open(): it blocks neither the caller nor a run.
class frmPatchSelectionWin final : public QDialog {
    Q_OBJECT
public:
    frmPatchSelectionWin(Session& session, std::int32_t channelId, QWidget* parent);

    void accept() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Search(const QString& text);

    Session& session;
    std::int32_t channelId;
    QLineEdit* search;
    QListWidget* list;
};

} // namespace tonvex
