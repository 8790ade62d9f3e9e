#include "editors/clipboard_class.h"
#include "editors/roll_gesture.h"
#include "support/hub_bed.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tonvex {

/// 42 pixels a beat, 18 a row. The song: C5 at beat 1, E5 at 2, G5 at 4.1 (off the grid), a beat each,
/// volumes 100, 90, 80.
class Roll_Gesture_Test : public Hub_Bed {
protected:
    Roll_Gesture_Test() {
        geometry.ZoomIndex = 6;
        edits.Channel = CHANNEL;
        display.Show_Channel(CHANNEL);
        session.events.Subscribe([this](int msgId, std::int32_t param, const std::string&) {
            display.Changed(param);
            if (msgId >= MSG_EVENT_ADDED && msgId <= MSG_CHORD_TYPE_END)
                messages += (messages.empty() ? "" : " ") + std::to_string(msgId);
        });
        c5 = store.AddNewEvent(1.0, NoteData{72, 100, 1.0});
        e5 = store.AddNewEvent(2.0, NoteData{76, 90, 1.0});
        g5 = store.AddNewEvent(4.1, NoteData{79, 80, 1.0});
        before = Song();
    }
    std::string Song() const {
        std::ostringstream text;
        for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
            const auto event = store.ReadEvent(i);
            text << (i == store.FirstEvent() ? "" : " ") << event->StartTime << "/"
                 << store.Get_Event_BaseNote(i) << "/" << store.GetEvent_Length(i);
            if (event->Note != nullptr)
                text << "/" << int{event->Note->Vol};
        }
        return text.str();
    }
    Roll_Point At(double beat, double note) const {
        return {geometry.X_Of(beat), (127.0 - note + 0.5) * geometry.RowHeight()};
    }
    void Drag(const Roll_Point& from, const Roll_Point& to, Roll_Tool tool = Roll_Tool::Select,
              const Roll_Modifiers& modifiers = {}) {
        gesture.Press(from, tool, modifiers);
        gesture.Move({(from.X * 3 + to.X) / 4, (from.Y * 3 + to.Y) / 4}, modifiers);
        gesture.Move(to, modifiers);
        EXPECT_EQ(messages, "") << "before the release";
        gesture.Release();
    }
    void Select(const std::vector<std::int32_t>& ids) { display.Own().Select(ids); }
    const std::string& Asked() { return test.dialogs.asked.empty() ? none : test.dialogs.asked.back(); }

    Event_Display display{*session.channels};
    Roll_Geometry geometry;
    Event_Edits edits{{*session.hub, session.events, *session.channels, test.dialogs}, this};
    Roll_Gesture gesture{display, geometry, edits};
    std::string messages;
    std::string before;
    std::string none;
    std::int32_t c5 = 0;
    std::int32_t e5 = 0;
    std::int32_t g5 = 0;
};

struct Drag_Row {
    const char* name;
    double fromBeat, fromNote, toBeat, toNote;
    Roll_Tool tool;
    const char* modifiers; ///< a add, c copy, f off the grid
    const char* selected;  ///< of "ceg"
    const char* expectedMessages;
    const char* expectedSong;
};

class Roll_Drag_Test : public Roll_Gesture_Test, public testing::WithParamInterface<Drag_Row> {};

