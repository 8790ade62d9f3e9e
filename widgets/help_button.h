#pragma once

#include <QString>

class QDialogButtonBox;
class QPushButton;
class QWidget;

namespace tonvex {

/// Who shows help pages: the main window. Found among a widget's parents, so no window needs to know it.
class Help_Shower {
public:
    virtual ~Help_Shower() = default;
    /// page: name of a file in the help folder, without its ending ("window-keyboard setup").
    virtual void Show_Help(const QString& page) = 0;
};

/// Asks the first of the parents that shows help. False when none does (a window under test).
bool Show_Help_From(QWidget* widget, const QString& page);

/// The Help button of a window. Never the default button. Owned by parent.
QPushButton* Make_Help_Button(QWidget* parent, const QString& page);
/// The same at the left end of a row of dialog buttons.
QPushButton* Add_Help_Button(QDialogButtonBox& buttons, const QString& page);

} // namespace tonvex
