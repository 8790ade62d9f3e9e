#include "song/notes_stuff.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>

namespace tonvex {
namespace {

using Frets = std::array<int, 7>;
using Notes = std::vector<int>;

Notes Used_Notes(const QChordData& chord) {
    return {chord.ChordNotes.begin(), chord.ChordNotes.begin() + chord.Active};
}

QChordData Filled(const NotesStuff& notes, int root, int type, int octave, bool guitar = false) {
    QChordData chord;
    chord.ChordNotes.fill(99);
    chord.VariableOctave = To_Flag(guitar);
    notes.FillChordData(chord, root, type, octave, true);
    return chord;
}

TEST(Notes, FoldAndCount) {
    for (const auto& [n, folded] : {std::pair{-1, 11}, {-12, 0}, {12, 0}, {-13, 11}, {25, 1}, {INT_MIN, 4}})
        EXPECT_EQ(Wrap12(n), folded) << n;
    EXPECT_EQ(IntervalValue('9'), 9);
    EXPECT_EQ(IntervalValue('B'), 11);
    int cymbals = 0;
    for (int note = 0; note < 128; ++note)
        cymbals += IsCymbalNote(note) ? 1 : 0;
    EXPECT_EQ(cymbals, 10);
    EXPECT_TRUE(IsCymbalNote(42) && IsCymbalNote(59) && !IsCymbalNote(43));
}

TEST(Notes, NamesInFourNotations) {
    NotesStuff notes;
    struct Case {
        int note;
        bool plus;
        std::array<const char*, 4> names;
    };
    const Case cases[] = {
        {24, false, {"C1", "C1", "B#1", "C1"}},     {61, false, {"C#4", "Db4", "C#4", "Db4"}},
        {71, false, {"B4", "B4", "B4", "Cb4"}},     {23, false, {"B", "B", "B", "Cb"}},
        {0, true, {"C", "C", "B#", "C"}},           {-1, false, {"B", "B", "B", "Cb"}},
        {127, true, {"G9", "G9", "G9", "G9"}},      {128, true, {"C+0", "C+0", "B#+0", "C+0"}},
        {128, false, {"G#9", "Ab9", "G#9", "Ab9"}}, {144, true, {"E+1", "E+1", "E+1", "Fb+1"}}};
    for (int notation = 0; notation < 4; ++notation) {
        notes.Global_Notation = notation;
        for (const Case& one : cases)
            EXPECT_EQ(notes.NoteName(one.note, one.plus), one.names[static_cast<std::size_t>(notation)])
                << one.note;
    }
    notes.Global_Notation = 99; // a broken setting
    EXPECT_EQ(notes.NoteName(61), "Db4");
    for (const auto& [name, root] :
         {std::pair{" bb ", 10}, {"CB", 11}, {"e#", 5}, {"B#", 0}, {"h", -1}, {"", -1}})
        EXPECT_EQ(notes.RootByName(name), root) << name;
    EXPECT_EQ(notes.ChordTypeByName("  Minor Seventh"), 4);
    EXPECT_EQ(notes.ChordTypeByName("min"), -1);
}

TEST(Notes, FillPianoChords) {
    NotesStuff notes;
    struct Case {
        int root, type, octave;
        const char* name;
        Notes notes;
    };
    const Case cases[] = {{0, 0, 0, "C", {0, 4, 7}},
                          {11, 1, 0, "Bm", {11, 14, 18}},
                          {0, 8, 4, "C5", {60, 67}},
                          {2, 10, 1, "D9", {26, 28, 30, 33, 36}},
                          {9, 5, 0, "Amaj7", {9, 13, 16, 20}},
                          {1, 2, 0, "C#°", {1, 4, 7}},
                          {4, 20, 0, "E", {4}}};
    for (const Case& one : cases) {
        const QChordData chord = Filled(notes, one.root, one.type, one.octave);
        EXPECT_EQ(Used_Notes(chord), one.notes) << one.name;
        EXPECT_EQ(chord.ChordName, one.name);
        EXPECT_EQ(chord.ChordFlagA, one.root);
        EXPECT_EQ(chord.Octave, one.octave);
        EXPECT_EQ(chord.ChordNotes.back(), 0) << one.name;
    }
    notes.Global_Notation = 1;
    EXPECT_EQ(Filled(notes, 3, 5, 0).ChordName, "Ebmaj7");
}

TEST(Notes, FillGuitarChords) {
    NotesStuff notes;
    EXPECT_EQ(notes.BassOpenNotes, (std::array<int, 5>{0, 43, 38, 33, 28}));
    ASSERT_TRUE(
        notes.Parse_Chords("- Major\n-- NULL\nC x32010 032010\nG 320003 210003\n- Fives\n-- 5\nA5 502xxx\n"));
    EXPECT_EQ(Used_Notes(Filled(notes, 0, 0, 3, true)), (Notes{48, 52, 55, 60, 64}));
    EXPECT_EQ(Used_Notes(Filled(notes, 7, 0, 0, true)), (Notes{43, 47, 50, 55, 59, 67}));
    // Two strings on 45 are one note.
    EXPECT_EQ(Used_Notes(Filled(notes, 9, 8, 0, true)), (Notes{45, 52}));
    // Not in the library: tones A C# E. String 1 (E) rings open with E, 2 (B) climbs to C#, 3 (G) to A; then
    // all sound: 4 (D) has E at 2, 5 rings open with A, 6 with E.
    EXPECT_EQ(Used_Notes(Filled(notes, 9, 0, 0, true)), (Notes{40, 45, 52, 57, 61, 64}));
}

TEST(Notes, ShapesByCode) {
    NotesStuff notes;
    ASSERT_TRUE(
        notes.Parse_Chords("C x3X01\n- Major\n-- null\nD xx0232 1\n----\n- More\n-- NULL\nE x79997\n"));
    Frets frets{};
    notes.GetChordFrets(0, 0, frets); // five characters: string 1 has none and rings open
    EXPECT_EQ(frets, (Frets{0, 0, 1, 0, -1, 3, -1}));
    notes.GetChordFrets(0, 7, frets);
    EXPECT_EQ(frets, (Frets{-1, -1, -1, -1, -1, -1, -1}));
    notes.GetChordFrets(60, 2, frets);
    EXPECT_EQ(frets, (Frets{-1, 2, 3, 2, 0, -1, -1}));
    // E stands behind the mark: generated. B G# E, then chord tones: 4 has E, 5 B, 6 E.
    notes.GetChordFrets(60, 4, frets);
    Frets generated{};
    notes.GetChordFrets(40, 4, generated);
    EXPECT_EQ(generated, (Frets{0, 0, 0, 1, 2, 2, 0}));
    EXPECT_TRUE(std::equal(frets.begin() + 1, frets.end(), generated.begin() + 1));
}

TEST(Notes, KeysAndCaptions) {
    NotesStuff notes;
    EXPECT_EQ(NotesStuff::Diatonic_Chords(7, 0)[6], (std::pair{6, 1}));
    EXPECT_EQ(NotesStuff::Diatonic_Chords(9, 1)[1], (std::pair{11, 1}));
    EXPECT_EQ(NotesStuff::Diatonic_Chords(9, 1)[5], (std::pair{5, 0}));
    EXPECT_EQ(NotesStuff::Key_Distance(0, 0, 9, 1), 0); // C and A minor
    EXPECT_EQ(NotesStuff::Key_Distance(9, 1, 2, 0), 2);
    EXPECT_EQ(NotesStuff::Key_Distance(2, 0, 0, 0), 10);
    for (const auto& [old, root, now] : {std::tuple{" dbm7 ", 2, "Dm7"},
                                         {"Cmaj7", 3, "D#maj7"},
                                         {"C#maj7sus4", 2, "Dmaj7sus4"},
                                         {"Cmaj7sus42", 1, "C#maj7sus4"},
                                         {"my riff", 4, "my riff"},
                                         {"", 4, ""}})
        EXPECT_EQ(notes.Caption_With_Root(old, root), now) << old;
}

TEST(ChordFile, ReadsItsForms) {
    NotesStuff notes;
    // Tabs and commas, quotes with blanks, a quote left open, lines ended by CR, the last by nothing; 0xB0 is
    // the degree sign of an old file.
    ASSERT_TRUE(notes.Parse_Chords(
        "-\t\"Dim, all\"\r--,\xB0\r\"\" x\r\rC\xB0 x3454x,\"0 1\r----\r- B\r-- Null\rC\"x1\"2"));
    ASSERT_EQ(notes.ChordGroups.size(), 2U);
    EXPECT_EQ(notes.ChordGroups[0].Name, "Dim, all");
    EXPECT_EQ(notes.ChordGroups[0].Suffix, "°");
    EXPECT_EQ(notes.ChordGroups[0].Count, 1);
    EXPECT_EQ(notes.ChordGroups[1].First, 1);
    EXPECT_EQ(notes.ChordGroups[1].Count, 1);
    EXPECT_EQ(notes.BasicGroupsEnd, 0);
    EXPECT_EQ(notes.LastGroup, 1);
    EXPECT_EQ(notes.ChordCount, 2);
    EXPECT_EQ(notes.ChordLibrary[0].Third, "0 1");
    EXPECT_EQ(notes.ChordLibrary[1].Frets, "x1");
    Frets frets{};
    notes.GetChordFrets(62, 0, frets);
    EXPECT_EQ(frets, (Frets{0, -1, 4, 5, 4, 3, -1}));
    ASSERT_TRUE(notes.Parse_Chords("- A\n- B\n"));
    EXPECT_EQ(notes.BasicGroupsEnd, 1) << "no mark: every group is searched";
}

TEST(ChordFile, StopsAtItsTables) {
    const auto rows = [](int count, const std::string& row) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += row;
        return text;
    };
    NotesStuff notes;
    EXPECT_TRUE(notes.Parse_Chords(rows(21, "- g\n") + rows(201, "C x32010\n")));
    EXPECT_EQ(notes.ChordGroups.back().Count, 201);
    for (const std::string& bad : {rows(202, "C x32010\n"), rows(22, "- g\n"), std::string("-- m\n")}) {
        EXPECT_FALSE(notes.Parse_Chords(bad));
        EXPECT_EQ(notes.ChordCount, 0);
        EXPECT_EQ(notes.LastGroup, -1);
    }
    std::string error;
    EXPECT_FALSE(notes.Load_Chords("/nowhere/chords.txt", error));
    EXPECT_EQ(error, "Cannot open '/nowhere/chords.txt'");
    EXPECT_FALSE(notes.Load_Chords("/", error));
    EXPECT_EQ(error, "Cannot load chord file");
    EXPECT_FALSE(notes.Parse_Drums(rows(60, "x\n")));
    EXPECT_TRUE(notes.Parse_Drums(rows(60, "x\n") + "y"));
    EXPECT_EQ(notes.DrumSoundNames.back(), "y");
}

TEST(ShippedTables, EveryShapeIsItsChord) {
    NotesStuff notes;
    std::string error;
    ASSERT_TRUE(notes.Load_Chords(TONVEX_SOURCE_DATA "/chords.txt", error)) << error;
    ASSERT_TRUE(notes.Load_Drums(TONVEX_SOURCE_DATA "/drums.txt", error)) << error;
    EXPECT_EQ(notes.DrumSoundNames[0], "High Q");
    EXPECT_EQ(notes.DrumSoundNames[38 - 27], "Acoustic Snare");
    EXPECT_EQ(notes.DrumSoundNames[60], "Open Surdo");
    EXPECT_GE(notes.ChordCount, 120);
    EXPECT_GE(notes.BasicGroupsEnd, 8);
    EXPECT_GT(notes.LastGroup, notes.BasicGroupsEnd);
    for (int type = 0; type < NotesStuff::CHORD_TYPES; ++type) {
        const Chord_Type& kind = notes.ChordTypeTable[static_cast<std::size_t>(type)];
        for (int root = 0; root < 12; ++root) {
            const auto row =
                std::find_if(notes.ChordLibrary.begin(), notes.ChordLibrary.end(), [&](const auto& chord) {
                    return chord.Name == notes.RootName(root) + kind.Suffix;
                });
            ASSERT_NE(row, notes.ChordLibrary.end()) << root << kind.TypeName;
            EXPECT_EQ(row->Frets.size(), 6U) << row->Name;
            EXPECT_EQ(row->Third.size(), 6U) << row->Name;
            Frets searched{};
            Frets byRow{};
            notes.GetChordFrets(60 + type, root, searched);
            notes.GetChordFrets(0, static_cast<int>(row - notes.ChordLibrary.begin()), byRow);
            EXPECT_EQ(searched, byRow) << row->Name << " is found";
            std::set<int> tones{root};
            for (const char interval : kind.IntervalString)
                tones.insert(Wrap12(root + IntervalValue(interval)));
            std::set<int> missing = tones;
            for (std::size_t string = 1; string <= 6; ++string) {
                if (searched[string] < 0)
                    continue;
                const int pitch = Wrap12(notes.OpenNotes[string] + searched[string]);
                EXPECT_TRUE(tones.contains(pitch)) << row->Name << " string " << string;
                missing.erase(pitch);
            }
            if (type != 8) // the fifth may be left out where it is not the chord itself
                missing.erase(Wrap12(root + 7));
            EXPECT_TRUE(missing.empty()) << row->Name << " lacks a tone";
        }
    }
}

} // namespace
} // namespace tonvex
