#pragma once

#include "platform/work_progress.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tonvex {

enum class Box_Kind { Information, Warning, Critical };
enum class Answer { Yes, No, Cancel };

/// How a file to be written is asked for. All texts UTF-8.
struct Save_Request {
    std::string title;
    std::vector<std::string> filters; ///< one name and its patterns each, as "Midi Files (*.mid)"
    std::string defaultExtension;     ///< with its dot, for a name typed without one; may be empty
    std::string suggestion;           ///< file name or path to start with; may be empty
};

/// The user, as the core sees one. Interface thread. Never called inside a transport round.
class User_Dialogs {
public:
    virtual ~User_Dialogs() = default;
    virtual void Show_Message(Box_Kind kind, const std::string& text,
                              const std::string& title = "Tonvex") = 0;
    /// True for yes.
    virtual bool Ask_YesNo(const std::string& text, const std::string& title = "Tonvex") = 0;
    /// Closing the box without an answer is a cancel.
    virtual Answer Ask_YesNoCancel(const std::string& text, const std::string& title = "Tonvex") = 0;
    /// One name and its patterns, as "Sound font files (*.sf2)". Empty path when the user cancels.
    virtual std::string Choose_File_To_Open(const std::string& title,
                                            const std::vector<std::string>& filters) = 0;
    /// A file that exists has been agreed to be replaced. Empty path when the user cancels.
    virtual std::string Choose_File_To_Save(const Save_Request& request) = 0;
    /// Shows nothing of work that is over at once. title tells the work.
    virtual std::unique_ptr<Work_Progress> Begin_Work(const std::string& title) = 0;
};

/// Keeps what was shown and answers questions from a table (no for what is not in it).
class Recorded_Dialogs final : public User_Dialogs {
public:
    struct Shown {
        Box_Kind kind;
        std::string text;
    };
    std::vector<Shown> shown;
    std::vector<std::string> asked;
    std::map<std::string, bool> answers;
    /// Answered with a cancel, whatever the table says.
    std::vector<std::string> cancelled;
    std::string fileToOpen;
    std::string fileToSave;
    std::vector<std::string> statuses; ///< what work in progress told
    int stopWorkAt = 101;              ///< the user's cancel: at this percent or above

    void Show_Message(Box_Kind kind, const std::string& text, const std::string&) override {
        shown.push_back({kind, text});
    }
    bool Ask_YesNo(const std::string& text, const std::string&) override {
        asked.push_back(text);
        const auto found = answers.find(text);
        return found != answers.end() && found->second;
    }
    Answer Ask_YesNoCancel(const std::string& text, const std::string& title) override {
        for (const std::string& question : cancelled) {
            if (question == text) {
                asked.push_back(text);
                return Answer::Cancel;
            }
        }
        return Ask_YesNo(text, title) ? Answer::Yes : Answer::No;
    }
    std::string Choose_File_To_Open(const std::string&, const std::vector<std::string>&) override {
        return fileToOpen;
    }
    std::string Choose_File_To_Save(const Save_Request&) override { return fileToSave; }
    std::unique_ptr<Work_Progress> Begin_Work(const std::string&) override {
        class Told final : public Work_Progress {
        public:
            explicit Told(Recorded_Dialogs& dialogs) : owner(dialogs) {}
            bool Show(const std::string& status, int percent) override {
                owner.statuses.push_back(status);
                return percent < owner.stopWorkAt;
            }

        private:
            Recorded_Dialogs& owner;
        };
        return std::make_unique<Told>(*this);
    }
};

} // namespace tonvex
