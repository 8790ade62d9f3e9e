#include "project/project_audio_files.h"

#include "base/file_io.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t MOST_PROJECTS = 1'000'000;
constexpr const char* WAVE = ".wav";
constexpr const char* SNAPSHOT = ".snp";

bool All_Digits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string Audio_Name(std::int32_t id, std::string_view n, const char* extension) {
    return std::to_string(id) + "-" + std::string(n) + extension;
}

/// The <n> of all files "<id>-<n><extension>".
std::vector<std::string> Numbers_Of(const fs::path& folder, std::int32_t id, const char* extension) {
    std::vector<std::string> numbers;
    const std::string head = std::to_string(id) + "-";
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const fs::path& path = entry->path();
        const std::string stem = path.stem().string();
        if (path.extension() == extension && stem.starts_with(head) &&
            All_Digits(std::string_view(stem).substr(head.size())))
            numbers.push_back(stem.substr(head.size()));
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

} // namespace

std::int32_t Find_Free_ProjectID(const fs::path& audioFolder) {
    // One look at the folder instead of one for each number: taken IDs, sorted.
    std::vector<std::int32_t> taken;
    std::error_code error;
    for (fs::directory_iterator entry(audioFolder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string stem = entry->path().stem().string();
        std::int32_t id = 0;
        if (entry->path().extension() == ".idp" && All_Digits(stem) && stem.front() != '0' &&
            std::from_chars(stem.data(), stem.data() + stem.size(), id).ec == std::errc())
            taken.push_back(id);
    }
    std::sort(taken.begin(), taken.end());
    std::int32_t free = 1;
    for (const std::int32_t id : taken)
        free += id == free ? 1 : 0;
    return free <= MOST_PROJECTS ? free : -1;
}

fs::path Project_ID_File(const fs::path& audioFolder, std::int32_t projectId) {
    return audioFolder / (std::to_string(projectId) + ".idp");
}

void Delete_Unsaved_Audio(const fs::path& audioFolder) {
    std::error_code ignored;
    for (const char* extension : {WAVE, SNAPSHOT})
        for (const std::string& n : Numbers_Of(audioFolder, 0, extension))
            fs::remove(audioFolder / Audio_Name(0, n, extension), ignored);
}

Project_ID_Change::Project_ID_Change(fs::path audioFolder, std::int32_t newId)
    : folder(std::move(audioFolder)), id(newId) {}

Project_ID_Change::~Project_ID_Change() {
    if (kept)
        return;
    std::error_code ignored;
    for (auto pair = brought.rbegin(); pair != brought.rend(); ++pair) {
        if (manner == Files::Copied)
            fs::remove(pair->second, ignored);
        else
            fs::rename(pair->second, pair->first, ignored);
    }
    if (marked)
        fs::remove(Project_ID_File(folder, id), ignored);
}

bool Project_ID_Change::Make_Marker(const fs::path& projectPath) {
    std::error_code error;
    fs::create_directories(folder, error);
    const std::string line = projectPath.string() + "\n";
    std::string problem;
    marked = Replace_File(Project_ID_File(folder, id),
                          {reinterpret_cast<const std::uint8_t*>(line.data()), line.size()}, problem);
    return marked;
}

bool Project_ID_Change::Bring_One(const fs::path& from, const fs::path& to, Files how) {
    std::error_code error;
    if (how == Files::Renamed) {
        fs::rename(from, to, error);
        if (!error) // else what has the new name is not ours to give the old one
            brought.emplace_back(from, to);
        return !error;
    }
    // What could not be copied whole is undone as well.
    brought.emplace_back(from, to);
    fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
    return !error;
}

bool Project_ID_Change::Bring_Files(std::int32_t oldId, Files how) {
    manner = how;
    for (const std::string& n : Numbers_Of(folder, oldId, WAVE)) {
        for (const char* extension : {WAVE, SNAPSHOT}) {
            const fs::path from = folder / Audio_Name(oldId, n, extension);
            const fs::path to = folder / Audio_Name(id, n, extension);
            std::error_code error;
            // A clip need not have its companion yet, but another's would lie about it.
            if (!fs::exists(from, error)) {
                fs::remove(to, error);
                continue;
            }
            if (!Bring_One(from, to, how))
                return false;
        }
    }
    return true;
}

} // namespace tonvex
