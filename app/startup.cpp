#include "app/startup.h"

#include "app/stock_data.h"

#include <array>
#include <random>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

fs::path First_With(const std::array<fs::path, 3>& folders, const char* fileName) {
    std::error_code ignored;
    for (const fs::path& folder : folders)
        if (!folder.empty() && fs::is_regular_file(folder / fileName, ignored))
            return folder;
    return folders.front();
}

} // namespace

Program_Files Find_Program_Files(const fs::path& executableFolder, const fs::path& sourceData) {
    const fs::path installed = (executableFolder / "../share/tonvex").lexically_normal();
    return {First_With({executableFolder, installed, sourceData}, "paths.cfg") / "paths.cfg",
            First_With({executableFolder / "data", installed, sourceData}, "chords.txt")};
}

std::optional<fs::path> Project_Argument(const std::string& argument, const fs::path& workingFolder) {
    std::string name = argument;
    if (name.starts_with('"')) {
        name.erase(0, 1);
        if (name.ends_with('"'))
            name.pop_back();
    }
    const fs::path file = (workingFolder / name).lexically_normal();
    std::error_code ignored;
    if (name.empty() || !fs::is_regular_file(file, ignored))
        return std::nullopt;
    return file;
}

void Draw_Installation_ID(Settings& settings) {
    std::random_device random;
    while (settings.InstallationID == 0)
        settings.InstallationID = static_cast<std::int32_t>(random() & 0x7fffffffU);
}

Start_Routine::Start_Routine(User_Dialogs& theDialogs, Start_Windows& theWindows)
    : dialogs(theDialogs), windows(theWindows) {}

Start_Result Start_Routine::Run(const Start_Request& request) {
    bool heldByOther = false;
    instance = Held_Lock::Try(request.lockFile, heldByOther);
    if (heldByOther)
        return Start_Result::Already_Running;
    paths.onError = [this](const std::string& text) { dialogs.Show_Message(Box_Kind::Critical, text); };
    if (!paths.LoadPaths(request.files.pathsFile, true, request.macros)) {
        dialogs.Show_Message(Box_Kind::Critical, "Couldn't find paths setup. Tonvex will now exit");
        return Start_Result::Failed;
    }
    windows.Show_Start_Window();
    windows.Let_Messages_Run();
    const fs::path config = paths.Get_Folder("config");
    if (!Make_Config_Folder(config))
        return Start_Result::Failed;
    Bring_Stock_Files(request.files, config);
    std::error_code ignored;
    fs::current_path(request.executableFolder, ignored);
    if (!windows.Load_Main_Window(paths, request.files.dataFolder))
        return Start_Result::Failed;
    windows.Let_Messages_Run();
    windows.Show_Main_Window();
    return Start_Result::Started;
}

bool Start_Routine::Make_Config_Folder(const fs::path& config) {
    std::error_code error;
    fs::create_directories(config, error);
    if (!config.empty() && fs::is_directory(config, error))
        return true;
    dialogs.Show_Message(Box_Kind::Critical,
                         "Can't create forlder: " + config.string() + "\nTonvex will now exit");
    return false;
}

void Start_Routine::Bring_Stock_Files(const Program_Files& files, const fs::path& config) {
    const Stock_Result result =
        Copy_Stock_Files({{files.dataFolder / "keyboard", config / "keyboard"},
                          {files.dataFolder / "patterns", paths.Get_Folder("patterns")},
                          {files.dataFolder / "templates", paths.Get_Folder("templates")}},
                         config / "stock-files.txt");
    if (result.errors.empty())
        return;
    std::string text =
        "Some files that ship with Tonvex could not be copied to your folders. Check that there "
        "is space and that the folders can be written to.";
    for (std::size_t i = 0; i < result.errors.size() && i < 5; ++i)
        text += "\n" + result.errors[i];
    dialogs.Show_Message(Box_Kind::Warning, text);
}

} // namespace tonvex
