#include "project/project_writer.h"
#include "project/template_channel.h"
#include "support/hub_bed.h"
#include "support/song_corpus.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t SECOND = FIRST_ID + 1; ///< on slot 0, too
constexpr std::int32_t VOICE = FIRST_ID + 2;  ///< an audio channel
const Msg_Arg NONE;

/// A song with three channels, events of several kinds, map points, tempo changes and marks.
class Undo_Test : public Hub_Bed {
protected:
    Undo_Test() {
        session.channels->Add_Channel(SECOND, false, 0, "Second");
        session.channels->Add_Channel(VOICE, true, NOT_GIVEN, "Voice");
        session.channels->Store(2).AddNewEvent(1.0, AudioEventData{.SampleCount = 44100, .ClipID = 31});
        for (int i = 0; i < 8; ++i)
            notes.push_back(store.AddNewEvent(i, NoteData{60, 100, 1.0}));
        store.DeleteEvent(notes[2]);
        chord = store.AddNewEvent(4.0, QChordData{.Active = 1, .ChordName = "C", .Length = 1.0});
        Maps().Slot_Map(Map_Kind::Volume, 0).Add_Point(7.5, 90, point);
        Maps().Audio_Row(0).PanMap.Add_Point(3.0, 90, audioPoint);
        session.tempoChanges.AddTempoChange(4.0, 100);
        session.marks.Add_Mark(2.0, NOT_GIVEN_TIME, "here");
        session.hub->Message(nullptr, 1200);
        session.undo->Clear();
        Fresh();
    }
    Song_Maps& Maps() { return session.channels->Maps; }
    UndoModule& Undo() { return *session.undo; }
    std::vector<std::uint8_t> Song() const { return Write_Project(session.files->Snapshot()).value(); }
    /// Every row of every channel: what a project file does not carry.
    std::vector<Channel_Content> Rows() const {
        std::vector<Channel_Content> rows;
        for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row)
            rows.push_back(*session.channels->Store(row).Content());
        return rows;
    }
    /// Names of the undo files that lie there.
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(session.Temp_Folder()))
            if (entry.path().extension() == ".dat")
                names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    std::vector<std::int32_t> notes;
    std::int32_t chord = 0;
    std::int32_t point = 0;
    std::int32_t audioPoint = 0;
};

