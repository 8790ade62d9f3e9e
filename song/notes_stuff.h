#pragma once

#include "song/event_data.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
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
    int BasicGroupsEnd = 0; ///< last group that the search looks in
    int LastGroup = -1;
    int ChordCount = 0;
    std::array<std::string, DRUM_NAMES> DrumSoundNames;
    int Global_Notation = 0; ///< 0 to 3, column of NoteNames

    /// False with a text for the user in error; the library is then empty.
    bool Load_Chords(const std::filesystem::path& path, std::string& error);
    /// The same of a file's bytes. False when they hold more than 201 chords or 21 groups, or a suffix that
    /// no group is open for.
    bool Parse_Chords(std::string_view bytes);
    /// False, with a text for the user in error, when the file is missing or has fewer than 61 lines; the
    /// names are then as they were.
    bool Load_Drums(const std::filesystem::path& path, std::string& error);
    /// The same of a file's bytes. Lines behind the 61st are passed over.
    bool Parse_Drums(std::string_view bytes);

    /// Row of ChordTypeTable, -1 for none; letter case and blanks around it aside.
    int ChordTypeByName(const std::string& text) const;
    /// 0 to 11 by any of the four spellings, -1 for none.
    int RootByName(const std::string& text) const;
    /// The name of a root in the notation in force; any integer is folded into 0 to 11.
    const std::string& RootName(int root) const;
    /// Name and octave from note 24 ("C1") on, the name alone below. With usePlus a note from 128 on is shown
    /// as semitones above the active octave: 128 is "C+0".
    std::string NoteName(int note, bool usePlus = false) const;
    /// frets[1] to frets[6], 1 the highest string; -1 for a string not played.
    /// code below 40: row rootOrRow of the library (all -1 when there is no such row); 40 to 59: a shape is
    /// generated for type code - 40 on root rootOrRow; from 60 on: the library is searched for type code - 60
    /// and a shape generated when it has none. A type without a row in the table is its root alone. A string
    /// that generation finds nothing for keeps what frets held.
    void GetChordFrets(int code, int rootOrRow, std::array<int, 7>& frets) const;
    /// Root, type, octave and notes; with setName the name too. A chord whose VariableOctave is on is
    /// fingered on the guitar, lowest string first. Any other has root, or root + 12 * octave + 12 when
    /// octave is above 0, and its intervals above it. Unused notes are 0.
    void FillChordData(QChordData& chordData, int root, int type, int octave, bool setName) const;
    /// caption with the note name at its front (two letters before one, any spelling) replaced by root's name
    /// in the notation in force; trimmed, and cut to the 10 characters of a chord's name.
    std::string Caption_With_Root(const std::string& caption, int root) const;
    /// Seven (root, type) pairs of a key; mode 0 major, 1 minor.
    static std::array<std::pair<int, int>, 7> Diatonic_Chords(int key, int mode);
    /// Transpose distance between two keys, minor ones replaced by their relative major first.
    static int Key_Distance(int fromKey, int fromMode, int toKey, int toMode);

private:
    const std::string& Interval_String(int type) const;
    int Find_In_Library(int root, int type) const;
    void Read_Row(int row, std::array<int, 7>& frets) const;
    void Generate_Shape(int root, int type, std::array<int, 7>& frets) const;
};

} // namespace tonvex
