#pragma once

#include "app/session.h"
#include "widgets/plain_dialog.h"

#include <QTimer>

class QListWidget;
class QPushButton;

namespace tonvex {

/// "Undo list": the steps of the song, undone ones below; a double click, or the button, goes back or forward
/// to behind a step. It stays open and follows what is done meanwhile. Interface thread.
class frmUndoList final : public Plain_Dialog {
    Q_OBJECT
public:
    frmUndoList(Session& owner, const Theme& look, QWidget* parent = nullptr);
    ~frmUndoList() override;

private:
    void Update_View();
    void Go_To_Selected();

    Session& session;
    QListWidget* List1 = nullptr;
    QPushButton* go = nullptr;
    QTimer updateTimer;
    int subscription = 0;
};

} // namespace tonvex
