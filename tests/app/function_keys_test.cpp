#include "support/hub_bed.h"

#include <algorithm>

using namespace tonvex;

namespace {

constexpr int ROW_METRONOME = 3;
constexpr int ROW_PLAY = 22;
constexpr int ROW_STOP = 53;

std::string Record(char key, const std::string& name, char modifier) {
    return std::string{key, static_cast<char>(name.size()), 0} + name +
           std::string{2, 0, 'i', 'n', -1, -1, modifier, -1, -1};
}

} // namespace

TEST(Function_Keys, Ships_With_Its_Table) {
    const Function_Key_Table table;
    const FunctionKey pan{'R', "Move channel Pan 10% Right", "Move channel Pan 10% Right", 0, 0, -1};
    const FunctionKey remove{46, "Delete Channel", "Delete Channel", 0, 2, 0};
    const FunctionKey stop{27, "Stop recording/playing", "Stop recording/playing", -1, 0, -1};
    EXPECT_EQ(table.FunctionKeys[0], pan);
    EXPECT_EQ(table.FunctionKeys[10], remove);
    EXPECT_EQ(table.FunctionKeys[ROW_STOP], stop);
    EXPECT_EQ(table.FunctionKeys[56], FunctionKey{});
    const auto count = [&](auto is) {
        return std::count_if(table.FunctionKeys.begin(), table.FunctionKeys.end(), is);
    };
    EXPECT_EQ(count([](const FunctionKey& f) { return f.Locked == -1; }), 13);
    EXPECT_EQ(count([](const FunctionKey& f) { return f.WhileRunning == -1; }), 30);
    EXPECT_EQ(count([](const FunctionKey& f) { return f.KeyCode == 0; }), 25 + 10);
    // fourteen keys around the letters, five signs of the number pad, ten digits twice, letters, F1 to F12
    EXPECT_EQ(std::count(table.KeyNames.begin(), table.KeyNames.end(), ""), 256 - (19 + 20 + 26 + 12));
    EXPECT_EQ(table.Row_Of_Key('R', 0), 0); // 31 has it too
    EXPECT_EQ(table.Row_Of_Key(0, 0), -1);
    EXPECT_EQ(table.Key_Text(21) + table.Key_Text(23), "Ctrl + Rnumpad 4");
}

TEST(Function_Keys, A_File_Gives_Key_Modifier_And_Name_Alone) {
    const std::string first = Record('Q', "Turn", 3);
    const std::string bytes = first + Record('Q', "", 1) + Record('J', "caf\xe9", 4);
    // Every piece of it gives the rows whose records are whole.
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        Function_Key_Table table;
        Function_Key_Table expected;
        const auto change = [&expected](std::size_t row, std::uint8_t key, const char* name,
                                        std::uint8_t mask) {
            expected.FunctionKeys[row].KeyCode = key;
            expected.FunctionKeys[row].Name = name;
            expected.FunctionKeys[row].Modifier = mask;
        };
        if (size >= first.size())
            change(0, 'Q', "Turn", 3);
        if (size == bytes.size())
            change(2, 'J', "café", 4);
        table.FunctionKeys_Read({reinterpret_cast<const std::uint8_t*>(bytes.data()), size});
        ASSERT_EQ(table.FunctionKeys, expected.FunctionKeys) << size;
    }
}

