#include "input/qchord_edit.h"

#include <gtest/gtest.h>

namespace tonvex {
namespace {

using namespace QChord_Edit;

TEST(QChordEdit, ReadsPickingBackInOrder) {
    const std::string count = "The number of the notes of the pattern must be between 2 and 8.";
    struct Case {
        const char* name;
        Picking_Choice picking;
        std::string warning;
        int step;
        std::vector<int> places;
    };
    const Case cases[] = {
        {"off, whatever else stands there", {false, false, "x", "9 9 9", -1}, "", -1, {}},
        {"a delay", {true, false, " 300 ", "1 2 3", -1}, "", 300, {1, 2, 3}},
        {"no delay at all between picks", {true, false, "0", "1 2", -1}, "", 0, {1, 2}},
        {"the longest delay", {true, false, "9999", "1 2", -1}, "", 9999, {1, 2}},
        {"a delay of 10000", {true, false, "10000", "1 2", -1}, "Invalid picking delay", -1, {}},
        {"a delay below 0", {true, false, "-1", "1 2", -1}, "Invalid picking delay", -1, {}},
        {"no delay", {true, false, "", "1 2", -1}, "Invalid picking delay", -1, {}},
        {"words", {true, false, "300 ms", "1 2", -1}, "Invalid picking delay", -1, {}},
        {"the delay before the pattern", {true, false, "-5", "1", -1}, "Invalid picking delay", -1, {}},
        {"beats ignore the delay", {true, true, "10000", "1 2", 3}, "", -1003, {1, 2}},
        {"beats without a row", {true, true, "", "1 2", -1}, "Please select the beats per note", -1, {}},
        {"one number", {true, false, "100", "1", -1}, count, -1, {}},
        {"no number", {true, false, "100", "   ", -1}, count, -1, {}},
        {"nine numbers", {true, false, "100", "1 2 3 4 5 6 1 2 3", -1}, "", 100, {1, 2, 3, 4, 5, 6, 1, 2, 3}},
        {"ten numbers", {true, false, "100", "1 2 3 4 5 6 1 2 3 4", -1}, count, -1, {}},
        {"many blanks", {true, false, "100", "  1    2  3 ", -1}, "", 100, {1, 2, 3}},
        {"a rest", {true, false, "100", "1 0 3", -1}, "", 100, {1, 0, 3}},
        {"rounded", {true, false, "100", "1.6 2.5", -1}, "", 100, {2, 2}},
        {"above 6", {true, false, "100", "1 7", -1}, "Invalid value: 7", -1, {}},
        {"below 0", {true, false, "100", "-1 2", -1}, "Invalid value: -1", -1, {}},
        {"a letter", {true, true, "", "1 a", -1}, "Invalid value: a", -1, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        QChordData chord;
        chord.StepMs = 77;
        chord.PatternNoteCount = 2;
        EXPECT_EQ(Read_Picking(c.picking, chord), c.warning);
        EXPECT_EQ(chord.StepMs, c.step);
        ASSERT_EQ(chord.PatternNoteCount, c.places.size());
        for (std::size_t i = 0; i < c.places.size(); ++i)
            EXPECT_EQ(chord.PatternNotes[i], c.places[i]);
    }
}

TEST(QChordEdit, ShowsARecordInTheControls) {
    QChordData chord;
    chord.ChordName = "Dm";
    chord.ChordFlagA = 2;
    chord.ChordTypeIndex = 1;
    chord.Octave = 4;
    chord.ChordVol = 90;
    chord.ChordFlagB = 1;
    chord.PatternNoteCount = 3;
    chord.PatternNotes = {1, 3, 2};
    const auto with = [&](int step, Flag16 guitar, int type) {
        chord.StepMs = static_cast<std::int16_t>(step);
        chord.VariableOctave = guitar;
        chord.ChordTypeIndex = static_cast<std::uint8_t>(type);
        return Choice_Of(chord, 120.0);
    };
    using Choice = QChord_Choice;
    const auto choice = [](Chord_Source source, int type, const Picking_Choice& picking) {
        return Choice{source, 2, type, 4, "Dm", true, 90, picking};
    };
    EXPECT_EQ(with(-1, FLAG_OFF, 1), choice(Chord_Source::Piano, 1, {false, false, "", "1 3 2", -1}));
    // 120 beats a minute: 500, 250, 125, 62.5 ms; 180 lies nearer to 125.
    EXPECT_EQ(with(180, FLAG_ON, 1), choice(Chord_Source::Guitar, 1, {true, false, "180", "1 3 2", 2}));
    EXPECT_EQ(with(-999, FLAG_OFF, 1), choice(Chord_Source::Piano, 1, {true, false, "-999", "1 3 2", 6}));
    EXPECT_EQ(with(-1000, FLAG_OFF, 255), choice(Chord_Source::Custom, -1, {true, true, "", "1 3 2", 0}));
    EXPECT_EQ(with(-1003, FLAG_OFF, 50), choice(Chord_Source::Piano, -1, {true, true, "", "1 3 2", 3}));
    EXPECT_EQ(with(-1007, FLAG_OFF, 1), choice(Chord_Source::Piano, 1, {true, true, "", "1 3 2", -1}));
}

TEST(QChordEdit, Tells_The_Notes_Of_A_Chord_That_Was_Tuned_Down) {
    QChordData chord;
    chord.Active = 3;
    chord.ChordTypeIndex = 0;
    chord.ChordNotes = {253, 1, 4};
    EXPECT_EQ(Sounding_Notes(chord, 3), (std::vector<int>{45, 49, 52}));
    EXPECT_EQ(Notes_Text(NotesStuff(), chord), "Notes: A C# E");
}

TEST(QChordEdit, FindsTheNearestRowOfBeats) {
    EXPECT_EQ(Beats_Text(0), "1");
    EXPECT_EQ(Beats_Text(3), "1/8");
    EXPECT_EQ(Nearest_Beats_Row(500, 120.0), 0);
    EXPECT_EQ(Nearest_Beats_Row(375, 120.0), 0) << "as near to 1 as to 1/2";
    EXPECT_EQ(Nearest_Beats_Row(374, 120.0), 1);
    EXPECT_EQ(Nearest_Beats_Row(376, 60.0), 1) << "nearer to 500 than to 250";
    EXPECT_EQ(Nearest_Beats_Row(0, 120.0), 6);
    EXPECT_EQ(Nearest_Beats_Row(9999, 0.0), 3) << "a tempo below 1 counts as 1: 7500 ms";
}

} // namespace
} // namespace tonvex
