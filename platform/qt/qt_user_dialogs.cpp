#include "platform/qt/qt_user_dialogs.h"

#include "platform/qt/core_words.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>

namespace tonvex {

namespace {

constexpr int PROGRESS_SHOWN_AFTER_MS = 500;
constexpr int WHOLE_PERCENT = 100;

class Qt_Work_Progress final : public Work_Progress {
public:
    Qt_Work_Progress(QWidget* owner, const std::string& title)
        : window(QString(), QProgressDialog::tr("Cancel"), 0, WHOLE_PERCENT, owner) {
        window.setWindowTitle(Core_Words(title));
        window.setWindowModality(Qt::WindowModal);
        window.setMinimumDuration(PROGRESS_SHOWN_AFTER_MS);
        // The work is over when its owner says so, not when a step says 100.
        window.setAutoReset(false);
        window.setAutoClose(false);
        window.setValue(0);
    }
    bool Show(const std::string& status, int percent) override {
        window.setLabelText(Core_Words(status));
        window.setValue(percent);
        return !window.wasCanceled();
    }

private:
    QProgressDialog window;
};

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
    QMessageBox box(icon, Core_Words(title), {}, buttons, parent);
    // File names come into these texts; they must not be taken for markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(Core_Words(text));
    // Qt would take the cancel, which stands first.
    if (buttons.testFlag(QMessageBox::Cancel))
        box.setDefaultButton(QMessageBox::Yes);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

/// Of a filter as "Name (*.ending)", with its dot; empty for one that takes any file.
QString Ending_Of(const QString& filter) {
    static const QRegularExpression ENDING(QStringLiteral("\\*(\\.\\w+)"));
    return ENDING.match(filter).captured(1);
}

/// With the ending of the filter in force, unless it has that of one of them: a dot within a name, as in
/// "Sonata No. 5", does not make an ending.
QString With_Ending(const QString& file, const QStringList& filters, const QString& inForce) {
    const bool hasOne = std::any_of(filters.begin(), filters.end(), [&file](const QString& filter) {
        const QString ending = Ending_Of(filter);
        return !ending.isEmpty() && file.endsWith(ending, Qt::CaseInsensitive);
    });
    return hasOne ? file : file + Ending_Of(inForce);
}

/// Over the dialog that is open or worked in, which so is active again afterwards, else over the program's
/// window.
QWidget* Owner(QWidget* programWindow) {
    if (QWidget* const dialog = QApplication::activeModalWidget(); dialog != nullptr)
        return dialog;
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeWindow());
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

Answer Qt_User_Dialogs::Ask_YesNoCancel(const std::string& text, const std::string& title) {
    switch (Show_Box(Owner(parent), QMessageBox::Question, title, text,
                     QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel)) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    default:
        return Answer::Cancel;
    }
}

/// The working folder is the program's own, and no place for what the user makes.
QString Qt_User_Dialogs::Folder_To_Begin_In() const {
    if (!lastFolder.isEmpty())
        return lastFolder;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

std::string Qt_User_Dialogs::Choose_File_To_Open(const std::string& title,
                                                 const std::vector<std::string>& filters) {
    QStringList patterns;
    for (const std::string& filter : filters)
        patterns << Core_Words(filter);
    const QString chosen = QFileDialog::getOpenFileName(
        Owner(parent), Core_Words(title), Folder_To_Begin_In(), patterns.join(QStringLiteral(";;")));
    if (!chosen.isEmpty())
        lastFolder = QFileInfo(chosen).absolutePath();
    return chosen.toStdString();
}

std::string Qt_User_Dialogs::Choose_File_To_Save(const Save_Request& request) {
    QStringList patterns;
    for (const std::string& filter : request.filters)
        patterns << Core_Words(filter);
    QFileDialog dialog(Owner(parent), Core_Words(request.title), Folder_To_Begin_In());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(patterns);
    // The dialog asks about a file that exists, under the name that it completes itself.
    dialog.setDefaultSuffix(QString::fromStdString(request.defaultExtension));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
        if (const QString ending = Ending_Of(filter); !ending.isEmpty())
            dialog.setDefaultSuffix(ending);
    });
    const QFileInfo suggested(QString::fromStdString(request.suggestion));
    if (suggested.isAbsolute())
        dialog.setDirectory(suggested.absolutePath());
    if (!request.suggestion.empty())
        dialog.selectFile(suggested.fileName());
    while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        const QString typed = dialog.selectedFiles().constFirst();
        const QString chosen = With_Ending(typed, patterns, dialog.selectedNameFilter());
        const QString name = QFileInfo(chosen).fileName();
        // The dialog knows of the name as it was typed only.
        if (chosen == typed || !QFileInfo::exists(chosen) ||
            Ask_YesNo("Overwrite file ? \r\n" + name.toStdString(), "Confirm")) {
            lastFolder = QFileInfo(chosen).absolutePath();
            return chosen.toStdString();
        }
        dialog.selectFile(name);
    }
    return {};
}

std::unique_ptr<Work_Progress> Qt_User_Dialogs::Begin_Work(const std::string& title) {
    return std::make_unique<Qt_Work_Progress>(Owner(parent), title);
}

} // namespace tonvex
