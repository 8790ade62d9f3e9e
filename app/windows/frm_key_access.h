#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QDialog>

#include <vector>

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace tonvex {

/// "Keyboard Access": the functions of the program with their keys. Finds, runs and renames them and gives
/// them other keys. Interface thread. Session and theme outlive it.
class frmKeyAccess final : public QDialog {
    Q_OBJECT
public:
    frmKeyAccess(Session& session, const Theme& theme, QWidget* parent = nullptr);

    /// Row of the selected function; -1 when none is.
    int Selected_Row() const;
    /// The next key is taken for the selected function.
    bool Is_Armed() const noexcept { return armed; }

signals:
    void keysChanged();
    void helpAsked(const QString& page);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Make_Controls(const Theme& theme);
    QPushButton* Make_Button(const char* name, const QString& text, const QString& tip);
    /// The functions whose names hold the searched text.
    void Fill_List();
    void Show_Selected();
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Take_New_Name(int row, const QString& typed);
    void Arm(bool on);
    /// A key while armed.
    void Take_Key(int keyCode, int shiftMask);
    void Tell(const char* text);

    Session& session;
    QTreeWidget* List1 = nullptr;    ///< the functions
    QLineEdit* Text1 = nullptr;      ///< the key of the selected one
    QLineEdit* Text2 = nullptr;      ///< search
    QLineEdit* Text3 = nullptr;      ///< its internal name
    QPushButton* Command1 = nullptr; ///< assign a key
    QPushButton* Command2 = nullptr; ///< rename
    QPushButton* Command3 = nullptr; ///< run
    QPushButton* Command4 = nullptr; ///< help
    QLabel* hint = nullptr;
    std::vector<int> rowOfPlace; ///< row of the table by place in the list
    bool armed = false;
};

} // namespace tonvex
