#include "engine/fingerpick_pattern.h"

#include "base/file_io.h"
#include "base/text_codec.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t LARGEST_FILE = std::size_t{1} << 20;
constexpr double LONGEST_PASS_BEATS = 10000.0;
constexpr const char* ROWS_FOLLOW = "[pick pattern]";

/// The two sides of a line with exactly one "=", trimmed.
std::optional<std::pair<std::string, std::string>> Split_Pair(std::string_view line) {
    const std::size_t at = line.find('=');
    if (at == std::string_view::npos || line.find('=', at + 1) != std::string_view::npos)
        return std::nullopt;
    return std::pair{Trim(line.substr(0, at)), Trim(line.substr(at + 1))};
}

std::optional<double> Read_Number(const std::string& text) {
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    if (result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return value;
}

void Read_Head_Line(const std::string& key, const std::string& value, const NotesStuff& notes,
                    Fingerpick_Pattern& pattern) {
    if (key == "name") {
        pattern.Name = value;
    } else if (key == "basechord") {
        pattern.BaseChord = notes.RootByName(value);
    } else if (key == "chordtype") {
        pattern.ChordType = notes.ChordTypeByName(value);
    } else if (key == "length") {
        const double length = Read_Number(value).value_or(0.0);
        pattern.PickLength =
            length > 0.0 && length <= LONGEST_PASS_BEATS ? length : Fingerpick_Pattern::USUAL_LENGTH;
    }
}

std::array<std::int8_t, 6> Read_Strings(const std::string& text) {
    std::array<std::int8_t, 6> strings{};
    strings.fill(PickRow::NOTHING);
    for (std::size_t i = 0; i < strings.size() && i < text.size(); ++i) {
        const char sign = text[i];
        if (sign == 'm' || sign == 'M')
            strings[i] = PickRow::STOP;
        else if (sign >= '0' && sign <= '9')
            strings[i] = static_cast<std::int8_t>(sign - '0');
    }
    return strings;
}

} // namespace

Fingerpick_Pattern Parse_Fingerpick_Pattern(std::string_view bytes, const NotesStuff& notes) {
    Fingerpick_Pattern pattern;
    bool inHead = true;
    for (const std::string& line : Split_Lines(Text_From_File(bytes))) {
        if (inHead && Lower_Ascii(Trim(line)) == ROWS_FOLLOW) {
            inHead = false;
            continue;
        }
        const auto sides = Split_Pair(line);
        if (!sides)
            continue;
        if (inHead) {
            Read_Head_Line(Lower_Ascii(sides->first), sides->second, notes, pattern);
        } else if (pattern.PickRows.size() < Fingerpick_Pattern::MAX_ROWS) {
            const double time = Read_Number(sides->first).value_or(-1.0);
            if (time >= 0.0 && time < pattern.PickLength)
                pattern.PickRows.push_back({time, Read_Strings(sides->second)});
        }
    }
    std::stable_sort(pattern.PickRows.begin(), pattern.PickRows.end(),
                     [](const PickRow& a, const PickRow& b) { return a.Time < b.Time; });
    return pattern;
}

Fingerpick_Patterns::Fingerpick_Patterns(std::vector<fs::path> theFolders, const NotesStuff& theNotes)
    : folders(std::move(theFolders)), notes(&theNotes) {}

std::shared_ptr<const Fingerpick_Pattern> Fingerpick_Patterns::Pattern(int number) {
    for (const fs::path& folder : folders) {
        const fs::path file = folder / (std::to_string(number) + ".txt");
        std::error_code error;
        const auto changed = fs::last_write_time(file, error);
        if (error)
            continue;
        const auto known = cache.find(number);
        if (known != cache.end() && known->second.file == file && known->second.changed == changed)
            return known->second.pattern;
        const auto bytes = Read_File(file, LARGEST_FILE);
        if (!bytes)
            continue;
        auto pattern = std::make_shared<const Fingerpick_Pattern>(
            Parse_Fingerpick_Pattern({reinterpret_cast<const char*>(bytes->data()), bytes->size()}, *notes));
        cache[number] = {file, changed, pattern};
        return pattern;
    }
    cache.erase(number);
    return nullptr;
}

} // namespace tonvex
