#include "tools/stock_layouts.h"

#include "input/keyboard_layout.h"
#include "song/notes_stuff.h"

#include <array>

namespace tonvex {

namespace {

constexpr std::int16_t ENABLED = -1;
constexpr std::uint8_t NOTE_VOLUME = 127;
constexpr std::uint8_t CHORD_VOLUME = 100; ///< up to six notes at once: a little softer than one
constexpr int RELATIVE_NOTE = 128;         ///< the first note of the active octave
constexpr int DIGIT_ROW = 2;               ///< scan code of 1
constexpr int UPPER_ROW = 16;              ///< of Q

/// Scan codes that play a piano's keys from C upwards, white and black, by semitone.
/// Z S X D C V G B H N J M , L . ; /
constexpr std::array<int, 17> lowerPiano = {44, 31, 45, 32, 46, 47, 34, 48, 35,
                                            49, 36, 50, 51, 38, 52, 39, 53};
/// Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P
constexpr std::array<int, 17> upperPiano = {16, 3, 17, 4, 18, 19, 6, 20, 7, 21, 8, 22, 23, 10, 24, 11, 25};

struct Named_Chord {
    const char* root;
    const char* type; ///< suffix of the chord type
};

constexpr std::array<Named_Chord, 10> plainChords = {{{"C", ""},
                                                      {"D", "m"},
                                                      {"E", "m"},
                                                      {"F", ""},
                                                      {"G", ""},
                                                      {"A", "m"},
                                                      {"B", "m"},
                                                      {"C", "7"},
                                                      {"G", "7"},
                                                      {"A", "m7"}}};
constexpr std::array<Named_Chord, 10> colouredChords = {{{"C", "maj7"},
                                                         {"D", "m7"},
                                                         {"E", "m7"},
                                                         {"F", "maj7"},
                                                         {"G", "sus4"},
                                                         {"A", "sus4"},
                                                         {"B", "°"},
                                                         {"D", "7"},
                                                         {"E", "7"},
                                                         {"C", "sus2"}}};

int Type_By_Suffix(const NotesStuff& notes, const std::string& suffix) {
    int type = 0;
    while (notes.ChordTypeTable[static_cast<std::size_t>(type)].Suffix != suffix)
        ++type;
    return type;
}

/// Every key points at its own row, as the key set-up leaves it; none does anything yet but the program's
/// own.
Key_Tables Empty_Tables() {
    Key_Tables tables;
    for (std::size_t key = 0; key < LAYOUT_ROWS; ++key) {
        const bool special = KeyboardLayout::Is_Special_Key(static_cast<int>(key));
        tables.map[key] = {.Enabled = special ? ENABLED : std::int16_t{0},
                           .Target = static_cast<std::int16_t>(key),
                           .Kind = special ? KEY_RESERVED : KEY_NOTE};
        tables.nameFields[key].fill(' ');
    }
    return tables;
}

void Put_Piano(Key_Tables& tables, const std::array<int, 17>& keys, int firstSemitone) {
    int semitone = firstSemitone;
    for (const int scanCode : keys) {
        const auto key = static_cast<std::size_t>(scanCode);
        tables.map[key].Enabled = ENABLED;
        tables.notes[key].Note = static_cast<std::uint8_t>(RELATIVE_NOTE + semitone++);
        tables.notes[key].Vol = NOTE_VOLUME;
    }
}

void Put_Chords(Key_Tables& tables, const NotesStuff& notes, const std::array<Named_Chord, 10>& chords,
                int firstScanCode) {
    auto key = static_cast<std::size_t>(firstScanCode);
    for (const Named_Chord& chord : chords) {
        tables.map[key].Enabled = ENABLED;
        tables.map[key].Kind = KEY_QCHORD;
        tables.chords[key].ChordVol = CHORD_VOLUME;
        notes.FillChordData(tables.chords[key], notes.RootByName(chord.root),
                            Type_By_Suffix(notes, chord.type), 0, true);
        ++key;
    }
}

} // namespace

std::vector<Stock_Layout> Stock_Layouts() {
    const NotesStuff notes;
    std::vector<Stock_Layout> layouts;
    layouts.push_back({.name = "Tonvex default", .tables = Empty_Tables()});
    Put_Piano(layouts.back().tables, lowerPiano, 0);
    Put_Chords(layouts.back().tables, notes, plainChords, DIGIT_ROW);
    Put_Chords(layouts.back().tables, notes, colouredChords, UPPER_ROW);

    layouts.push_back({.name = "Two-row piano", .tables = Empty_Tables()});
    Put_Piano(layouts.back().tables, lowerPiano, 0);
    Put_Piano(layouts.back().tables, upperPiano, 12);
    return layouts;
}

} // namespace tonvex