// Beat 0.13 is 5.5 pixels.
INSTANTIATE_TEST_SUITE_P(
    Drags, Roll_Drag_Test,
    testing::Values(Drag_Row{"to the right by a step", 1.5, 72, 1.75, 72, Roll_Tool::Select, "", "",
                             "1018 1019", "1.25/72/1/100 2/76/1/90 4.1/79/1/80"},
                    Drag_Row{"half a step goes up", 1.5, 72, 1.625, 72, Roll_Tool::Select, "", "",
                             "1018 1019", "1.25/72/1/100 2/76/1/90 4.1/79/1/80"},
                    Drag_Row{"less than half a step changes nothing", 1.5, 72, 1.61, 72, Roll_Tool::Select,
                             "", "", "1019", "1/72/1/100 2/76/1/90 4.1/79/1/80"},
                    Drag_Row{"the one under the pointer decides, the others keep their distance", 4.5, 79,
                             4.6, 79, Roll_Tool::Select, "", "ceg", "1018 1018 1018 1019",
                             "1.15/72/1/100 2.15/76/1/90 4.25/79/1/80"},
                    Drag_Row{"off the grid", 4.5, 79, 5.0, 79, Roll_Tool::Select, "f", "", "1018 1019",
                             "1/72/1/100 2/76/1/90 4.6/79/1/80"},
                    Drag_Row{"past another", 1.5, 72, 3.5, 72, Roll_Tool::Select, "", "", "1018 1019",
                             "2/76/1/90 3/72/1/100 4.1/79/1/80"},
                    Drag_Row{"up two rows", 2.5, 76, 2.5, 78, Roll_Tool::Select, "", "eg", "1022 1022 1023",
                             "1/72/1/100 2/78/1/90 4.1/81/1/80"},
                    Drag_Row{"mostly up stays in time", 2.5, 76, 2.6, 75, Roll_Tool::Select, "", "",
                             "1022 1023", "1/72/1/100 2/75/1/90 4.1/79/1/80"},
                    Drag_Row{"an unselected one goes alone", 2.5, 76, 2.5, 77, Roll_Tool::Select, "", "c",
                             "1022 1023", "1/72/1/100 2/77/1/90 4.1/79/1/80"},
                    Drag_Row{"within its row", 2.5, 76, 2.5, 76.45, Roll_Tool::Select, "", "", "1023",
                             "1/72/1/100 2/76/1/90 4.1/79/1/80"},
                    Drag_Row{"to the very start", 1.5, 72, 0.5, 72, Roll_Tool::Select, "", "", "1018 1019",
                             "0/72/1/100 2/76/1/90 4.1/79/1/80"},
                    Drag_Row{"stretching", 2.97, 76, 3.6, 76, Roll_Tool::Select, "", "", "1020 1021",
                             "1/72/1/100 2/76/1.75/90 4.1/79/1/80"},
                    Drag_Row{"stretching all selected by as much", 2.97, 76, 3.47, 76, Roll_Tool::Select, "",
                             "ce", "1020 1020 1021", "1/72/1.5/100 2/76/1.5/90 4.1/79/1/80"},
                    Drag_Row{"shrinking ends at a step", 2.97, 76, 1.0, 76, Roll_Tool::Select, "", "",
                             "1020 1021", "1/72/1/100 2/76/0.25/90 4.1/79/1/80"},
                    Drag_Row{"shrinking off the grid ends at the shortest", 2.97, 76, 1.0, 76,
                             Roll_Tool::Select, "f", "", "1020 1021", "1/72/1/100 2/76/0.05/90 4.1/79/1/80"},
                    Drag_Row{"a copy in time", 2.5, 76, 4.5, 76, Roll_Tool::Select, "c", "", "1015 1016",
                             "1/72/1/100 2/76/1/90 4/76/1/90 4.1/79/1/80"},
                    Drag_Row{"a copy in pitch", 2.5, 76, 2.5, 64, Roll_Tool::Select, "c", "",
                             "1015 1022 1016", "1/72/1/100 2/76/1/90 2/64/1/90 4.1/79/1/80"},
                    Drag_Row{"drawing up to the grid", 6.1, 50, 7.6, 50, Roll_Tool::Draw, "", "", "1015 1016",
                             "1/72/1/100 2/76/1/90 4.1/79/1/80 6/50/1.5/100"},
                    Drag_Row{"a drawing click", 6.3, 50, 6.3, 50, Roll_Tool::Draw, "", "", "1015 1016",
                             "1/72/1/100 2/76/1/90 4.1/79/1/80 6.25/50/1/100"},
                    Drag_Row{"the pencil on an event moves it", 1.5, 72, 2.5, 72, Roll_Tool::Draw, "", "",
                             "1018 1019", "2/72/1/100 2/76/1/90 4.1/79/1/80"},
                    Drag_Row{"the eraser takes what it passes", 0.5, 68, 3.5, 80, Roll_Tool::Erase, "", "",
                             "1017 1017", "4.1/79/1/80"},
                    Drag_Row{"a band sends nothing", 0.5, 60, 3.5, 90, Roll_Tool::Select, "", "", "",
                             "1/72/1/100 2/76/1/90 4.1/79/1/80"}));