TEST(Function_Keys, A_File_Has_81_Records) {
    Function_Key_Table table;
    table.FunctionKeys[0].Name = "é";
    const auto bytes = table.FunctionKeys_Bytes();
    const std::vector<std::uint8_t> start = {'R', 1, 0, 0xE9, 26, 0, 'M', 'o', 'v', 'e'};
    EXPECT_TRUE(std::equal(start.begin(), start.end(), bytes.begin()));
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

class Function_Runner : public Hub_Bed {
protected:
    Function_Runner() {
        keys.selectedChannel = [this] { return selected; };
        keys.GlobalKeyPressTimer = [this](bool on) { timerRuns = on; };
        for (const FunctionKey& function : session.functionKeys.FunctionKeys)
            if (!function.InternalName.empty() && !keys.Has_Action(function.InternalName))
                keys.Set_Action(function.InternalName,
                                [this, name = function.InternalName] { ran += name + "|"; });
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
    const std::string click = "Enable/Disable Metronome|";
    keys.Note_Key('S', 0);
    keys.Note_Key('M', 0);
    keys.Global_Key_Tick(true); // a modal window: the timer goes on
    EXPECT_TRUE(timerRuns && ran.empty());
    keys.Global_Key_Tick(false);
    EXPECT_EQ(ran, click);
    EXPECT_TRUE(!timerRuns && keys.PendingKey == 0);
    session.functionKeys.FunctionKeys[1] = {KEYCODE_SHIFT, "x", "Record", 0, SHIFT_KEY, 0};
    Press(KEYCODE_SHIFT, SHIFT_KEY);
    keys.HoldGlobalKeys();
    test.counter.Advance_Ms(999);
    Press('M');
    EXPECT_FALSE(timerRuns);
    EXPECT_EQ(ran, click);
    test.counter.Advance_Ms(1);
    Press('M');
    EXPECT_EQ(ran, click + click);
    Press('M', SHIFT_KEY); // nobody's
    session.functionKeys.FunctionKeys[ROW_METRONOME].Name = "Click";
    for (const int row : {-1, 60, 81})
        keys.FunctionKey_Run(0, 0, row);
    keys.FunctionKey_Run('S', 0, ROW_METRONOME); // the row counts, and its internal name
    EXPECT_EQ(ran, click + click + click);
}

TEST_F(Function_Runner, A_Run_Leaves_What_May_Go_On) {
    session.transport.PlayRequested = true;
    for (int row = 0; row < 56; ++row)
        keys.FunctionKey_Run(0, 0, row);
    session.transport.PlayRequested = false;
    EXPECT_EQ(ran.find("Undo"), std::string::npos);
    EXPECT_NE(ran.find("Stop recording/playing|"), std::string::npos);
    EXPECT_EQ(std::count(ran.begin(), ran.end(), '|'), 30 - 9); // nine of the 30 work on the channel
}

TEST_F(Function_Runner, Works_On_The_Selected_Channel) {
    const struct {
        int message, before, key, after;
    } rows[] = {{MSG_SET_PAN, 64, 'R', 70},      {MSG_SET_PAN, 122, 'R', 127}, {MSG_SET_PAN, 6, 'L', 0},
                {MSG_SET_PAN, 5, 'L', 0},        {MSG_SET_PAN, 9, 'C', 64},    {MSG_SET_VOLUME, 95, 107, 100},
                {MSG_SET_VOLUME, 110, 107, 110}, {MSG_SET_VOLUME, 15, 109, 5}, {MSG_SET_VOLUME, 5, 109, 0}};
    for (const auto& row : rows) {
        Send(row.message, CHANNEL, std::int32_t{row.before});
        Press(row.key);
        EXPECT_EQ(int{row.message == MSG_SET_PAN ? Channel().Pan : Channel().Volume}, row.after)
            << row.before;
    }
    for (const int key : {111, 111, 106}) // set, not toggled
        Press(key);
    EXPECT_TRUE(Is_On(Channel().Mute) && Is_On(Channel().Solo));
    keys.FunctionKey_Run(0, 0, 54);
    EXPECT_FALSE(Is_On(Channel().Mute));
    keys.FunctionKey_Run(0, 0, 31);
    EXPECT_FALSE(Is_On(Channel().Solo));
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
        store.AddNewEvent(beat, NoteData{60, 90, 0.1});
    const auto starts = [this] {
        std::vector<double> all;
        for (std::int32_t i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i))
            all.push_back(store.ReadEvent(i)->StartTime);
        return all;
    };
    const auto before = starts();
    Press('A');
    EXPECT_EQ(starts(), (std::vector{0.0, 0.5, 1.5, 3.0})); // a half goes up
    Fresh();
    Press('A');
    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(session.undo->Do_Undo());
    EXPECT_EQ(starts(), before);
}
