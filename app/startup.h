#pragma once

#include "app/app_paths_class.h"
#include "app/held_lock.h"
#include "app/settings.h"
#include "platform/user_dialogs.h"

#include <filesystem>
#include <optional>
#include <string>

namespace tonvex {

/// Where the program finds what it starts from.
struct Program_Files {
    std::filesystem::path pathsFile;  ///< paths.cfg
    std::filesystem::path dataFolder; ///< chords.txt, drums.txt, keyboard/ …
};

/// paths.cfg is looked for beside the executable, then in ../share/tonvex of it, then in sourceData (a build
/// tree runs from its sources); the data in data/ beside the executable, then in the same two places. What
/// is nowhere is named where it is looked for first.
Program_Files Find_Program_Files(const std::filesystem::path& executableFolder,
                                 const std::filesystem::path& sourceData);

/// The project named on the command line, absolute: one pair of double quotes around it is taken off, and a
/// relative name starts at workingFolder, the folder the program was called in. Nothing when there is no
/// such file.
std::optional<std::filesystem::path> Project_Argument(const std::string& argument,
                                                      const std::filesystem::path& workingFolder);

/// Draws the number of this installation on its first run; never 0.
void Draw_Installation_ID(Settings& settings);

/// What the start routine starts from.
struct Start_Request {
    std::filesystem::path executableFolder; ///< becomes the working folder
    std::filesystem::path lockFile;         ///< held by a running program
    Program_Files files;
    Path_Macros macros;
};

/// The windows of the start, as the start routine sees them.
class Start_Windows {
public:
    virtual ~Start_Windows() = default;
    virtual void Show_Start_Window() = 0;
    virtual void Let_Messages_Run() = 0;
    /// Runs the load handler. False when the program cannot go on; the user has been told.
    virtual bool Load_Main_Window(const AppPaths_Class& paths, const std::filesystem::path& dataFolder) = 0;
    virtual void Show_Main_Window() = 0;
};

enum class Start_Result {
    Started,
    Already_Running, ///< nothing was shown or made
    Failed           ///< the user has been told
};

/// The start of the program, up to the main window. Interface thread.
class Start_Routine {
public:
    /// Both outlive the routine.
    Start_Routine(User_Dialogs& dialogs, Start_Windows& windows);
    /// In this order: one program only; the folders; the start window; the config folder and what ships
    /// in the user's folders; the working folder; the main window.
    Start_Result Run(const Start_Request& request);

private:
    bool Make_Config_Folder(const std::filesystem::path& config);
    void Bring_Stock_Files(const Program_Files& files, const std::filesystem::path& config);

    User_Dialogs& dialogs;
    Start_Windows& windows;
    AppPaths_Class paths;
    std::optional<Held_Lock> instance; ///< held while the program runs
};

} // namespace tonvex