TEST_P(Roll_Drag_Test, Is_One_Step) {
    const Drag_Row& row = GetParam();
    SCOPED_TRACE(row.name);
    const std::string flags = row.modifiers;
    const auto has = [&](char flag) { return flags.find(flag) != std::string::npos; };
    std::vector<std::int32_t> ids;
    for (const char* letter = row.selected; *letter != 0; ++letter)
        ids.push_back(*letter == 'c' ? c5 : *letter == 'e' ? e5 : g5);
    Select(ids);
    Drag(At(row.fromBeat, row.fromNote), At(row.toBeat, row.toNote), row.tool,
         {has('a'), has('c'), has('f')});
    EXPECT_EQ(messages, row.expectedMessages);
    EXPECT_EQ(Song(), row.expectedSong);
    EXPECT_EQ(Asked(), "");
    const bool changed = before != row.expectedSong;
    EXPECT_EQ(session.undo->Undo_Count(), changed ? 1U : 0U);
    EXPECT_EQ(session.project.Modified, changed);
    if (!changed)
        return;
    session.undo->Do_Undo();
    EXPECT_EQ(Song(), before);
    session.undo->Do_Redo();
    EXPECT_EQ(Song(), row.expectedSong);
}

TEST_F(Roll_Gesture_Test, What_Would_Fall_Out_Is_Asked_About_First) {
    const std::string notes =
        "1 event(s) will be deleted (the range of the notes\r\nmust be between 0-127)\r\n"
        "Continue ?";
    const std::int32_t high = store.AddNewEvent(0.0, NoteData{120, 70, 1.0});
    before = Song();
    display.Changed(CHANNEL);
    Select({high, g5});
    Drag(At(4.5, 79), At(4.5, 90));
    EXPECT_EQ(Asked(), notes);
    EXPECT_EQ(messages, "");
    EXPECT_EQ(Song(), before); // a no
    test.dialogs.answers[notes] = true;
    Drag(At(4.5, 79), At(4.5, 90));
    EXPECT_EQ(messages, "1017 1022 1023");
    EXPECT_EQ(Song(), "1/72/1/100 2/76/1/90 4.1/90/1/80");
    EXPECT_EQ(session.undo->Undo_Text(), "Undo move events");

    const std::string start =
        "2 event(s) will be deleted (the start of the events\r\ncan't be less than 1:0:0)\r\n"
        "Continue ?";
    messages.clear();
    Select({c5, e5, g5});
    Drag(At(4.5, 90), At(1.5, 90));
    EXPECT_EQ(Asked(), start);
    EXPECT_EQ(messages, "");
    test.dialogs.answers[start] = true;
    Drag(At(4.5, 90), At(1.5, 90));
    EXPECT_EQ(messages, "1017 1018 1017 1018 1018 1019");
    EXPECT_EQ(Song(), "1/90/1/80"); // 4.1 - 3 put on the grid is 1
    EXPECT_EQ(session.undo->Undo_Count(), 2U);
    session.undo->Do_Undo();
    session.undo->Do_Undo();
    EXPECT_EQ(Song(), before);

    messages.clear();
    test.dialogs.answers["1" + start.substr(1)] = true;
    EXPECT_EQ(edits.Copy_Events({c5, e5}, -1.5, 0).size(), 1U); // the other copy would begin at -0.5
    EXPECT_EQ(messages, "1015 1016");
    EXPECT_EQ(Song(), "0/120/1/70 0.5/76/1/90 1/72/1/100 2/76/1/90 4.1/79/1/80");
}

TEST_F(Roll_Gesture_Test, The_Lowest_Rows_Are_Out_And_Chords_Go_By_All_Their_Notes) {
    QChordData chord;
    session.notes.FillChordData(chord, 0, 0, 4, true); // C E G from 60
    chord.Length = 1.0;
    const std::int32_t chordId = store.AddNewEvent(8.0, chord);
    const std::int32_t fragment = store.AddNewEvent(9.0, MCEventData{});
    struct Row {
        std::int32_t id;
        int rows;
        bool asked;
    };
    // A note 72 stands on row 55: row 125 is note 2. The chord's highest note is 67.
    const Row rows[] = {{c5, 70, false},        {c5, 71, true},        {c5, -55, false},
                        {c5, -56, true},        {chordId, -60, false}, {chordId, -61, true},
                        {fragment, 100, false}, {NOBODY, 100, false}};
    for (const Row& row : rows) {
        test.dialogs.asked.clear();
        EXPECT_EQ(edits.Move_Rows({row.id}, row.rows), !row.asked) << row.rows;
        EXPECT_EQ(test.dialogs.asked.empty(), !row.asked) << row.rows;
        session.undo->Do_Undo();
    }
}

