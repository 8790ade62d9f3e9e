#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

namespace tonvex {

/// Folders by which the macros of paths.cfg are replaced. A missing one is empty.
struct Path_Macros {
    std::string AppEXE;                ///< folder of the executable
    std::string MyDocuments;           ///< XDG_DOCUMENTS_DIR of user-dirs.dirs, else ~/Documents, else home
    std::string ApplicationData;       ///< XDG_CONFIG_HOME, else ~/.config
    std::string CommonApplicationData; ///< first of XDG_DATA_DIRS, else /usr/share
    std::string LocalApplicationData;  ///< XDG_DATA_HOME, else ~/.local/share
    std::string Cache;                 ///< XDG_CACHE_HOME, else ~/.cache
    /// The value of an environment variable; empty when it is not set.
    using Environment = std::function<std::string(const std::string& name)>;
    /// From the process's environment, by the XDG base directory rules (a relative folder is no folder).
    static Path_Macros From_Environment(const std::filesystem::path& executableFolder);
    static Path_Macros From(const std::filesystem::path& executableFolder, const Environment& environment);
};

/// The program's folders by key, read from paths.cfg: one key=value a line. Keys are lower case and trimmed.
/// Interface thread.
class AppPaths_Class {
public:
    /// False for a file that is missing, unreadable or longer than a megabyte, and for two lines of the
    /// same key. A line counts only when it splits at "=" into exactly two pieces that are not blank.
    bool LoadPaths(const std::filesystem::path& fileName, bool expandMacros, const Path_Macros& macros);
    /// The value as it stands; empty, after a report through onError, for an unknown key.
    std::string GetPath(const std::string& name) const;
    /// GetPath as a folder: a relative one starts at the executable's. Empty for an unknown key.
    std::filesystem::path Get_Folder(const std::string& name) const;
    void Set_Path(const std::string& name, const std::string& path);
    std::function<void(const std::string& text)> onError;

    /// Macros in any letter case, everywhere in the value, one macro after the other: {AppEXE},
    /// {MyDocuments}, {ApplicationData}, {CommonApplicationData}, {LocalApplicationData}, {Cache}.
    static std::string Expand_Macros(const std::string& value, const Path_Macros& macros);

private:
    std::map<std::string, std::string> paths;
    std::filesystem::path relativeTo;
};

} // namespace tonvex
