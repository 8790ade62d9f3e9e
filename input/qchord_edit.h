#pragma once

#include "song/event_data.h"
#include "song/notes_stuff.h"

#include <string>
#include <vector>

namespace tonvex {

/// What the user says about picking, as typed and chosen.
struct Picking_Choice {
    bool usePicking = false; ///< off: all notes at once
    bool useBeats = false;   ///< the step is a row of the beats list, not a delay
    std::string delay;       ///< milliseconds, as typed
    std::string pattern;     ///< numbers with blanks between them, as typed
    int beatsRow = -1;       ///< row of the beats list, -1 none
    bool operator==(const Picking_Choice&) const = default;
};

enum class Chord_Source { Piano, Guitar, Custom };

/// What stands in the controls of a chord.
struct QChord_Choice {
    Chord_Source source = Chord_Source::Piano;
    int root = 0;
    int type = -1;  ///< row of ChordTypeTable, -1 none
    int octave = 0; ///< 0 the active octave, 1 to 6 fixed
    std::string name;
    bool repeat = false;
    int volume = 127;
    Picking_Choice picking;
    bool operator==(const QChord_Choice&) const = default;
};

/// The rules by which a chord is edited; they know no window. Pattern numbers lie in PatternNotes from its
/// first entry on. Thread-free: all functions work on their arguments alone.
namespace QChord_Edit {

inline constexpr int NO_CHORD_TYPE = 255;
inline constexpr int MAX_DELAY_MS = 9999;
inline constexpr int BEATS_ROWS = 7; ///< one beat to 1/64
inline constexpr std::size_t NAME_LENGTH = 10;

/// Row i is 1 / 2^i of a beat: "1", "1/2", "1/4" ...
std::string Beats_Text(int row);
/// Row whose time at tempo (beats per minute) is nearest to ms, the longer one of two as near.
int Nearest_Beats_Row(int ms, double tempo);

/// The controls that show a record. A row of the beats list that the list lacks is -1.
QChord_Choice Choice_Of(const QChordData& chord, double tempo);

/// Puts the picking controls into the record. Returns the text to warn with, empty when all is well; after a
/// warning the record has no picking.
std::string Read_Picking(const Picking_Choice& picking, QChordData& chord);

/// Root, type and octave into the record, as piano or as guitar chord, and the name that they propose. A
/// guitar chord has no octave.
void Set_Chord(const NotesStuff& notes, Chord_Source source, int root, int type, int octave,
               QChordData& chord);
/// The notes that the record sounds: what a custom chord takes over from it. octave: the active one, 0 to 5;
/// -1 for a stored chord whose notes stand where they sound.
std::vector<int> Sounding_Notes(const QChordData& chord, int octave);
/// Literal notes, at most 6, without a chord type.
void Set_Custom(const std::vector<int>& sounding, QChordData& chord);
/// "Notes: " and the names of the notes, without octaves while the active octave decides about them.
std::string Notes_Text(const NotesStuff& notes, const QChordData& chord);

} // namespace QChord_Edit

} // namespace tonvex
