#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

namespace tonvex {

/// Folders by which the macros of paths.cfg are replaced. A missing one is empty.
struct Path_Macros {
    std::string AppEXE; ///< folder of the executable
    std::string MyDocuments;
    std::string ApplicationData; ///< XDG_CONFIG_HOME
    std::string CommonApplicationData;
    std::string LocalApplicationData; ///< XDG_DATA_HOME
    std::string Cache;                ///< XDG_CACHE_HOME
    /// From the environment, by the XDG base directory rules.
    static Path_Macros From_Environment(const std::filesystem::path& executableFolder);
};

/// The program's folders by key, read from paths.cfg. Keys are lower case and trimmed. Interface thread.
class AppPaths_Class {
public:
    /// False for a missing file or two lines of the same key.
    bool LoadPaths(const std::filesystem::path& fileName, bool expandMacros, const Path_Macros& macros);
    /// Empty, after a report through onError, for an unknown key.
    std::string GetPath(const std::string& name) const;
    void Set_Path(const std::string& name, const std::string& path);
    std::function<void(const std::string& text)> onError;

    static std::string Expand_Macros(const std::string& value, const Path_Macros& macros);

private:
    std::map<std::string, std::string> paths;
};

} // namespace tonvex
