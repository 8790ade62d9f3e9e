// The text files behind NotesStuff: the chord library and the names of the drum sounds.

#include "base/file_io.h"
#include "base/text_codec.h"
#include "song/notes_stuff.h"

#include <algorithm>
#include <optional>

namespace tonvex {

namespace {

constexpr std::size_t LARGEST_TEXT_FILE = std::size_t{1} << 20;

/// Takes a line apart. Tab, comma and blank separate tokens; a double quote starts a token in which they
/// count as text, and the next double quote ends it.
class Line_Tokens {
public:
    explicit Line_Tokens(std::string_view line) : rest(line) {}

    /// Empty behind the last token.
    std::string Next() {
        const auto first = rest.find_first_not_of(separators);
        if (first == std::string_view::npos) {
            rest = {};
            return {};
        }
        rest.remove_prefix(first);
        if (rest.front() == '"') {
            rest.remove_prefix(1);
            return Take(rest.find('"'), 1);
        }
        return Take(rest.find_first_of("\t, \""), 0);
    }

private:
    static constexpr std::string_view separators = "\t, ";

    /// The text up to end; skips the closing sign behind it.
    std::string Take(std::size_t end, std::size_t closing) {
        std::string token(rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + closing);
        return token;
    }

    std::string_view rest;
};

/// The library as it is read, taken over only when whole.
struct Library_Builder {
    std::vector<ChordGroup> groups;
    std::vector<LibraryChord> chords;
    std::optional<std::size_t> basicGroupsEnd;

    void Close_Group() {
        if (!groups.empty())
            groups.back().Count =
                static_cast<std::int16_t>(chords.size() - static_cast<std::size_t>(groups.back().First));
    }

    /// False when a table is full or a suffix has no group.
    bool Add_Line(std::string_view line) {
        Line_Tokens tokens(line);
        const std::string first = tokens.Next();
        if (first.empty())
            return true;
        if (first == "-") {
            Close_Group();
            ChordGroup group;
            group.Name = tokens.Next();
            group.First = static_cast<std::int16_t>(chords.size());
            groups.push_back(std::move(group));
            return groups.size() <= NotesStuff::MAX_GROUPS;
        }
        if (first == "--") {
            if (groups.empty())
                return false;
            const std::string suffix = tokens.Next();
            groups.back().Suffix = Lower_Ascii(suffix) == "null" ? "" : suffix;
            return true;
        }
        if (first == "----") {
            if (!groups.empty())
                basicGroupsEnd = groups.size() - 1;
            return true;
        }
        LibraryChord chord;
        chord.Name = first;
        chord.Frets = tokens.Next();
        chord.Third = tokens.Next();
        chords.push_back(std::move(chord));
        return chords.size() <= NotesStuff::MAX_CHORDS;
    }
};

} // namespace

bool NotesStuff::Parse_Chords(std::string_view bytes) {
    ChordGroups.clear();
    ChordLibrary.clear();
    BasicGroupsEnd = 0;
    LastGroup = -1;
    ChordCount = 0;
    Library_Builder library;
    for (const std::string& line : Split_Lines(Text_From_File(bytes)))
        if (!library.Add_Line(line))
            return false;
    library.Close_Group();
    ChordGroups = std::move(library.groups);
    ChordLibrary = std::move(library.chords);
    LastGroup = static_cast<int>(ChordGroups.size()) - 1;
    ChordCount = static_cast<int>(ChordLibrary.size());
    BasicGroupsEnd =
        library.basicGroupsEnd ? static_cast<int>(*library.basicGroupsEnd) : std::max(LastGroup, 0);
    return true;
}

bool NotesStuff::Load_Chords(const std::filesystem::path& path, std::string& error) {
    std::error_code unknown;
    const bool there = std::filesystem::exists(path, unknown);
    const auto bytes = Read_File(path, LARGEST_TEXT_FILE);
    if (Parse_Chords(bytes ? std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size())
                           : std::string_view()) &&
        bytes)
        return true;
    error = there ? "Cannot load chord file" : "Cannot open '" + path.string() + "'";
    return false;
}

bool NotesStuff::Parse_Drums(std::string_view bytes) {
    const auto lines = Split_Lines(Text_From_File(bytes));
    if (lines.size() < DRUM_NAMES)
        return false;
    std::copy_n(lines.begin(), DRUM_NAMES, DrumSoundNames.begin());
    return true;
}

bool NotesStuff::Load_Drums(const std::filesystem::path& path, std::string& error) {
    const auto bytes = Read_File(path, LARGEST_TEXT_FILE);
    if (!bytes) {
        error = "Cannot open '" + path.string() + "'";
        return false;
    }
    if (!Parse_Drums(std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size()))) {
        error = path.string() + ": fewer than " + std::to_string(DRUM_NAMES) + " lines";
        return false;
    }
    return true;
}

} // namespace tonvex
