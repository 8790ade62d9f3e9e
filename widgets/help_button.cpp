#include "widgets/help_button.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QPushButton>

namespace tonvex {

bool Show_Help_From(QWidget* widget, const QString& page) {
    for (; widget != nullptr; widget = widget->parentWidget()) {
        if (auto* shower = dynamic_cast<Help_Shower*>(widget)) {
            shower->Show_Help(page);
            return true;
        }
    }
    return false;
}

QPushButton* Make_Help_Button(QWidget* parent, const QString& page) {
    auto* button = new QPushButton(QCoreApplication::translate("Help_Button", "Help"), parent);
    button->setObjectName(QStringLiteral("help"));
    button->setToolTip(QCoreApplication::translate("Help_Button", "Open the help page of this window"));
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, button,
                     [button, page] { (void)Show_Help_From(button, page); });
    return button;
}

QPushButton* Add_Help_Button(QDialogButtonBox& buttons, const QString& page) {
    QPushButton* button = Make_Help_Button(&buttons, page);
    buttons.addButton(button, QDialogButtonBox::HelpRole);
    return button;
}

} // namespace tonvex
