#pragma once

#include <map>
#include <string>
#include <vector>

namespace tonvex {

enum class Box_Kind { Information, Warning, Critical };

/// The user, as the core sees one. Interface thread. Never called inside a transport round.
class User_Dialogs {
public:
    virtual ~User_Dialogs() = default;
    virtual void Show_Message(Box_Kind kind, const std::string& text,
                              const std::string& title = "Tonvex") = 0;
    /// True for yes.
    virtual bool Ask_YesNo(const std::string& text, const std::string& title = "Tonvex") = 0;
    /// One name and its patterns, as "Sound font files (*.sf2)". Empty path when the user cancels.
    virtual std::string Choose_File_To_Open(const std::string& title,
                                            const std::vector<std::string>& filters) = 0;
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
    std::string fileToOpen;

    void Show_Message(Box_Kind kind, const std::string& text, const std::string&) override {
        shown.push_back({kind, text});
    }
    bool Ask_YesNo(const std::string& text, const std::string&) override {
        asked.push_back(text);
        const auto found = answers.find(text);
        return found != answers.end() && found->second;
    }
    std::string Choose_File_To_Open(const std::string&, const std::vector<std::string>&) override {
        return fileToOpen;
    }
};

} // namespace tonvex
