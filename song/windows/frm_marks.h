#pragma once

#include "app/session.h"
#include "widgets/theme.h"

#include <QDialog>

class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace tonvex {

class Mark_Selection;
class Tool_Button;

/// "Marks": the song's marks by position. A click or Enter moves the song there; the tool bar adds, deletes
/// and sets; the field below renames the selected one.
/// Interface thread. Session, theme and selection outlive the window.
class frmMarks final : public QDialog {
    Q_OBJECT
public:
    frmMarks(Session& session, Theme& theme, Mark_Selection& selection, QWidget* parent = nullptr);
    ~frmMarks() override;

    /// The list as the model has it now.
    void Update_View();
    /// For a mark that was just made: its name is ready to be typed over.
    void Edit_Name();

private:
    void Make_Controls();
    Tool_Button* Make_Button(const char* objectName, const QString& picture, const QString& name,
                             const QString& key, void (Mark_Selection::*act)());
    QIcon Flag_Icon(int markRow) const;
    void Show_Selected();
    void Rename();
    void Add();

    Session& session;
    Theme& theme;
    Mark_Selection& selection;
    Tool_Button* addButton = nullptr;
    std::vector<Tool_Button*> needMark;
    QTreeWidget* list = nullptr;
    QLineEdit* name = nullptr;
    int namedRow = -1; ///< whose name the field holds
    int subscription = 0;
};

} // namespace tonvex
