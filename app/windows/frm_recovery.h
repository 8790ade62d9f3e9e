#pragma once

#include "app/left_songs.h"
#include "platform/user_dialogs.h"
#include "widgets/theme.h"

#include <QDialog>

class QPushButton;
class QTreeWidget;

namespace tonvex {

/// "Recover songs": what sessions without an orderly end left behind, one of which is restored, discarded, or
/// all left for the next start. Escape leaves them. Interface thread. All given to it outlive it.
class frmRecovery final : public QDialog {
    Q_OBJECT
public:
    frmRecovery(Left_Songs& songs, User_Dialogs& dialogs, const Theme& theme, QWidget* parent = nullptr);

    /// The row to be restored, once accepted.
    std::size_t Chosen() const;

private:
    void Fill();
    void Discard();

    Left_Songs& songs;
    User_Dialogs& dialogs;
    const Theme& theme;
    QTreeWidget* List1;
    QPushButton* restore;
    QPushButton* discard;
};

} // namespace tonvex
