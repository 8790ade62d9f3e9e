#include "project/recovery_copy.h"

#include "base/file_io.h"
#include "base/text_codec.h"

#include <string_view>
#include <vector>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view PATH_KEY = "path=";
constexpr std::string_view TITLE_KEY = "title=";
constexpr std::size_t LONGEST_NOTE = 1 << 20;

fs::path Note_File(const fs::path& folder) {
    return folder / "recovery.txt";
}

/// On one line: file names may hold line ends.
std::string Escaped(std::string_view text) {
    std::string line;
    for (const char c : text) {
        if (c == '\\')
            line += "\\\\";
        else if (c == '\n')
            line += "\\n";
        else if (c == '\r')
            line += "\\r";
        else
            line += c;
    }
    return line;
}

std::string Unescaped(std::string_view line) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] != '\\' || i + 1 == line.size()) {
            text += line[i];
            continue;
        }
        const char escaped = line[++i];
        text += escaped == 'n' ? '\n' : escaped == 'r' ? '\r' : escaped;
    }
    return text;
}

Recovery_Note Read_Note(const fs::path& folder) {
    Recovery_Note note;
    const auto bytes = Read_File(Note_File(folder), LONGEST_NOTE);
    if (!bytes)
        return note;
    for (const std::string& line : Split_Lines(std::string(bytes->begin(), bytes->end()))) {
        const std::string_view text = line;
        if (text.starts_with(PATH_KEY))
            note.songPath = Unescaped(text.substr(PATH_KEY.size()));
        else if (text.starts_with(TITLE_KEY))
            note.title = Unescaped(text.substr(TITLE_KEY.size()));
    }
    return note;
}

} // namespace

fs::path Recovery_Song_File(const fs::path& folder) {
    return folder / "recovery.tvx";
}

bool Write_Recovery_Copy(const fs::path& folder, std::span<const std::uint8_t> song,
                         const Recovery_Note& note, std::string& error) {
    // The note first: a program that is killed in between leaves no song without its path. The song is worth
    // more, so it is written even if its note cannot be.
    const std::string text = std::string(PATH_KEY) + Escaped(note.songPath.string()) + "\n" +
                             std::string(TITLE_KEY) + Escaped(note.title) + "\n";
    const bool noted =
        Replace_File(Note_File(folder), std::vector<std::uint8_t>(text.begin(), text.end()), error);
    return Replace_File(Recovery_Song_File(folder), song, error) && noted;
}

std::optional<Recovery_Find> Find_Recovery_Copy(const fs::path& folder) {
    std::error_code error;
    const fs::path song = Recovery_Song_File(folder);
    if (!fs::is_regular_file(song, error))
        return std::nullopt;
    Recovery_Find find{Read_Note(folder), {}};
    const auto written = fs::last_write_time(song, error);
    if (!error)
        find.writtenAt = std::chrono::time_point_cast<std::chrono::system_clock::duration>(
            std::chrono::file_clock::to_sys(written));
    return find;
}

bool Move_Recovery_Copy(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::copy_file(Note_File(from), Note_File(to), error);
    fs::rename(Recovery_Song_File(from), Recovery_Song_File(to), error);
    return !error;
}

void Remove_Recovery_Copy(const fs::path& folder) {
    std::error_code ignored;
    // A note alone is nothing to be recovered.
    fs::remove(Recovery_Song_File(folder), ignored);
    fs::remove(Note_File(folder), ignored);
}

} // namespace tonvex
