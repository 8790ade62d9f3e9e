#pragma once

#include "platform/user_dialogs.h"

#include <QPointer>
#include <QString>
#include <QWidget>

namespace tonvex {

/// Message boxes and file dialogs over the program's window. Texts are plain, never markup, and shown in the
/// user's language where Core_Words knows them. Interface thread; each call returns when the user has
/// answered.
class Qt_User_Dialogs final : public User_Dialogs {
public:
    void Show_Message(Box_Kind kind, const std::string& text, const std::string& title) override;
    /// Closing the box without an answer is a no.
    bool Ask_YesNo(const std::string& text, const std::string& title) override;
    Answer Ask_YesNoCancel(const std::string& text, const std::string& title) override;
    /// Starts in the folder of the last file chosen, first in the user's documents.
    std::string Choose_File_To_Open(const std::string& title,
                                    const std::vector<std::string>& filters) override;
    std::string Choose_File_To_Save(const Save_Request& request) override;
    /// A progress window with a cancel button, once the work has taken half a second.
    std::unique_ptr<Work_Progress> Begin_Work(const std::string& title) override;

    QPointer<QWidget> parent; ///< null: boxes stand alone

private:
    QString Folder_To_Begin_In() const;

    QString lastFolder;
};

} // namespace tonvex
