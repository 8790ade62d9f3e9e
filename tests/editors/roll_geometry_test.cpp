#include "editors/edit_grid.h"
#include "editors/event_texts.h"
#include "editors/roll_geometry.h"
#include "support/hub_bed.h"

#include <gtest/gtest.h>

namespace tonvex {

TEST(Edit_Grid, Half_A_Step_Goes_Up) {
    struct Row {
        double beats;
        int div;
        double expected;
    };
    // Sixteenths are 0.25 wide, so their halves lie at 0.125.
    const Row rows[] = {{0.125, 4, 0.25}, {0.124, 4, 0.0},     {0.375, 4, 0.5},
                        {1.5, 1, 2.0},    {2.5, 1, 3.0},       {-0.5, 1, 0.0},
                        {-0.51, 1, -1.0}, {0.5, 3, 2.0 / 3.0}, {1.0 / 3.0, 3, 1.0 / 3.0},
                        {7.3, 0, 7.0},    {7.3, -4, 7.0},      {1e300, 4, 0.0}};
    for (const Row& row : rows)
        EXPECT_EQ(Round_To_Grid(row.beats, row.div), row.expected) << row.beats << " in " << row.div;
    Edit_Grid grid{true, 4};
    EXPECT_EQ(grid.Cell(0.49), 0.25);
    EXPECT_EQ(grid.Cell(0.5), 0.5);
    grid.AlignOn = false;
    EXPECT_EQ(grid.Cell(0.49), 0.49);
    EXPECT_EQ(grid.Snap(0.49), 0.49);
}

TEST(Roll_Geometry, Zoom_Is_Pixels_For_A_Beat) {
    Roll_Geometry geometry;
    EXPECT_STREQ(ZoomTable[static_cast<std::size_t>(geometry.ZoomIndex)].Text, "100 %");
    const std::pair<int, double> rows[] = {{0, 280.0}, {6, 42.0}, {12, 14.0}, {17, 5.6}};
    for (const auto& [index, pixels] : rows) {
        geometry.ZoomIndex = index;
        EXPECT_NEAR(geometry.Pixels_Per_Beat(), pixels, 1e-4)
            << ZoomTable[static_cast<std::size_t>(index)].Text;
        EXPECT_NEAR(geometry.Beat_At(geometry.X_Of(37.25)), 37.25, 1e-9);
    }
    EXPECT_EQ(geometry.Zoomed(1), 16);
    EXPECT_EQ(geometry.Zoomed(-1), 17);
    EXPECT_EQ(geometry.Zoomed(100), 0);
}

TEST(Roll_Geometry, Note_127_Is_On_Top) {
    Roll_Geometry geometry;
    const std::pair<double, int> rows[] = {{0.0, 127},      {17.9, 127},     {18.0, 126},
                                           {18.0 * 127, 0}, {18.0 * 128, 0}, {-1.0, 127}};
    for (const auto& [y, note] : rows)
        EXPECT_EQ(geometry.Note_At(y), note) << y;
    EXPECT_EQ(geometry.Row_At(-0.1), -1);
    EXPECT_EQ(geometry.Y_Of_Note(60), 67 * 18.0);
}

class Event_List_Test : public Hub_Bed {
protected:
    std::int32_t Add(double start, int note, double length) {
        return store.AddNewEvent(start, NoteData{static_cast<std::uint8_t>(note), 90, length});
    }
    std::string Between(double from, double to) {
        std::string found;
        list.Load(store);
        list.Visit(from, to, [&](std::size_t i) {
            found += (found.empty() ? "" : " ") + std::to_string(list.Rows()[i].Note);
        });
        return found;
    }
    Event_List list;
};

TEST_F(Event_List_Test, What_Reaches_Into_A_Span_Is_Found) {
    EXPECT_EQ(Between(0, 100), "");
    Add(0.0, 40, 50.0); // sounds under all the others
    Add(1.0, 41, 1.0);
    Add(2.0, 42, 1.0);
    Add(2.0, 43, 0.05);
    Add(9.0, 44, 1.0);
    EXPECT_EQ(Between(0, 100), "40 41 42 43 44");
    EXPECT_EQ(Between(2.0, 2.5), "40 42 43"); // what ends at 2 is over
    EXPECT_EQ(Between(2.5, 9.0), "40 42");    // what begins at 9 is behind
    EXPECT_EQ(Between(50.0, 60.0), "");
}

TEST_F(Event_List_Test, The_Selection_Survives_A_Load) {
    const std::int32_t first = Add(4.0, 40, 1.0);
    Add(0.0, 41, 1.0);
    list.Load(store);
    list.Select({first, NOBODY});
    Add(2.0, 42, 1.0);
    store.Set_Event_StartTime(first, 1.0);
    list.Load(store); // the store's links are not sorted yet
    EXPECT_EQ(list.Selected_IDs(), std::vector<std::int32_t>{first});
    EXPECT_EQ(list.Row_Of(first), 1);
    list.Invert_Selection();
    EXPECT_EQ(list.Selected_Count(), 2U);
    store.DeleteEvent(first);
    list.Load(store);
    EXPECT_EQ(list.Selected_Count(), 2U);
    EXPECT_EQ(list.Row_Of(first), -1);
}

TEST_F(Event_List_Test, A_Point_Hits_What_Is_Drawn_There) {
    Roll_Geometry geometry;
    geometry.ZoomIndex = 6; // 42 pixels a beat
    const std::int32_t below = Add(1.0, 60, 2.0);
    const std::int32_t above = Add(2.0, 60, 0.05); // 2.1 pixels long, drawn 3 wide
    list.Load(store);
    const auto at = [&](double x, double y) {
        const int hit = geometry.Hit(list, x, y);
        return hit < 0 ? NOT_GIVEN : list.Rows()[static_cast<std::size_t>(hit)].EventID;
    };
    const double y = geometry.Y_Of_Note(60);
    EXPECT_EQ(at(42.0, y), below);
    EXPECT_EQ(at(41.9, y), NOT_GIVEN);
    EXPECT_EQ(at(42.0, y - 0.1), NOT_GIVEN);
    EXPECT_EQ(at(84.0, y + 17.9), above);
    EXPECT_EQ(at(86.9, y), above);
    EXPECT_EQ(at(87.1, y), below);
    EXPECT_EQ(at(126.0, y), NOT_GIVEN);
    EXPECT_TRUE(geometry.On_Edge(list.Rows()[0], 125.0));
    EXPECT_FALSE(geometry.On_Edge(list.Rows()[0], 119.0));
    EXPECT_EQ(geometry.In_Box(list, 126.0, y + 30, 80.0, y - 5).size(), 2U);
    EXPECT_EQ(geometry.In_Box(list, 0.0, y, 41.0, y + 5).size(), 0U);
    QChordData chord; // C E G from 60: its E and its G are the chord's too, below other events
    session.notes.FillChordData(chord, 0, 0, 4, true);
    chord.Length = 1.0;
    const std::int32_t chordId = store.AddNewEvent(5.0, chord);
    const std::int32_t onIt = Add(5.0, 64, 0.5);
    list.Load(store);
    EXPECT_EQ(at(215.0, geometry.Y_Of_Note(67)), chordId);
    EXPECT_EQ(at(215.0, geometry.Y_Of_Note(64)), onIt);
    EXPECT_EQ(at(240.0, geometry.Y_Of_Note(64)), chordId);
    EXPECT_EQ(at(240.0, geometry.Y_Of_Note(65)), NOT_GIVEN);
    EXPECT_EQ(geometry.In_Box(list, 211.0, geometry.Y_Of_Note(67), 220.0, geometry.Y_Of_Note(67)).size(), 1U);
}

TEST_F(Event_List_Test, Events_Are_Told_In_Words) {
    QChordData chord;
    session.notes.FillChordData(chord, 9, 1, 4, true); // A minor: 9 + 12 * 4 + 12 is 69
    chord.Length = 1.5;
    chord.ChordVol = 80;
    const std::pair<EventData, std::string> rows[] = {
        {NoteData{76, 96, 1.0}, "N: E5 Vol: 96|E5, position 2:1.5, length 1 beat, volume 96"},
        {chord, chord.ChordName + " (A4 C5 E5) Vol: 80|Chord " + chord.ChordName +
                    " (A4 C5 E5), position 2:1.5, length 1.5 beats, volume 80"},
        {PatchData{9999}, "Set Patch : 9999|Set Patch : 9999, position 2:1.5"},
        {NamedEventData{FLAG_ON, "Echo", {}}, "Set FX: Echo|Set FX: Echo, position 2:1.5"},
    };
    const Event_Names names{session.notes, *session.channels, false, false};
    for (const auto& [data, expected] : rows) {
        const auto event = store.ReadEvent(store.GetEvent_I(store.AddNewEvent(4.5, data)));
        const double length = store.GetEvent_Length(event->EventI);
        EXPECT_EQ(Event_Text(*event, names) + "|" + Spoken_Text(*event, length, names), expected);
    }
    EXPECT_EQ(Note_Text(76, {session.notes, *session.channels, false, true}), "E5 (76)");
    EXPECT_EQ(Note_Text(27, {session.notes, *session.channels, true, false}), "Drum 0");
}

TEST(Event_Texts, Distances_Are_Read_And_Written) {
    struct Row {
        const char* text;
        bool barBeat;
        std::optional<double> beats;
    };
    const Row rows[] = {
        {"1:1.5", true, 5.5},      {"-1:1.5", true, -5.5},       {"0:0", true, 0.0},
        {" 2.25 ", true, 2.25},    {"0:4", true, std::nullopt},  {"x", false, std::nullopt},
        {"", false, std::nullopt}, {"1:1", false, std::nullopt}, {"1.5:1", true, std::nullopt},
        {"-", true, std::nullopt}, {":", true, std::nullopt},    {"nan", false, std::nullopt}};
    for (const Row& row : rows)
        EXPECT_EQ(Parse_Distance(row.text, row.barBeat), row.beats) << row.text;
    EXPECT_EQ(Distance_Text(5.5, true), "1:1.5");
    EXPECT_EQ(Distance_Text(-5.5, true), "-1:1.5");
    EXPECT_EQ(Distance_Text(3.9999, true), "1:0");
    EXPECT_EQ(Distance_Text(0.25, false), "0.25");
    EXPECT_EQ(Parse_Position("2:1.5", true), 4.5);
    EXPECT_EQ(Parse_Position("2:5", true), std::nullopt);
}

} // namespace tonvex