/// One step of a hub message: undone and done again it gives the same bytes.
TEST_F(Undo_Test, Every_Message_That_Changes_The_Song_Takes_Its_Step) {
    struct Case {
        const char* name;
        int msg;
        std::vector<Msg_Arg> args;
        const char* entry; ///< of the menu; empty: nothing is changed and no step taken
    };
    const EventData louder = NoteData{61, 20, 9.0};
    const EventData same = NoteData{60, 100, 3.0};
    const Case cases[] = {
        {"patch of both on the slot", 1001, {CHANNEL, 24}, "change patch"},
        {"the patch it has", 1001, {CHANNEL, 0}, ""},
        {"volume", 1002, {CHANNEL, 99}, "change volume channel"},
        {"name", 1003, {SECOND, std::string("\u00C4nne")}, "change name"},
        {"delete", 1004, {CHANNEL}, "delete channel"},
        {"delete an audio channel with its maps", 1004, {VOICE}, "delete channel"},
        {"pan, and the map that follows", 1005, {SECOND, 3}, "change pan channel"},
        {"solo", 1006, {CHANNEL, true}, "change solo channel"},
        {"mute", 1009, {VOICE, 1}, "change mute channel"},
        {"output", 1012, {SECOND, 4}, "change output channel"},
        {"add", 1013, {std::string("New"), false, 0}, "add channel"},
        {"add an audio channel", 1013, {std::string("New"), true}, "add channel"},
        {"delete an event", 1017, {CHANNEL, notes[1]}, "delete events"},
        {"the last events and the map points behind them", 1017, {CHANNEL, notes[7]}, "delete events"},
        {"move", 1018, {CHANNEL, notes[3], 0.5}, "move events"},
        {"move out of the song", 1018, {CHANNEL, notes[3], NONE, -9.0}, "move events"},
        {"move by nothing", 1018, {CHANNEL, notes[3], NONE, 0.0}, ""},
        {"length", 1020, {CHANNEL, chord, 3.0}, "change length"},
        {"note", 1022, {CHANNEL, notes[0], NONE, 2}, "change note"},
        {"properties", 1024, {CHANNEL, notes[0], louder}, "change properties"},
        {"properties it has", 1024, {CHANNEL, notes[0], same}, ""},
        {"volume of a note", 1026, {CHANNEL, notes[0], NONE, -5}, "change volume"},
        {"chord type", 1031, {CHANNEL, chord, 2}, "change chord type"},
        {"effects", 1030, {CHANNEL, 3, true}, "change effects"},
        {"effects set anew", 1030, {CHANNEL}, ""},
        {"add a mark", 1202, {9.0, 12.0, std::string("x")}, "add mark"},
        {"delete a mark", 1203, {1}, "delete mark"},
        {"name of a mark", 1204, {1, std::string("there")}, "change mark name"},
        {"move a mark", 1225, {1, 3.0}, "move mark"},
        {"add a point", 1209, {5, 2.0, 17}, "add pan point"},
        {"delete a point", 1219, {0, point}, "delete volume point"},
        {"move a point", 1221, {0, point, 1.0}, "move volume point"},
        {"set a point", 1223, {0, FIRST_ID, 3}, "change volume point"},
        {"audio maps", 1230, {VOICE, 2.0}, "add pan point"},
        {"transpose", 1300, {70}, "transpose song"},
        {"speed", 1301, {2.0}, "change speed"},
        {"tempo", 1302, {200}, "change tempo"},
        {"add a tempo", 1600, {6.0, 90}, "add tempo change"},
        {"delete a tempo", 1601, {FIRST_ID}, "delete tempo change"},
        {"another tempo", 1602, {FIRST_ID, 30}, "modify tempo change bpm"},
        {"tempo elsewhere", 1701, {FIRST_ID, 5.0}, "modify tempo change position"},
    };
    const auto start = Song();
    const auto startRows = Rows();
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        session.project.Modified = false;
        Change_Hub::Args args;
        std::copy(row.args.begin(), row.args.end(), args.begin());
        session.hub->Send(this, row.msg, args);
        const bool changes = *row.entry != '\0';
        EXPECT_EQ(session.project.Modified, changes);
        ASSERT_EQ(Undo().Undo_Text(), changes ? std::string("Undo ") + row.entry : "Undo");
        if (!changes) {
            EXPECT_EQ(Song(), start);
            continue;
        }
        if ((row.msg >= 1018 && row.msg <= 1026) || row.msg == 1031)
            Send(row.msg + 1, CHANNEL); // the closing message
        const auto end = Song();
        const auto endRows = Rows();
        EXPECT_NE(end, start);
        for (int i = 0; i < 2; ++i) {
            ASSERT_TRUE(Undo().Do_Undo());
            EXPECT_EQ(Song(), start);
            EXPECT_EQ(Rows(), startRows);
            EXPECT_EQ(Undo().Redo_Text(), std::string("Redo ") + row.entry);
            ASSERT_TRUE(i == 1 || Undo().Do_Redo());
            EXPECT_TRUE(i == 1 || (Song() == end && Rows() == endRows));
        }
        Undo().Clear();
    }
    EXPECT_TRUE(Files().empty());
    EXPECT_FALSE(Undo().Do_Undo());
}