TEST_F(Roll_Gesture_Test, Clicks_And_Bands_Choose) {
    const auto click = [&](double beat, double note, bool add) {
        gesture.Press(At(beat, note), Roll_Tool::Select, {add, false, false});
        gesture.Release();
        return display.Own().Selected_IDs();
    };
    using IDs = std::vector<std::int32_t>;
    EXPECT_EQ(click(1.5, 72, false), IDs{c5});
    EXPECT_EQ(click(2.5, 76, true), (IDs{c5, e5}));
    EXPECT_EQ(click(1.5, 72, true), IDs{e5});
    Select({c5, e5});
    EXPECT_EQ(click(2.5, 76, false), IDs{e5}); // one of several alone
    EXPECT_EQ(click(6.0, 72, false), IDs{});
    Select({g5});
    Drag(At(0.5, 75), At(1.9, 60), Roll_Tool::Select, {true, false, false});
    EXPECT_EQ(display.Own().Selected_IDs(), (IDs{c5, g5}));
    EXPECT_EQ(session.undo->Undo_Count(), 0U);
}

TEST_F(Roll_Gesture_Test, A_Cancelled_Gesture_Was_None) {
    for (const Roll_Tool tool : {Roll_Tool::Select, Roll_Tool::Draw, Roll_Tool::Erase}) {
        gesture.Press(At(1.5, 72), tool, {});
        gesture.Move(At(3.5, 72), {});
        EXPECT_TRUE(gesture.Is_On());
        gesture.Cancel();
        gesture.Release();
    }
    gesture.Press_Volume(geometry.X_Of(1.0), 5, 4.0);
    gesture.Cancel();
    gesture.Release();
    Select({c5, g5});
    for (const double beat : {6.0, 2.5}) { // a band, another event
        gesture.Press(At(beat, 76), Roll_Tool::Select, {});
        gesture.Cancel();
        EXPECT_EQ(display.Own().Selected_IDs(), (Event_Edits::IDs{c5, g5}));
    }
    EXPECT_EQ(messages, "");
    EXPECT_EQ(Song(), before);
}

TEST_F(Roll_Gesture_Test, The_Volume_Lane_Paints_Or_Shifts) {
    gesture.Press_Volume(geometry.X_Of(1.0), 40, 4.0);
    gesture.Move_Volume(geometry.X_Of(4.1), 71); // 10 up a beat
    gesture.Release();
    EXPECT_EQ(messages, "1026 1026 1026 1027");
    EXPECT_EQ(Song(), "1/72/1/40 2/76/1/50 4.1/79/1/71");
    EXPECT_EQ(session.undo->Undo_Text(), "Undo change events volume");
    messages.clear();
    Select({c5, g5});
    gesture.Press_Volume(geometry.X_Of(4.1), 71, 4.0);
    gesture.Move_Volume(geometry.X_Of(4.5), 127); // 56 more; one of them ends at the top
    EXPECT_EQ(gesture.New_Volume(display.Own().Rows()[0]), 96);
    gesture.Release();
    EXPECT_EQ(messages, "1026 1026 1027");
    EXPECT_EQ(Song(), "1/72/1/96 2/76/1/50 4.1/79/1/127");
    session.undo->Do_Undo();
    session.undo->Do_Undo();
    EXPECT_EQ(Song(), before);
    store.AddNewEvent(1.1, NoteData{50, 60, 1.0});  // 4.2 pixels behind one that is selected
    store.AddNewEvent(2.02, NoteData{60, 60, 1.0}); // played with the one at 2
    display.Changed(CHANNEL);
    Select({c5, g5});
    gesture.Press_Volume(geometry.X_Of(1.0), 40, 6.0);
    gesture.Move_Volume(geometry.X_Of(1.0), 41);
    gesture.Release();
    Select({e5});
    gesture.Press_Volume(geometry.X_Of(2.0), 30, 6.0);
    gesture.Release();
    EXPECT_EQ(Song(), "1/72/1/101 1.1/50/1/60 2/76/1/30 2.02/60/1/60 4.1/79/1/81");
}

