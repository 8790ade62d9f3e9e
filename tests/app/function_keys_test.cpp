#include "support/hub_bed.h"

#include <algorithm>

using namespace tonvex;

namespace {

using Key_Use = Function_Key_Table::Key_Use;
constexpr int ROW_PAN_RIGHT = 0;
constexpr int ROW_METRONOME = 3;
constexpr int ROW_PLAY = 22;
constexpr int ROW_STOP = 53;

std::vector<std::uint8_t> Record(std::uint8_t key, const std::string& name, std::uint8_t modifier) {
    Byte_Writer writer;
    writer.Write_U8(key);
    for (const std::string& text : {name, std::string("inner")}) {
        writer.Write_U16(static_cast<std::uint16_t>(text.size()));
        writer.Write_Text(text);
    }
    writer.Write_I16(-1);
    writer.Write_U8(modifier);
    writer.Write_I16(-1);
    return writer.Take();
}

} // namespace

TEST(Function_Keys, Ships_With_Its_Table) {
    const Function_Key_Table table;
    const struct {
        int row;
        FunctionKey expected;
    } rows[] = {
        {0, {'R', "Move channel Pan 10% Right", "Move channel Pan 10% Right", 0, 0, -1}},
        {10, {46, "Delete Channel", "Delete Channel", 0, 2, 0}},
        {22, {13, "Play song", "Play song", 0, 0, 0}},
        {31, {'R', "Clear all channels mute/solo status", "Clear all channels mute/solo status", 0, 0, 0}},
        {49, {123, "Select Qchords octave: 6", "Select Qchords octave: 6", -1, 0, -1}},
        {53, {27, "Stop recording/playing", "Stop recording/playing", -1, 0, -1}},
        {55, {0, "Toggle channel Solo on/off", "Toggle channel Solo on/off", 0, 0, -1}},
        {56, {}},
        {80, {}}};
    for (const auto& [row, expected] : rows)
        EXPECT_EQ(table.FunctionKeys.at(static_cast<std::size_t>(row)), expected) << row;
    const auto count = [&](auto is) {
        return std::count_if(table.FunctionKeys.begin(), table.FunctionKeys.end(), is);
    };
    EXPECT_EQ(count([](const FunctionKey& f) { return f.Locked == -1; }), 13);
    EXPECT_EQ(count([](const FunctionKey& f) { return f.WhileRunning == -1; }), 30);
    EXPECT_EQ(count([](const FunctionKey& f) { return f.KeyCode == 0; }), 25 + 10);
    // fourteen keys around the letters, five signs of the number pad, ten digits twice, letters, F1 to F12
    EXPECT_EQ(std::count(table.KeyNames.begin(), table.KeyNames.end(), ""), 256 - (19 + 20 + 26 + 12));
    EXPECT_EQ(table.Row_Of_Key('R', 0), ROW_PAN_RIGHT);
    EXPECT_EQ(table.Row_Of_Key(0, 0), -1);
    EXPECT_EQ(table.Key_Text(21), "Ctrl + R");
    EXPECT_EQ(table.Key_Text(23), "numpad 4");
}

TEST(Function_Keys, A_File_Gives_Key_Modifier_And_Name_Alone) {
    auto bytes = Record('Q', "Turn", 3);
    const auto unnamed = Record('Q', "", 1);
    const auto last = Record('J', "caf\xe9", 4);
    bytes.insert(bytes.end(), unnamed.begin(), unnamed.end());
    bytes.insert(bytes.end(), last.begin(), last.end());
    Function_Key_Table expected;
    expected.FunctionKeys[0].KeyCode = 'Q';
    expected.FunctionKeys[0].Name = "Turn";
    expected.FunctionKeys[0].Modifier = 3;
    // Every piece of it: the rows whose records are whole.
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        Function_Key_Table table;
        table.FunctionKeys_Read(std::span(bytes).first(size));
        Function_Key_Table stands =
            size < bytes.size() - unnamed.size() - last.size() && size < Record('Q', "Turn", 3).size()
                ? Function_Key_Table()
                : expected;
        if (size == bytes.size()) {
            stands.FunctionKeys[2].KeyCode = 'J';
            stands.FunctionKeys[2].Name = "café";
            stands.FunctionKeys[2].Modifier = 4;
        }
        ASSERT_EQ(table.FunctionKeys, stands.FunctionKeys) << size;
    }
}