TEST_F(Undo_Test, What_Belongs_Together_Is_One_Step) {
    std::size_t before = 0;
    const auto steps = [&] { return Undo().Undo_Count() - std::exchange(before, Undo().Undo_Count()); };
    const auto moveTwo = [this] {
        Send(1018, CHANNEL, notes[0], NONE, 1.0);
        Send(1201, 3.0); // a view's message is no change
        Send(1018, CHANNEL, notes[1], NONE, 1.0);
    };
    moveTwo();
    moveTwo();
    EXPECT_EQ(steps(), 1U);
    Send(1019, CHANNEL);
    moveTwo();
    EXPECT_EQ(steps(), 1U) << "behind the closing message another step";
    Send(1026, CHANNEL, notes[0], 5);
    EXPECT_EQ(steps(), 1U) << "of another family, too";
    const auto slide = [this](int volume, std::int32_t channel = CHANNEL) { Send(1002, channel, volume); };
    slide(20);
    slide(21);
    test.counter.Advance_Ms(UndoModule::GESTURE_MS);
    slide(22);
    EXPECT_EQ(steps(), 1U);
    test.counter.Advance_Ms(UndoModule::GESTURE_MS + 1);
    slide(23);
    slide(24, SECOND);
    session.hub->Message(nullptr, 1002, SECOND, 25);
    EXPECT_EQ(steps(), 3U) << "later, another channel, another sender";
    {
        const MsgManager::Batch batch(*session.hub, MsgManager::Batch::Update_At_End, "Clear channel events");
        for (const int i : {3, 4, 5})
            Send(1017, CHANNEL, notes[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(steps(), 1U);
    EXPECT_EQ(Undo().Undo_Text(), "Undo clear channel events");
    const auto rows = Rows();
    session.hub->Begin_Step("Add events");
    session.hub->Keep_Events(0);
    for (int i = 0; i < 3; ++i)
        Send(1015, CHANNEL, store.AddNewEvent(0.25, NoteData{70, 1, 1.0}));
    Send(1016, CHANNEL);
    session.hub->End_Step();
    EXPECT_EQ(steps(), 1U);
    ASSERT_TRUE(Undo().Do_Undo());
    EXPECT_EQ(Rows(), rows);
    session.hub->Begin_Step("Nothing");
    session.hub->Keep_Events(0);
    Send(1203, 55);
    session.hub->End_Step();
    EXPECT_TRUE(Undo().Can_Redo()) << "what changes nothing leaves the redo alone";
}

TEST_F(Undo_Test, A_Take_Is_One_Step_With_What_It_Overwrites) {
    const auto record = [this](bool plays) {
        test.loop.betweenRounds = [this, plays](std::int64_t ms) {
            if (plays && ms == 100)
                Send(1014, 0, 0, 0.125, EventData(NoteData{72, 90, 0.25}));
            EXPECT_FALSE(Undo().Can_Undo()) << "not while a song runs";
            EXPECT_FALSE(Undo().Do_Undo());
            session.transport.StopTransportRequest = ms >= 2000;
        };
        EXPECT_TRUE(session.recorder->StartRecording(0.0, 1.0F, CHANNEL, plays, false, false));
    };
    Send(1002, CHANNEL, 3);
    const auto before = Song();
    record(true);
    EXPECT_EQ(Undo().Undo_Text(), "Undo recording");
    EXPECT_EQ(Undo().Undo_Count(), 2U);
    EXPECT_EQ(store.GetTotalEvents(), 6) << "of 7 notes and a chord two went, at 0 and 1; the take came";
    const auto after = Song();
    ASSERT_TRUE(Undo().Do_Undo());
    EXPECT_EQ(Song(), before);
    record(false);
    EXPECT_EQ(Undo().Undo_Count(), 1U) << "nothing recorded, nothing overwritten";
    ASSERT_TRUE(Undo().Do_Redo());
    EXPECT_EQ(Song(), after);
}

TEST_F(Undo_Test, Two_Hundred_Steps_Stay_And_Files_Go_With_Theirs) {
    for (int i = 0; i < 201; ++i)
        Send(1600, 10.0 + i, 90);
    EXPECT_EQ(Undo().Undo_Count(), 200U);
    EXPECT_EQ(Files().size(), 200U);
    EXPECT_FALSE(fs::exists(session.Temp_Folder() / "undofile1.dat"));
    EXPECT_TRUE(fs::exists(session.Temp_Folder() / "undofile201.dat"));
    while (Undo().Do_Undo())
        continue;
    EXPECT_EQ(session.tempoChanges.In_Time_Order().size(), 2U) << "the oldest of all is out of reach";
    EXPECT_EQ(Undo().Redo_Count(), 200U);
    EXPECT_EQ(Files().size(), 200U);
    EXPECT_TRUE(Undo().Do_Redo());
    Send(1600, 300.0, 90);
    EXPECT_EQ(Undo().Redo_Text(), "Redo") << "a new action empties redo";
    EXPECT_EQ(Files(), (std::vector<std::string>{"undofile202.dat", "undofile203.dat"}))
        << "numbers only rise";
    session.New_Project();
    EXPECT_TRUE(Files().empty());
    EXPECT_FALSE(Undo().Can_Undo());
}

TEST_F(Undo_Test, A_Channel_Comes_Back_As_It_Was) {
    Send(1013, std::string("New"));
    const std::int32_t added = told.front().param;
    const auto rowOf = [&] { return session.channels->ChannelI(added); };
    ASSERT_EQ(rowOf(), 3);
    Undo().Do_Undo();
    EXPECT_EQ(rowOf(), -1);
    Fresh();
    Undo().Do_Redo();
    EXPECT_EQ(rowOf(), 3) << "the same ID in the same row";
    EXPECT_EQ(Told_Numbers(), (std::vector<int>{1013, 1200})) << "views hear of it";
}

TEST_F(Undo_Test, The_Sound_Follows) {
    session.channels->Global_Patches[7].Patch = 24;
    Send(1001, CHANNEL, 7);
    Send(1005, CHANNEL, 20);
    Send(1030, CHANNEL, 3, true);
    Send(1223, 0, FIRST_ID, 127);
    Send(1224, 0);
    test.sound.posted.clear();
    for (int i = 0; i < 4; ++i)
        ASSERT_TRUE(Undo().Do_Undo());
    EXPECT_GT(Count(test.sound.posted, Sound_Op::Patch, 0, 0), 0);
    EXPECT_GT(Count(test.sound.posted, Sound_Op::Pan, 0, 64), 0);
    EXPECT_GT(Count(test.sound.posted, Sound_Op::Volume, 0, 64), 0);
    EXPECT_FALSE(test.sound.effects[0].Any_On());
}

TEST_F(Undo_Test, Kinds_That_No_Message_Takes_Yet) {
    const auto before = Song();
    Undo().Undo_AllChannels_MC("Undo move bars");
    session.creator.SongKey = 5;
    store.MC_MoveBarEvents(0, 2);
    const auto after = Song();
    EXPECT_EQ(Undo().Undo_Text(), "Undo undo move bars");
    Undo().Do_Undo();
    EXPECT_EQ(Song(), before);
    Undo().Do_Redo();
    EXPECT_EQ(Song(), after);
    std::vector<std::int32_t> clips;
    const auto mark = [&clips](std::int32_t clip) { clips.push_back(clip); };
    Undo().wGen_CC_UsedWav_List(mark);
    EXPECT_EQ(clips, std::vector<std::int32_t>{31});
    Undo().Clear();
    Send(1004, VOICE);
    Undo().wGen_CC_UsedWav_List(mark);
    EXPECT_EQ(clips.size(), 2U) << "of a deleted channel, too";
}

TEST_F(Undo_Test, What_Cannot_Be_Written_Or_Read_Loses_Nothing) {
    const auto start = Song();
    fs::rename(session.Temp_Folder(), test.folder / "away");
    Send(1017, CHANNEL, notes[1]);
    EXPECT_TRUE(test.dialogs.shown.empty());
    ASSERT_TRUE(Undo().Do_Undo()) << "without a file it stays in memory";
    EXPECT_EQ(Song(), start);
    fs::rename(test.folder / "away", session.Temp_Folder());
    Undo().Clear();

    Send(1302, 99);
    Send(1301, 2.0);
    const auto end = Song();
    const std::string broken = Files().back();
    std::ofstream(session.Temp_Folder() / broken, std::ios::trunc) << "short";
    EXPECT_FALSE(Undo().Do_Undo());
    EXPECT_EQ(Song(), end) << "all of the step or nothing";
    ASSERT_EQ(test.dialogs.shown.size(), 1U);
    EXPECT_FALSE(Undo().Can_Undo());
    EXPECT_TRUE(Files().empty());
    Send(1302, 98);
    EXPECT_TRUE(Undo().Do_Undo()) << "control";
}

TEST_F(Undo_Test, Disabled_It_Does_Nothing) {
    Undo().UndoEnabled = false;
    Send(1301, 2.0);
    Undo().Undo_Channel("x", 0);
    EXPECT_TRUE(session.project.Modified);
    EXPECT_FALSE(Undo().Do_Undo());
    EXPECT_EQ(Undo().Undo_Text(), "Undo");
    EXPECT_TRUE(Files().empty());
    Fresh();
    Send(1301, 1.0);
    EXPECT_FALSE(session.project.Modified);
}

TEST_F(Undo_Test, A_Channel_From_A_Template_Is_One_Step_With_All_That_It_Does_To_Its_Slot) {
    for (const int slot : {0, 5, int{ChannelTemplate::ANY_SLOT}}) {
        SCOPED_TRACE(slot);
        Template_Channel wanted{
            Parse_Template("PatchByte0 = 20\nStyle = bass\nGUID_DSFX_STANDARD_ECHO = 30\n", true), "Lead", 90,
            100};
        wanted.preset.TemplateOutput = static_cast<std::int16_t>(slot);
        const auto before = Song();
        ASSERT_TRUE(Add_Template_Channel(*session.hub, Undo(), *session.channels, *session.gcm, wanted));
        const auto after = Song();
        EXPECT_EQ(Undo().Undo_Text(), "Undo add channel");
        EXPECT_EQ(Undo().Undo_Count(), 1U);
        EXPECT_TRUE(Undo().Do_Undo());
        EXPECT_EQ(Song(), before);
        EXPECT_TRUE(Undo().Do_Redo());
        EXPECT_EQ(Song(), after);
        EXPECT_TRUE(Undo().Do_Undo());
    }
}

/// An edit of the storm and its arguments, a letter each: c ChannelID, e event of that channel, p ID of a
/// point or a tempo change, s slot, n number, f factor, b flag, t text, d data, - none. Number 0: events are
/// added.
constexpr std::pair<int, const char*> EDITS[] = {
    {0, "c"},        {0, "c"},        {0, "c"},      {1001, "cn"},   {1002, "cn"},   {1003, "ct"},
    {1004, "c"},     {1005, "cn"},    {1006, "cb"},  {1008, "c"},    {1010, "cb"},   {1011, "c"},
    {1012, "cn"},    {1013, "tbn"},   {1013, "tb"},  {1017, "ce"},   {1018, "cen"},  {1018, "ce-n"},
    {1020, "cenn"},  {1022, "ce-n"},  {1024, "ced"}, {1026, "cenn"}, {1030, "cnb"},  {1031, "cen"},
    {1200, ""},      {1202, "nnt"},   {1203, "n"},   {1204, "nt"},   {1209, "snn"},  {1211, "sp"},
    {1213, "spn-n"}, {1215, "spn"},   {1217, "snn"}, {1219, "sp"},   {1221, "sp-n"}, {1223, "spn"},
    {1225, "nnn"},   {1230, "cnn"},   {1231, "cp"},  {1232, "cpn"},  {1233, "cpn"},  {1234, "cnn"},
    {1235, "cp"},    {1236, "cpn-n"}, {1237, "cpn"}, {1300, "n"},    {1301, "f"},    {1302, "n"},
    {1600, "nn"},    {1601, "p"},     {1602, "pn"},  {1701, "pn"}};

/// Edits of every family with sensible and absurd arguments, undo and redo in between.
class Edit_Storm : public Undo_Test {
protected:
    int Pick(int from, int to) { return std::uniform_int_distribution(from, to)(random); }
    Msg_Arg Number() {
        const Msg_Arg absurd[] = {NONE, NAN_ARG, 1e300, -1e300, NOT_GIVEN, std::string("7")};
        if (Pick(0, 9) == 0)
            return absurd[Pick(0, 5)];
        return Pick(0, 1) == 0 ? Msg_Arg(Pick(-3, 130)) : Msg_Arg(Pick(-40, 400) / 8.0);
    }
    Msg_Arg Event_Of(const Msg_Arg& channel) {
        const auto* id = std::get_if<std::int32_t>(&channel);
        const int row = id == nullptr ? -1 : session.channels->ChannelI(*id);
        if (row < 0)
            return Number();
        const ChannelClass& events = session.channels->Store(row);
        return events.GetEvent_ID(events.First_Event_At(Pick(0, 40) / 4.0));
    }
    Msg_Arg Argument(char letter, const Msg_Arg& channel) {
        switch (letter) {
        case 'c':
            return channel;
        case 'e':
            return Event_Of(channel);
        case 'p':
            return FIRST_ID + Pick(0, 7);
        case 's':
            return Pick(-1, 7);
        case 'f':
            return Pick(0, 4) == 0 ? Number() : Msg_Arg(Pick(1, 8) / 4.0);
        case 'b':
            return Pick(0, 1) == 1;
        case 't':
            return std::string(1, static_cast<char>('a' + Pick(0, 9)));
        case 'd':
            return EventData(NoteData{60, static_cast<std::uint8_t>(Pick(0, 127)), 1.0});
        default:
            return letter == 'n' ? Number() : NONE;
        }
    }
    void Edit() {
        const auto& [msg, letters] = EDITS[Pick(0, static_cast<int>(std::size(EDITS)) - 1)];
        const Msg_Arg channel = Pick(0, 20) == 0 ? Number() : Msg_Arg(FIRST_ID + Pick(0, 6));
        if (msg == 0)
            return Add_Events(channel);
        const bool items = msg >= 1017 && msg <= 1031 && msg != 1030;
        for (int i = items ? Pick(1, 4) : 1; i > 0; --i) {
            Change_Hub::Args args;
            for (std::size_t n = 0; letters[n] != '\0'; ++n)
                args[n] = Argument(letters[n], channel);
            session.hub->Send(this, msg, args);
        }
        if (items && msg != 1017 && Pick(0, 3) > 0)
            session.hub->Message(this, msg + 1, channel);
    }
    void Add_Events(const Msg_Arg& channel) {
        const auto* id = std::get_if<std::int32_t>(&channel);
        const int row = id == nullptr ? -1 : session.channels->ChannelI(*id);
        if (row < 0)
            return;
        session.hub->Begin_Step("Add events");
        session.hub->Keep_Events(row);
        ChannelClass& events = session.channels->Store(row);
        for (int i = Pick(1, 6); i > 0; --i) {
            const double start = Pick(0, 160) / 4.0;
            const std::int32_t eventId =
                Pick(0, 3) == 0
                    ? events.AddNewEvent(start, QChordData{.Active = 1, .ChordName = "G", .Length = 1.0})
                    : events.AddNewEvent(start, NoteData{60, 90, Pick(1, 9) / 4.0});
            Send(1015, *id, eventId);
        }
        Send(1016, *id);
        session.hub->End_Step();
    }
    std::mt19937 random;
};

TEST_F(Edit_Storm, All_Undone_Is_The_Start_And_All_Redone_The_End) {
    // More seeds by hand: TONVEX_UNDO_SEEDS=50.
    const char* asked = std::getenv("TONVEX_UNDO_SEEDS");
    const unsigned seeds = asked == nullptr ? 1U : static_cast<unsigned>(std::atoi(asked));
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        session.New_Project();
        Make_Full_Song(session);
        session.hub->Message(nullptr, 1200);
        Undo().Clear();
        auto start = Song();
        for (int edit = 1; edit <= 500; ++edit) {
            const int dice = Pick(0, 19);
            if (dice == 0)
                Undo().Do_Redo();
            else if (dice < 3)
                Undo().Do_Undo();
            else
                Edit();
            // Before the oldest step falls off, too; the song goes on from there.
            if (edit < 500 && Undo().Undo_Count() < UndoModule::MOST_STEPS - 1)
                continue;
            while (Undo().Do_Redo())
                continue;
            const auto end = Song();
            const auto endRows = Rows();
            while (Undo().Do_Undo())
                continue;
            ASSERT_EQ(Song(), start) << edit;
            while (Undo().Do_Redo())
                continue;
            ASSERT_TRUE(Song() == end && Rows() == endRows) << edit;
            Undo().Clear();
            ASSERT_TRUE(Files().empty());
            start = end;
        }
    }
}

} // namespace
} // namespace tonvex