TEST_F(Roll_Gesture_Test, Sums_Of_Steps_Stay_On_The_Grid) {
    edits.Set_Times({e5}, 4.0, std::nullopt, false);
    for (int step = 0; step < 12; ++step)
        ASSERT_TRUE(edits.Move_Beats({e5}, -1.0 / 3.0)) << Asked(); // twelve from 4 are -3e-16
    edits.Resize({e5}, -0.9, 0.25);
    EXPECT_EQ(Song(), "0/76/0.25/90 1/72/1/100 4.1/79/1/80");
}

TEST_F(Roll_Gesture_Test, A_Box_That_Takes_The_Focus_Leaves_The_Drag_Alone) {
    session.events.Subscribe([this](int, std::int32_t, const std::string&) { gesture.Cancel(); });
    Select({c5});
    Drag(At(2.5, 76), At(2.5, 77));
    EXPECT_EQ(display.Own().Selected_IDs(), Event_Edits::IDs{e5});
}

TEST_F(Roll_Gesture_Test, Commands_Send_Their_Messages) {
    const Event_Edits::IDs all{c5, e5, g5, NOBODY};
    const std::int32_t overlapping = store.AddNewEvent(2.0, NoteData{48, 70, 3.0});
    before = Song();
    struct Row {
        const char* label;
        std::function<void()> act;
        const char* expectedMessages;
        const char* expectedSong;
    };
    const Row rows[] = {
        {"align events", [&] { edits.Align(all, 1); }, "1018 1018 1018 1019",
         "1/72/1/100 2/76/1/90 2/48/3/70 4/79/1/80"},
        {"align events", [&] { edits.Align(all, 2, 50); }, "1018 1018 1018 1019",
         "1/72/1/100 2/76/1/90 2/48/3/70 4.05/79/1/80"},
        {"legato",
         [&] {
             edits.Legato({c5, g5, e5, overlapping});
         },
         "1020 1020 1020 1021", "1/72/1/100 2/76/2.1/90 2/48/2.1/70 4.1/79/1/80"},
        {"change events volume", [&] { edits.Set_Volume(all, 33); }, "1026 1026 1026 1027",
         "1/72/1/33 2/76/1/33 2/48/3/70 4.1/79/1/33"},
        {"change events volume", [&] { edits.Change_Volume({c5}, -110); }, "1026 1027",
         "1/72/1/0 2/76/1/90 2/48/3/70 4.1/79/1/80"},
        {"change events time properties",
         [&] {
             edits.Set_Times({c5, e5}, 0.5, -0.75, true);
         },
         "1018 1020 1018 1020 1019", "1.5/72/0.25/100 2/48/3/70 2.5/76/0.25/90 4.1/79/1/80"},
        {"change events time properties", [&] { edits.Set_Times({g5}, 3.0, std::nullopt, false); },
         "1018 1019", "1/72/1/100 2/76/1/90 2/48/3/70 3/79/1/80"},
        {"change events time properties", [&] { edits.Set_Times({g5}, std::nullopt, 0.01, false); },
         "1020 1019", "1/72/1/100 2/76/1/90 2/48/3/70 4.1/79/0.05/80"},
        {"cut events",
         [&] {
             edits.Delete({e5, g5}, "Cut events");
         },
         "1017 1017", "1/72/1/100 2/48/3/70"},
        {"change note properties",
         [&] {
             edits.Set_Properties(c5, NoteData{60, 20, 9.0}, "Change note properties");
         },
         "1024 1025", "1/60/1/20 2/76/1/90 2/48/3/70 4.1/79/1/80"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.expectedSong);
        messages.clear();
        row.act();
        EXPECT_EQ(messages, row.expectedMessages);
        EXPECT_EQ(Song(), row.expectedSong);
        EXPECT_EQ(session.undo->Undo_Text(), std::string("Undo ") + row.label);
        EXPECT_EQ(session.undo->Undo_Count(), 1U);
        session.undo->Do_Undo();
        EXPECT_EQ(Song(), before);
    }
    messages.clear();
    EXPECT_FALSE(edits.Set_Times(all, -2.0, 1.0, true)); // asked, and a no
    EXPECT_EQ(messages, "");
    EXPECT_EQ(Song(), before);
}

