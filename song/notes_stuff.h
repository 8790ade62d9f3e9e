#pragma once

#include "song/event_data.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {

/// A root is 0 to 11 with 0 = C; a string pitch class 0 to 11 with 0 = A; a MIDI note 0 to 127.
/// n folded into 0 to 11.
int Wrap12(int n) noexcept;
/// Value of one character of an interval string, base 12: '0' to '9', 'A' 10, 'B' 11.
int IntervalValue(char ch) noexcept;
/// Hi-hats and cymbals of General MIDI.
bool IsCymbalNote(int note) noexcept;

struct Chord_Type {
    std::string IntervalString;
    std::string TypeName;
    std::string Suffix;
};
struct ChordGroup {
    std::string Name;
    std::int16_t First = 0;
    std::int16_t Count = 0;
    std::string Suffix;
};
struct LibraryChord {
    std::string Name;
    std::string Frets; ///< six characters, low E first; a digit or x
    std::string Third; ///< read and kept
};

/// The program's music theory. Filled once at the start, then read. Interface thread.
class NotesStuff {
public:
    static constexpr int CHORD_TYPES = 12;
    static constexpr int MAX_CHORDS = 201;
    static constexpr int MAX_GROUPS = 21;
    static constexpr int DRUM_NAMES = 61; ///< row 0 is MIDI note 27
    static constexpr int FIRST_DRUM_NOTE = 27;

    NotesStuff();

    std::array<Chord_Type, CHORD_TYPES> ChordTypeTable;
    std::array<std::array<std::string, 4>, 12> NoteNames; ///< by root and Global_Notation
    std::array<int, 7> StringTuning{};                    ///< 1 (highest) to 6, classes from A
    std::array<int, 5> BassTuning{};                      ///< 1 to 4
    std::array<int, 7> OpenNotes{};                       ///< MIDI notes of guitar strings 1 to 6
    std::array<int, 5> BassOpenNotes{};                   ///< 1 to 4
    std::vector<ChordGroup> ChordGroups;
    std::vector<LibraryChord> ChordLibrary;
    int BasicGroupsEnd = 0;
    int LastGroup = -1;
    int ChordCount = 0;
    std::array<std::string, DRUM_NAMES> DrumSoundNames;
    int Global_Notation = 0; ///< 0 to 3, column of NoteNames

    /// False with a text for the user in error; the library is then empty.
    bool Load_Chords(const std::filesystem::path& path, std::string& error);
    /// False when the file is missing or has fewer than 61 lines.
    bool Load_Drums(const std::filesystem::path& path, std::string& error);

    int ChordTypeByName(const std::string& text) const;
    int RootByName(const std::string& text) const;
    std::string NoteName(int note, bool usePlus = false) const;
    /// frets[1] to frets[6], 1 the highest string; -1 for a string not played.
    void GetChordFrets(int code, int rootOrRow, std::array<int, 7>& frets) const;
    void FillChordData(QChordData& chordData, int root, int type, int octave, bool setName) const;
    /// Seven (root, type) pairs of a key; mode 0 major, 1 minor.
    static std::array<std::pair<int, int>, 7> Diatonic_Chords(int key, int mode);
    /// Transpose distance between two keys, minor ones replaced by their relative major first.
    static int Key_Distance(int fromKey, int fromMode, int toKey, int toMode);
};

} // namespace tonvex
