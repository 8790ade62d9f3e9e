// Any bytes as the chord library and as the drum names, then every look-up on what was read.

#include "fuzz/require.h"
#include "song/notes_stuff.h"

#include <cstdint>

namespace {

void Require_Frets(const std::array<int, 7>& frets) {
    for (std::size_t string = 1; string < frets.size(); ++string)
        Require(frets[string] >= -1 && frets[string] <= 20, "a fret off the neck");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tonvex;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    NotesStuff notes;
    (void)notes.Parse_Drums(bytes);
    const bool read = notes.Parse_Chords(bytes);
    Require(read || (notes.ChordLibrary.empty() && notes.ChordGroups.empty()), "a refused library left rows");
    Require(notes.ChordCount <= NotesStuff::MAX_CHORDS && notes.LastGroup < NotesStuff::MAX_GROUPS,
            "too much");
    int inGroups = 0;
    for (const ChordGroup& group : notes.ChordGroups)
        inGroups += group.Count;
    Require(inGroups <= notes.ChordCount, "groups overlap");
    std::array<int, 7> frets{};
    for (int row = -1; row <= notes.ChordCount; ++row) {
        notes.GetChordFrets(0, row, frets);
        Require_Frets(frets);
    }
    for (int type = 0; type < 15; ++type) {
        QChordData chord;
        chord.VariableOctave = FLAG_ON;
        const int root = static_cast<int>(size) + type;
        notes.FillChordData(chord, root, type, 3, true);
        Require(chord.Active <= 6 && chord.ChordName.size() <= 20, "a chord too large");
        notes.GetChordFrets(60 + type, root, frets);
        Require_Frets(frets);
    }
    const std::string name(bytes.substr(0, 40));
    (void)notes.RootByName(name);
    (void)notes.ChordTypeByName(name);
    Require(notes.Caption_With_Root(name, 1).size() <= 44, "a caption too long");
    return 0;
}