TEST_F(Roll_Gesture_Test, The_Clipboard_Keeps_Distances_And_Data) {
    ClipboardClass clipboard;
    EXPECT_EQ(clipboard.First_Time(), -1.0);
    QChordData chord;
    session.notes.FillChordData(chord, 2, 1, 3, true);
    chord.Length = 2.0;
    MCEventData fragment;
    fragment.Root = 5;
    fragment.Length = 4.0;
    fragment.StyleBlock[77] = 99;
    const std::int32_t chordId = store.AddNewEvent(6.0, chord);
    const std::int32_t fragmentId = store.AddNewEvent(7.0, fragment);
    clipboard.Copy(store, {fragmentId, chordId, e5, NOBODY});
    EXPECT_EQ(clipboard.First_Time(), 2.0);
    clipboard.Copy(store, {NOBODY});
    EXPECT_EQ(clipboard.First_Time(), 2.0) << "nothing to copy leaves it";
    const auto added = edits.Add(clipboard.Placed_At(100.0), "Paste events");
    ASSERT_EQ(added.size(), 3U);
    EXPECT_EQ(messages, "1015 1015 1015 1016");
    EXPECT_EQ(store.ReadEvent(store.GetEvent_I(added[0]))->StartTime, 100.0);
    EXPECT_EQ(store.ReadEvent(store.GetEvent_I(added[1]))->StartTime, 104.0);
    EXPECT_EQ(store.ReadEvent(store.GetEvent_I(added[1]))->Payload(), EventData(chord));
    EXPECT_EQ(store.ReadEvent(store.GetEvent_I(added[2]))->Payload(), EventData(fragment));
    EXPECT_EQ(session.undo->Undo_Labels(), std::vector<std::string>{"Paste events"});
}

TEST_F(Roll_Gesture_Test, The_Hub_Refuses_What_Cannot_Be_Added) {
    Send(MSG_EVENT_ADDED, CHANNEL, std::monostate{}, -1.0, EventData(NoteData{60, 90, 1.0}));
    Send(MSG_EVENT_ADDED, CHANNEL, std::monostate{}, NAN_ARG, EventData(NoteData{60, 90, 1.0}));
    Send(MSG_EVENT_ADDED, CHANNEL, std::monostate{}, 1.0);
    Send(MSG_EVENT_ADDED, NOBODY, std::monostate{}, 1.0, EventData(NoteData{60, 90, 1.0}));
    Send(MSG_EVENT_ADDED, CHANNEL, NOBODY);
    EXPECT_EQ(messages, "");
    EXPECT_EQ(Song(), before);
}

TEST_F(Roll_Gesture_Test, Free_Bars_Push_The_Song_Back) {
    session.creator.MC_Bars[1].Root = 7;
    Send(MSG_INSERT_BARS, std::int32_t{1}, std::int32_t{2});
    EXPECT_EQ(Song(), "1/72/1/100 2/76/1/90 12.1/79/1/80");
    EXPECT_EQ(session.creator.MC_Bars[3].Root, 7);
    EXPECT_EQ(session.creator.LastBar, MusicCreator_Module::NEW_LAST_BAR + 2);
    EXPECT_EQ(session.undo->Undo_Text(), "Undo add bars");
    session.undo->Do_Undo();
    EXPECT_EQ(Song(), before);
    EXPECT_EQ(session.creator.MC_Bars[1].Root, 7);
    for (const auto& [bar, count] : {std::pair{-1, 1}, {0, 0}, {0, 2'000'000}})
        Send(MSG_INSERT_BARS, std::int32_t{bar}, std::int32_t{count});
    EXPECT_EQ(Song(), before);
    EXPECT_EQ(session.undo->Undo_Count(), 0U);
}

TEST_F(Roll_Gesture_Test, Steps_Carry_The_Selection) {
    Undo_Selection given;
    session.undo->Take_Selection = [&] { return Undo_Selection{CHANNEL, display.Own().Selected_IDs()}; };
    session.undo->Give_Selection = [&](const Undo_Selection& selection) { given = selection; };
    Select({c5, e5});
    edits.Move_Rows({c5, e5}, 1);
    Select({g5});
    session.undo->Do_Undo();
    EXPECT_EQ(given.EventIDs, (std::vector<std::int32_t>{c5, e5}));
    session.undo->Do_Redo();
    EXPECT_EQ(given.EventIDs, std::vector<std::int32_t>{g5});
}

} // namespace tonvex
