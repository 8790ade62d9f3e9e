#include "app/app_paths_class.h"

#include "base/file_io.h"
#include "base/text_codec.h"

#include <array>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t LARGEST_TEXT_FILE = std::size_t{1} << 20;

bool Read_Text_Lines(const fs::path& file, std::vector<std::string>& lines) {
    const auto bytes = Read_File(file, LARGEST_TEXT_FILE);
    if (!bytes)
        return false;
    lines = Split_Lines(
        Text_From_File(std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size())));
    return true;
}

std::string Replace_Any_Case(std::string text, const std::string& macro, const std::string& value) {
    const std::string wanted = Lower_Ascii(macro);
    std::string lower = Lower_Ascii(text);
    for (std::size_t at = lower.find(wanted); at != std::string::npos;
         at = lower.find(wanted, at + value.size())) {
        text.replace(at, wanted.size(), value);
        lower.replace(at, wanted.size(), Lower_Ascii(value));
    }
    return text;
}

/// XDG_DOCUMENTS_DIR="$HOME/…" or an absolute path, as xdg-user-dirs writes it.
std::string Documents_Folder(const fs::path& userDirs, const std::string& home) {
    std::vector<std::string> lines;
    Read_Text_Lines(userDirs, lines);
    for (const std::string& raw : lines) {
        const std::string line = Trim(raw);
        const std::string key = "XDG_DOCUMENTS_DIR=\"";
        if (!line.starts_with(key) || line.size() <= key.size() || line.back() != '"')
            continue;
        std::string value = line.substr(key.size(), line.size() - key.size() - 1);
        if (value.starts_with("$HOME"))
            value.replace(0, 5, home);
        if (fs::path(value).is_absolute())
            return value;
    }
    std::error_code ignored;
    const fs::path usual = fs::path(home) / "Documents";
    return fs::is_directory(usual, ignored) ? usual.string() : home;
}

} // namespace

Path_Macros Path_Macros::From(const fs::path& executableFolder, const Environment& environment) {
    const std::string home = environment("HOME");
    const auto folder = [&](const char* variable, const std::string& fallback) {
        const std::string value = environment(variable);
        return fs::path(value).is_absolute() ? value : fallback;
    };
    const auto below_Home = [&](const char* rest) { return home.empty() ? std::string() : home + rest; };
    Path_Macros macros;
    macros.AppEXE = executableFolder.string();
    macros.ApplicationData = folder("XDG_CONFIG_HOME", below_Home("/.config"));
    macros.LocalApplicationData = folder("XDG_DATA_HOME", below_Home("/.local/share"));
    macros.Cache = folder("XDG_CACHE_HOME", below_Home("/.cache"));
    const std::string dataDirs = environment("XDG_DATA_DIRS");
    const std::string first = dataDirs.substr(0, dataDirs.find(':'));
    macros.CommonApplicationData = fs::path(first).is_absolute() ? first : "/usr/share";
    macros.MyDocuments = Documents_Folder(fs::path(macros.ApplicationData) / "user-dirs.dirs", home);
    return macros;
}

Path_Macros Path_Macros::From_Environment(const fs::path& executableFolder) {
    return From(executableFolder, [](const std::string& name) {
        const char* value = std::getenv(name.c_str());
        if (value != nullptr && *value != '\0')
            return std::string(value);
        const passwd* user = name == "HOME" ? ::getpwuid(::getuid()) : nullptr;
        return user != nullptr && user->pw_dir != nullptr ? std::string(user->pw_dir) : std::string();
    });
}

std::string AppPaths_Class::Expand_Macros(const std::string& value, const Path_Macros& macros) {
    const std::array<std::pair<const char*, const std::string*>, 6> table{{
        {"{AppEXE}", &macros.AppEXE},
        {"{MyDocuments}", &macros.MyDocuments},
        {"{ApplicationData}", &macros.ApplicationData},
        {"{CommonApplicationData}", &macros.CommonApplicationData},
        {"{LocalApplicationData}", &macros.LocalApplicationData},
        {"{Cache}", &macros.Cache},
    }};
    std::string expanded = value;
    for (const auto& [macro, folder] : table)
        expanded = Replace_Any_Case(std::move(expanded), macro, *folder);
    return expanded;
}

bool AppPaths_Class::LoadPaths(const fs::path& fileName, bool expandMacros, const Path_Macros& macros) {
    relativeTo = macros.AppEXE;
    std::vector<std::string> lines;
    if (!Read_Text_Lines(fileName, lines))
        return false;
    for (const std::string& line : lines) {
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos || line.find('=', equals + 1) != std::string::npos)
            continue;
        const std::string key = Lower_Ascii(Trim(line.substr(0, equals)));
        std::string value = Trim(line.substr(equals + 1));
        if (key.empty() || value.empty())
            continue;
        if (expandMacros)
            value = Expand_Macros(value, macros);
        if (!paths.emplace(key, std::move(value)).second)
            return false;
    }
    return true;
}

std::string AppPaths_Class::GetPath(const std::string& name) const {
    const auto found = paths.find(Lower_Ascii(Trim(name)));
    if (found != paths.end())
        return found->second;
    if (onError)
        onError("Error retrieving path: " + name + "\n");
    return {};
}

fs::path AppPaths_Class::Get_Folder(const std::string& name) const {
    const fs::path folder = GetPath(name);
    return folder.empty() || folder.is_absolute() ? folder : (relativeTo / folder).lexically_normal();
}

void AppPaths_Class::Set_Path(const std::string& name, const std::string& path) {
    paths[Lower_Ascii(Trim(name))] = path;
}

} // namespace tonvex