TEST(Function_Keys, A_File_Has_81_Records) {
    Function_Key_Table table;
    table.FunctionKeys[0].Name = "é";
    const auto bytes = table.FunctionKeys_Bytes();
    const std::vector<std::uint8_t> start = {'R', 1, 0, 0xE9, 26, 0, 'M', 'o', 'v', 'e'};
    EXPECT_TRUE(std::equal(start.begin(), start.end(), bytes.begin()));
    EXPECT_EQ(std::vector(bytes.end() - 10, bytes.end()), std::vector<std::uint8_t>(10, 0)); // row 80
    auto longer = bytes;
    longer.insert(longer.end(), bytes.begin(), bytes.end());
    Function_Key_Table read;
    read.FunctionKeys_Read(longer);
    EXPECT_EQ(read.FunctionKeys, table.FunctionKeys);
}

TEST(Function_Keys, Live_From_One_Session_To_The_Next) {
    Test_Session test;
    ASSERT_TRUE(test.Load().functionKeys.Assign_Key(ROW_PLAY, 'B', SHIFT_KEY));
    EXPECT_TRUE(test.session->functionKeys.Rename(ROW_PLAY, " Go "));
    EXPECT_FALSE(test.session->functionKeys.Rename(ROW_PLAY, "  "));
    test.session->Shutdown();
    EXPECT_EQ(test.Load().functionKeys.Key_Text(ROW_PLAY), "Shift+ B");
    EXPECT_EQ(test.session->functionKeys.FunctionKeys[ROW_PLAY].Name, "Go");
    test.session->Shutdown();
    test.folder.Write("config/keys.dat", std::string(300, '\xff'));
    EXPECT_EQ(test.Load().functionKeys.FunctionKeys, Function_Key_Table().FunctionKeys);
    EXPECT_TRUE(test.dialogs.shown.empty());
}

TEST(Function_Keys, Are_Assigned_By_Rule) {
    Function_Key_Table table;
    EXPECT_EQ(table.Use_Of_Key(ROW_PLAY, 'B', 0), Key_Use::Free);
    EXPECT_EQ(table.Use_Of_Key(ROW_PLAY, 13, 0), Key_Use::Free); // its own
    EXPECT_EQ(table.Use_Of_Key(ROW_PLAY, 'M', 0), Key_Use::Used);
    EXPECT_EQ(table.Use_Of_Key(ROW_PLAY, 'M', ALT_KEY), Key_Use::Free);
    EXPECT_EQ(table.Use_Of_Key(ROW_PLAY, 112, 0), Key_Use::Reserved);
    EXPECT_EQ(table.Use_Of_Key(ROW_PLAY, 112, CONTROL_KEY), Key_Use::Free);
    for (const int code : {0, 32, 186, 255, 300, -1})
        EXPECT_EQ(table.Use_Of_Key(ROW_PLAY, code, 0), Key_Use::Unsupported) << code;
    EXPECT_EQ(table.Use_Of_Key(ROW_STOP, 'B', 0), Key_Use::Row_Locked);
    EXPECT_EQ(table.Use_Of_Key(60, 'B', 0), Key_Use::Row_Locked);
    EXPECT_FALSE(table.Assign_Key(ROW_PLAY, 112, 0));
    ASSERT_TRUE(table.Assign_Key(ROW_PLAY, 'R', 0)); // from both that had it
    EXPECT_EQ(table.Row_Of_Key('R', 0), ROW_PLAY);
    EXPECT_EQ(table.FunctionKeys[31].KeyCode, 0);
    EXPECT_EQ(table.Row_Of_Key(13, 0), -1);
}

class Function_Runner : public Hub_Bed {
protected:
    Function_Runner() {
        keys.selectedChannel = [this] { return selected; };
        keys.GlobalKeyPressTimer = [this](bool on) { timerRuns = on; };
        for (const FunctionKey& function : session.functionKeys.FunctionKeys) {
            if (!function.InternalName.empty() && !keys.Has_Action(function.InternalName))
                keys.Set_Action(function.InternalName,
                                [this, name = function.InternalName] { ran += name + "|"; });
        }
        test.counter.Advance_Ms(5000);
    }
    void Press(int key, int shift = 0) {
        keys.Note_Key(key, shift);
        keys.Global_Key_Tick(false);
    }
    const GlobalChannel& Channel() const { return session.channels->Channels[0]; }

    Function_Key_Runner& keys = session.keyRunner;
    std::int32_t selected = CHANNEL;
    bool timerRuns = false;
    std::string ran;
};

