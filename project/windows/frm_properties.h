#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QDialog>

class QLineEdit;
class QPlainTextEdit;

namespace tonvex {

/// "Properties": title, author and comments of the song, which its file keeps. OK takes them over, "Cancel"
/// and Escape leave all as it was. Interface thread. Session and theme outlive the window.
class frmProperties final : public QDialog {
    Q_OBJECT
public:
    frmProperties(Session& session, const Theme& theme, QWidget* parent = nullptr);

    void accept() override;

signals:
    void changed();

private:
    Session& session;
    QLineEdit* Text1 = nullptr;      ///< title
    QLineEdit* Text2 = nullptr;      ///< author
    QPlainTextEdit* Text3 = nullptr; ///< comments
};

} // namespace tonvex
