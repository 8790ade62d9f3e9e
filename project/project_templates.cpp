#include "project/project_templates.h"

#include "base/text_codec.h"

#include <algorithm>
#include <system_error>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr const char* ENDING = ".tvx";

} // namespace

bool Template_Folder_Stands(User_Dialogs& dialogs, const fs::path& folder) {
    std::error_code error;
    if (fs::is_directory(folder, error))
        return true;
    if (!dialogs.Ask_YesNo("Can't find the directory: " + folder.string() +
                           "\r\nDo you want to create the directory ?"))
        return false;
    fs::create_directories(folder, error);
    std::error_code ignored;
    if (fs::is_directory(folder, ignored))
        return true;
    dialogs.Show_Message(Box_Kind::Critical, "The directory cannot be created: " + folder.string() + "\r\n" +
                                                 (error ? error.message() : "A file of that name is there."));
    return false;
}

std::vector<std::string> List_Project_Templates(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        std::error_code ignored;
        if (at->is_regular_file(ignored) && Lower_Ascii(at->path().extension().string()) == ENDING)
            names.push_back(at->path().stem().string());
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const std::string left = Lower_Ascii(a);
        const std::string right = Lower_Ascii(b);
        return left != right ? left < right : a < b;
    });
    return names;
}

fs::path Project_Template_File(const fs::path& folder, const std::string& name) {
    return Named_File(folder, name, ENDING);
}

fs::path Named_File(const fs::path& folder, const std::string& name, std::string_view ending) {
    std::string stem = fs::path(Trim(name)).filename().string();
    if (Lower_Ascii(stem).ends_with(ending))
        stem.resize(stem.size() - ending.size());
    if (stem.empty() || stem == "." || stem == "..")
        return {};
    return folder / stem.append(ending);
}

} // namespace tonvex
