#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tonvex {

/// A new empty folder, removed with all in it at the end.
class Temp_Folder {
public:
    Temp_Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "tonvex-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder: " + name);
        path = name;
    }
    ~Temp_Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    Temp_Folder(const Temp_Folder&) = delete;
    Temp_Folder& operator=(const Temp_Folder&) = delete;

    const std::filesystem::path& Path() const noexcept { return path; }
    std::filesystem::path operator/(const std::string& name) const { return path / name; }
    /// Writes a file below the folder and gives its path.
    std::filesystem::path Write(const std::string& name, const std::string& content) const {
        const std::filesystem::path file = path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }
    static std::string Text_Of(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    std::filesystem::path path;
};

} // namespace tonvex
