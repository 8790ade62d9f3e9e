#include "input/piano_selection.h"

#include <gtest/gtest.h>

namespace tonvex {
namespace {

using Notes = std::vector<int>;

TEST(PianoSelection, TogglesOneNoteOrMany) {
    Piano_Selection piano;
    piano.Set_Notes({});
    EXPECT_EQ(piano.First_Place(), 60);
    piano.Toggle(4);
    piano.Toggle(30);
    EXPECT_EQ(piano.Notes(), Notes{90}) << "the second takes the place of the first";
    piano.Toggle(30);
    EXPECT_EQ(piano.Notes(), Notes{});
    piano.SetMode(Piano_Selection::Mode::Chord);
    for (const int slot : {7, 0, 4, 31, -1})
        piano.Toggle(slot);
    EXPECT_EQ(piano.Notes(), (Notes{60, 64, 67}));
    EXPECT_TRUE(piano.Is_Marked(4));
    EXPECT_FALSE(piano.Is_Marked(31));
    piano.Set_First_Place(80);
    EXPECT_EQ(piano.First_Place(), 72);
    piano.Toggle(0);
    EXPECT_EQ(piano.Notes(), (Notes{60, 64, 67, 72})) << "marks out of sight stay";
    piano.Set_First_Place(500);
    EXPECT_EQ(piano.First_Place(), 96);
    piano.SetMode(Piano_Selection::Mode::Note);
    EXPECT_EQ(piano.Notes(), Notes{60});
}

TEST(PianoSelection, StoresRelativeNotesAbove128) {
    Piano_Selection piano;
    piano.Set_Notes({128 + 26});
    EXPECT_TRUE(piano.Variable());
    EXPECT_EQ(piano.First_Place(), 0);
    EXPECT_TRUE(piano.Is_Marked(26));
    piano.Set_Variable(false, 48);
    EXPECT_EQ(piano.Notes(), Notes{74}) << "sounds as before";
    EXPECT_TRUE(piano.Is_Marked(26)) << "octave 48 is in sight";
    piano.Set_Variable(true, 48);
    EXPECT_EQ(piano.Notes(), Notes{154});
    piano.Set_Variable(false, 48);
    piano.Set_Notes({30});
    EXPECT_EQ(piano.First_Place(), 24);
    piano.Set_Variable(true, 48);
    EXPECT_EQ(piano.Notes(), Notes{}) << "below the octave there is no relative note";
    piano.Set_Notes({128 + 60});
    EXPECT_EQ(piano.First_Place(), 60);
}

} // namespace
} // namespace tonvex