TEST_F(Function_Runner, A_Tick_Runs_The_Key_Noted_Last) {
    keys.Note_Key('S', 0);
    keys.Note_Key('M', 0);
    keys.Global_Key_Tick(true); // a modal window: the timer goes on
    EXPECT_TRUE(timerRuns && ran.empty());
    keys.Global_Key_Tick(false);
    EXPECT_EQ(ran, "Enable/Disable Metronome|");
    EXPECT_FALSE(timerRuns);
    EXPECT_EQ(keys.PendingKey, 0);
    session.functionKeys.FunctionKeys[1] = {KEYCODE_SHIFT, "x", "Record", 0, 1, 0};
    Press(KEYCODE_SHIFT, SHIFT_KEY);
    EXPECT_FALSE(timerRuns);
    keys.HoldGlobalKeys();
    test.counter.Advance_Ms(999);
    Press('M');
    EXPECT_FALSE(timerRuns);
    keys.Global_Key_Tick(false);
    EXPECT_EQ(ran, "Enable/Disable Metronome|");
    test.counter.Advance_Ms(1);
    Press('M');
    EXPECT_EQ(ran, "Enable/Disable Metronome|Enable/Disable Metronome|");
    Press('M', SHIFT_KEY); // nobody's
    session.functionKeys.FunctionKeys[ROW_METRONOME].Name = "Click";
    keys.FunctionKey_Run(0, 0, -1);
    keys.FunctionKey_Run(0, 0, 81);
    keys.FunctionKey_Run(0, 0, 60);
    keys.FunctionKey_Run('S', 0, ROW_METRONOME); // the row counts
    EXPECT_EQ(ran, "Enable/Disable Metronome|Enable/Disable Metronome|Enable/Disable Metronome|");
}

TEST_F(Function_Runner, A_Run_Leaves_What_May_Go_On) {
    session.transport.PlayRequested = true;
    for (int row = 0; row < 56; ++row)
        keys.FunctionKey_Run(0, 0, row);
    session.transport.PlayRequested = false;
    EXPECT_EQ(ran.find("Undo"), std::string::npos);
    EXPECT_EQ(ran.find("Set channel Patch"), std::string::npos);
    EXPECT_NE(ran.find("Stop recording/playing|"), std::string::npos);
    EXPECT_NE(ran.find("Select Notes octave: 6|"), std::string::npos);
    EXPECT_EQ(std::count(ran.begin(), ran.end(), '|'), 30 - 9); // nine of the 30 work on the channel
}

TEST_F(Function_Runner, Works_On_The_Selected_Channel) {
    const struct {
        int pan, key, expected;
    } pans[] = {{64, 'R', 70}, {121, 'R', 127}, {122, 'R', 127}, {127, 'R', 127},
                {6, 'L', 0},   {5, 'L', 0},     {9, 'C', 64}};
    for (const auto& row : pans) {
        Send(MSG_SET_PAN, CHANNEL, std::int32_t{row.pan});
        Press(row.key);
        EXPECT_EQ(int{Channel().Pan}, row.expected) << row.pan;
    }
    const struct {
        int volume, key, expected;
    } volumes[] = {{80, 107, 90},   {95, 107, 100}, {100, 107, 100},
                   {110, 107, 110}, {15, 109, 5},   {5, 109, 0}};
    for (const auto& row : volumes) {
        Send(MSG_SET_VOLUME, CHANNEL, std::int32_t{row.volume});
        Press(row.key);
        EXPECT_EQ(int{Channel().Volume}, row.expected) << row.volume;
    }
    Press(111);
    Press(111); // set, not toggled
    Press(106);
    EXPECT_TRUE(Is_On(Channel().Mute) && Is_On(Channel().Solo));
    keys.FunctionKey_Run(0, 0, 54);
    keys.FunctionKey_Run(0, 0, 55);
    EXPECT_FALSE(Is_On(Channel().Mute) || Is_On(Channel().Solo));
    Press(111);
    keys.FunctionKey_Run(0, 0, 31);
    EXPECT_FALSE(Is_On(Channel().Mute));
    keys.FunctionKey_Run(0, 0, 30);
    EXPECT_TRUE(session.options.Overwrite);
    test.counter.Advance_Ms(60);
    keys.FunctionKey_Run(0, 0, 29);
    EXPECT_FALSE(session.options.Overwrite);
    Fresh();
    selected = NOT_GIVEN;
    for (const int key : {int{'R'}, int{'C'}, 107, 111, int{'A'}})
        Press(key);
    EXPECT_TRUE(told.empty() && test.dialogs.shown.empty());
}

TEST_F(Function_Runner, Aligns_A_Channel_In_One_Step) {
    session.editorSetup.AlignDiv = 2;
    for (const double beat : {0.2, 0.25, 1.5, 2.76})
        store.AddNewEvent(beat, NoteData{.Note = 60, .Vol = 90, .Length = 0.1});
    const auto starts = [this] {
        std::vector<double> all;
        for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i))
            all.push_back(store.ReadEvent(i)->StartTime);
        return all;
    };
    const auto before = starts();
    Press('A');
    EXPECT_EQ(starts(), (std::vector{0.0, 0.5, 1.5, 3.0})); // a half goes up
    EXPECT_EQ(session.undo->Undo_Text(), "Undo align events");
    Fresh();
    Press('A');
    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(session.undo->Do_Undo());
    EXPECT_EQ(starts(), before);
}
