#include "audio/windows/choose_sound_font.h"

#include "audio/dls_list_class.h"

#include <filesystem>
#include <fstream>

namespace tonvex {

namespace {

bool Can_Be_Opened(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored) && std::ifstream(path, std::ios::binary).is_open();
}

} // namespace

std::string Choose_Sound_Font(User_Dialogs& dialogs) {
    const std::string title = "Open File";
    std::string path = dialogs.Choose_File_To_Open(title, {"Sound font files (*.sf2)", "All Files (*.*)"});
    if (path.empty())
        return {};
    if (!Can_Be_Opened(path)) {
        dialogs.Show_Message(Box_Kind::Warning, "Can't open file: " + path, title);
        return {};
    }
    std::string fontTitle;
    std::vector<Font_Preset> presets;
    if (!DLSListClass::Parse_SF2_File(path, fontTitle, presets)) {
        dialogs.Show_Message(Box_Kind::Warning, "Invalid SF2 file", title);
        return {};
    }
    return path;
}

} // namespace tonvex
