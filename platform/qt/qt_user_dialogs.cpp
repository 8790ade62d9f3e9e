#include "platform/qt/qt_user_dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QStringList>

namespace tonvex {

namespace {

QMessageBox::Icon Icon_Of(Box_Kind kind) {
    switch (kind) {
    case Box_Kind::Warning:
        return QMessageBox::Warning;
    case Box_Kind::Critical:
        return QMessageBox::Critical;
    default:
        return QMessageBox::Information;
    }
}

QMessageBox::StandardButton Show_Box(QWidget* parent, QMessageBox::Icon icon, const std::string& title,
                                     const std::string& text, QMessageBox::StandardButtons buttons) {
    QMessageBox box(icon, QString::fromStdString(title), {}, buttons, parent);
    // File names come into these texts; they must not be taken for markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(QString::fromStdString(text));
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

/// Over the dialog that is open, else over the program's window.
QWidget* Owner(QWidget* programWindow) {
    QWidget* dialog = QApplication::activeModalWidget();
    return dialog != nullptr ? dialog : programWindow;
}

} // namespace

void Qt_User_Dialogs::Show_Message(Box_Kind kind, const std::string& text, const std::string& title) {
    Show_Box(Owner(parent), Icon_Of(kind), title, text, QMessageBox::Ok);
}

bool Qt_User_Dialogs::Ask_YesNo(const std::string& text, const std::string& title) {
    return Show_Box(Owner(parent), QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No) ==
           QMessageBox::Yes;
}

std::string Qt_User_Dialogs::Choose_File_To_Open(const std::string& title,
                                                 const std::vector<std::string>& filters) {
    QStringList patterns;
    for (const std::string& filter : filters)
        patterns << QString::fromStdString(filter);
    const QString chosen = QFileDialog::getOpenFileName(Owner(parent), QString::fromStdString(title),
                                                        lastFolder, patterns.join(QStringLiteral(";;")));
    if (!chosen.isEmpty())
        lastFolder = QFileInfo(chosen).absolutePath();
    return chosen.toStdString();
}

} // namespace tonvex
