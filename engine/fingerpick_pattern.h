#pragma once

#include "song/notes_stuff.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tonvex {

/// One step of a finger-picking pattern.
struct PickRow {
    static constexpr std::int8_t NOTHING = -1;
    static constexpr std::int8_t STOP = -2;

    double Time = 0.0; ///< beats from the start of the pass
    /// What each string does, the lowest first: NOTHING, STOP, or the fret that it is struck at, 0 to 9.
    std::array<std::int8_t, 6> Strings{};
    bool operator==(const PickRow&) const = default;
};

/// A finger-picking pattern as its file has it.
struct Fingerpick_Pattern {
    static constexpr double USUAL_LENGTH = 4.0;
    /// Rows that are read; what a file has beyond them is passed over.
    static constexpr std::size_t MAX_ROWS = 1000;

    std::string Name;
    int BaseChord = -1;               ///< root 0 to 11 that the frets are written for; -1 unknown
    int ChordType = -1;               ///< row of the chord types; -1 unknown
    double PickLength = USUAL_LENGTH; ///< beats of one pass, above 0
    std::vector<PickRow> PickRows;    ///< in order of Time, 0 up to below PickLength
};

/// Reads the text of a pattern file. Any text is safe: a line that says nothing is passed over, so is a row
/// outside the pass.
Fingerpick_Pattern Parse_Fingerpick_Pattern(std::string_view bytes, const NotesStuff& notes);

/// The finger-picking patterns, files <number>.txt, read when they are first asked for and again when they
/// have changed. Interface thread.
class Fingerpick_Patterns {
public:
    /// folders: where the files are looked for, first come, first served. notes outlives the object.
    Fingerpick_Patterns(std::vector<std::filesystem::path> folders, const NotesStuff& notes);

    /// Null for a pattern that is not there or cannot be read.
    std::shared_ptr<const Fingerpick_Pattern> Pattern(int number);
    const NotesStuff& Notes() const noexcept { return *notes; }

private:
    struct Cached {
        std::filesystem::path file;
        std::filesystem::file_time_type changed;
        std::shared_ptr<const Fingerpick_Pattern> pattern;
    };

    std::vector<std::filesystem::path> folders;
    const NotesStuff* notes;
    std::map<int, Cached> cache;
};

} // namespace tonvex
