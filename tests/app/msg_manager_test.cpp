#include "support/test_session.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

namespace tonvex {
namespace {

constexpr std::int32_t CHANNEL = FIRST_ID;
constexpr std::int32_t NOBODY = FIRST_ID + 40;
constexpr double NAN_ARG = std::numeric_limits<double>::quiet_NaN();

class MsgManager_Test : public testing::Test {
protected:
    MsgManager_Test() : session(test.Load()), store(session.channels->Store(0)) {
        session.events.Subscribe([this](int msg, std::int32_t param, const std::string& text) {
            told.push_back({msg, param, text});
        });
        Fresh();
    }
    void Fresh() {
        told.clear();
        test.sound.posted.clear();
        session.project.Modified = false;
    }
    std::int32_t Add_Note(double start, std::uint8_t note, double length = 1.0) {
        return store.AddNewEvent(start, NoteData{note, 100, length});
    }
    template <typename... Arg>
    void Send(int msg, Arg&&... arg) {
        session.hub->Message(this, msg, std::forward<Arg>(arg)...);
    }
    std::vector<int> Told_Numbers() const {
        std::vector<int> numbers;
        for (const auto& notice : told)
            numbers.push_back(notice.msg);
        return numbers;
    }
    GlobalChannel& Row(std::size_t row = 0) { return session.channels->Channels[row]; }
    NoteData Note(std::int32_t id) { return *store.ReadEvent(store.GetEvent_I(id))->Note; }

    struct Notice {
        int msg;
        std::int32_t param;
        std::string text;
    };
    Test_Session test;
    Session& session;
    ChannelClass& store;
    std::vector<Notice> told;
};

TEST_F(MsgManager_Test, Channel_Messages) {
    struct Case {
        const char* name;
        std::function<void()> send;
        std::function<bool()> holds;
        std::vector<int> told;
        bool modifies;
    };
    const std::vector<Case> cases = {
        {"patch", [&] { Send(1001, CHANNEL, 24); }, [&] { return Row().PatchI == 24; }, {1001}, true},
        {"patch row 256", [&] { Send(1001, CHANNEL, 256); }, [&] { return Row().PatchI == 24; }, {}, false},
        {"volume", [&] { Send(1002, CHANNEL, 300); }, [&] { return Row().Volume == 127; }, {1002}, true},
        {"volume of nobody", [&] { Send(1002, NOBODY, 3); }, [&] { return Row().Volume == 127; }, {}, false},
        {"volume as text",
         [&] { Send(1002, CHANNEL, std::string("3")); },
         [&] { return Row().Volume == 127; },
         {},
         false},
        {"name",
         [&] { Send(1003, CHANNEL, std::string("Lead")); },
         [&] { return Row().ChannelName == "Lead"; },
         {1003},
         true},
        {"pan", [&] { Send(1005, CHANNEL, 20.0); }, [&] { return Row().Pan == 20; }, {1005}, true},
        {"pan not finite", [&] { Send(1005, CHANNEL, NAN_ARG); }, [&] { return Row().Pan == 20; }, {}, false},
        {"solo on", [&] { Send(1006, CHANNEL, true); }, [&] { return Is_On(Row().Solo); }, {1006}, true},
        {"clear solo", [&] { Send(1007, CHANNEL, false); }, [&] { return !Is_On(Row().Solo); }, {1007}, true},
        {"toggle solo", [&] { Send(1008, CHANNEL); }, [&] { return Is_On(Row().Solo); }, {1008}, true},
        {"mute on", [&] { Send(1009, CHANNEL, 1); }, [&] { return Is_On(Row().Mute); }, {1009}, true},
        {"clear mute", [&] { Send(1010, CHANNEL, 0); }, [&] { return !Is_On(Row().Mute); }, {1010}, true},
        {"toggle mute", [&] { Send(1011, CHANNEL); }, [&] { return Is_On(Row().Mute); }, {1011}, true},
        {"output", [&] { Send(1012, CHANNEL, 31); }, [&] { return Row().OutputChannel == 31; }, {1012}, true},
        {"output 32", [&] { Send(1012, CHANNEL, 32); }, [&] { return Row().OutputChannel == 31; }, {}, false},
        {"add",
         [&] { Send(1013, std::string("Bass"), false, 5); },
         [&] { return Row(1).ChannelID == FIRST_ID + 1 && Row(1).OutputChannel == 5; },
         {1013, 1200},
         true},
        {"add on slot 32",
         [&] { Send(1013, std::string("x"), false, 32); },
         [&] { return session.channels->Count_Channels() == 2; },
         {},
         false},
        {"add without arguments",
         [&] { Send(1013); },
         [&] { return Row(2).OutputChannel == 0; },
         {1013, 1200},
         true},
        {"delete",
         [&] { Send(1004, FIRST_ID + 1); },
         [&] { return session.channels->ChannelI(FIRST_ID + 1) < 0; },
         {-1004, 1004, 1200},
         true},
        {"delete again", [&] { Send(1004, FIRST_ID + 1); }, [&] { return true; }, {}, false},
        {"unknown number", [&] { Send(4711, CHANNEL); }, [&] { return true; }, {}, false},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        Fresh();
        row.send();
        EXPECT_TRUE(row.holds());
        EXPECT_EQ(Told_Numbers(), row.told);
        EXPECT_EQ(session.project.Modified, row.modifies);
    }
}

TEST_F(MsgManager_Test, Channel_101_Is_Refused) {
    for (int i = 1; i < 100; ++i)
        Send(1013);
    ASSERT_EQ(session.channels->Count_Channels(), 100);
    ASSERT_TRUE(test.dialogs.shown.empty());
    Fresh();
    Send(1013, std::string("One more"));
    ASSERT_EQ(test.dialogs.shown.size(), 1U);
    EXPECT_EQ(test.dialogs.shown[0].text, "Can't create new channel (Max Channels reached)");
    EXPECT_TRUE(told.empty());
    EXPECT_FALSE(session.project.Modified);
    Send(1004, CHANNEL);
    Fresh();
    Send(1013, std::string("One more"));
    EXPECT_EQ(told.front().param, FIRST_ID + 100) << "the refused one used up no ID";
    EXPECT_EQ(told.front().text, "One more");
}

TEST_F(MsgManager_Test, Live_Changes_Sound_At_Once) {
    const auto sent = [this](Sound_Op op, int slot, int a) {
        int count = 0;
        for (const Sound_Message& message : test.sound.posted)
            count += message.op == op && message.slot == slot && message.a == a ? 1 : 0;
        return count;
    };
    session.channels->Global_Patches[7].Patch = 24;
    Send(1001, CHANNEL, 7);
    EXPECT_EQ(sent(Sound_Op::Patch, 0, 24), 1) << "the program of patch row 7";
    Send(1005, CHANNEL, 20);
    EXPECT_EQ(sent(Sound_Op::Pan, 0, 20), 1);
    Send(1005, CHANNEL, 20);
    EXPECT_EQ(sent(Sound_Op::Pan, 0, 20), 1) << "only what differs";
    session.transport.PlayRequested = true;
    Fresh();
    Send(1012, CHANNEL, 4);
    EXPECT_EQ(test.sound.posted.front().op, Sound_Op::ChannelNotesOff) << "what sounds on the old slot ends";
    EXPECT_EQ(test.sound.posted.front().slot, 0);
    EXPECT_EQ(sent(Sound_Op::Pan, 4, 20), 1);
    Fresh();
    Send(1004, CHANNEL);
    ASSERT_FALSE(test.sound.posted.empty());
    EXPECT_EQ(test.sound.posted.front().op, Sound_Op::ChannelNotesOff);
    EXPECT_EQ(test.sound.posted.front().slot, 4);
}

TEST_F(MsgManager_Test, Event_Messages) {
    const std::int32_t id = Add_Note(4.0, 60);
    QChordData chordData;
    chordData.Active = 3;
    chordData.ChordNotes = {48, 52, 55};
    chordData.ChordName = "C";
    const std::int32_t chordId = store.AddNewEvent(6.0, chordData);
    const auto chord = [&] { return *store.ReadEvent(store.GetEvent_I(chordId))->QChord; };
    struct Case {
        const char* name;
        std::function<void()> send;
        std::function<bool()> holds;
        std::vector<int> told;
        bool modifies;
    };
    const auto start = [&] { return store.ReadEvent(store.GetEvent_I(id))->StartTime; };
    const std::vector<Case> cases = {
        {"added", [&] { Send(1015, CHANNEL, id); }, [] { return true; }, {1015}, true},
        {"added, but not there", [&] { Send(1015, CHANNEL, id + 9); }, [] { return true; }, {}, false},
        {"end of adds",
         [&] { Send(1016, CHANNEL); },
         [&] { return session.project.SongLength == 6.0; },
         {1016, 1200},
         false},
        {"move to", [&] { Send(1018, CHANNEL, id, 8.0); }, [&] { return start() == 8.0; }, {1018}, true},
        {"move by",
         [&] { Send(1018, CHANNEL, id, NOT_GIVEN_TIME, -1.5); },
         [&] { return start() == 6.5; },
         {1018},
         true},
        {"move nowhere", [&] { Send(1018, CHANNEL, id); }, [&] { return start() == 6.5; }, {}, false},
        {"move to infinity",
         [&] { Send(1018, CHANNEL, id, std::numeric_limits<double>::infinity()); },
         [&] { return start() == 6.5; },
         {},
         false},
        {"end of moves sorts",
         [&] { Send(1019, CHANNEL); },
         [&] {
             return store.ReadEvent(store.FirstEvent())->EventID == chordId &&
                    session.project.SongLength == 7.5;
         },
         {1019, 1200},
         false},
        {"length",
         [&] { Send(1020, CHANNEL, id, 0.0); },
         [&] { return Note(id).Length == 0.05; },
         {1020},
         true},
        {"length by",
         [&] { Send(1020, CHANNEL, id, NOT_GIVEN_TIME, 2.0); },
         [&] { return Note(id).Length == 2.05; },
         {1020},
         true},
        {"end of lengths",
         [&] { Send(1021, CHANNEL); },
         [&] { return session.project.SongLength == 8.55; },
         {1021, 1200},
         false},
        {"note", [&] { Send(1022, CHANNEL, id, 61); }, [&] { return Note(id).Note == 61; }, {1022}, true},
        {"note by",
         [&] { Send(1022, CHANNEL, id, NOT_GIVEN, -1); },
         [&] { return Note(id).Note == 60; },
         {1022},
         true},
        {"end of notes", [&] { Send(1023, CHANNEL); }, [] { return true; }, {1023, 1200}, false},
        {"properties keep the length",
         [&] {
             Send(1024, CHANNEL, id, EventData(NoteData{70, 9, 44.0}));
         },
         [&] {
             return Note(id) == NoteData{70, 9, 2.05};
         },
         {1024},
         true},
        {"properties of another kind",
         [&] { Send(1024, CHANNEL, id, EventData(PatchData{3})); },
         [&] { return Note(id).Note == 70; },
         {},
         false},
        {"volume by",
         [&] { Send(1026, CHANNEL, id, NOT_GIVEN, 200); },
         [&] { return Note(id).Vol == 127; },
         {1026},
         true},
        {"chord type",
         [&] { Send(1031, CHANNEL, chordId, 1); },
         [&] { return chord().ChordNotes[1] == 51; },
         {1031},
         true},
        {"chord type 12",
         [&] { Send(1031, CHANNEL, chordId, 12); },
         [&] { return chord().ChordTypeIndex == 1; },
         {},
         false},
        {"chord type of a note",
         [&] { Send(1031, CHANNEL, id, 1); },
         [&] { return Note(id).Note == 70; },
         {},
         false},
        {"chord's note by",
         [&] { Send(1022, CHANNEL, chordId, NOT_GIVEN, 2); },
         [&] { return chord().ChordName == "Dm" && chord().ChordNotes[0] == 50; },
         {1022},
         true},
        {"delete",
         [&] { Send(1017, CHANNEL, id); },
         [&] { return store.GetEvent_I(id) < 0; },
         {-1017, 1017, 1200},
         true},
        {"delete again", [&] { Send(1017, CHANNEL, id); }, [] { return true; }, {}, false},
        {"of nobody", [&] { Send(1019, NOBODY); }, [] { return true; }, {}, false},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        Fresh();
        row.send();
        EXPECT_TRUE(row.holds());
        EXPECT_EQ(Told_Numbers(), row.told);
        EXPECT_EQ(session.project.Modified, row.modifies);
    }
}

TEST_F(MsgManager_Test, Events_That_Fall_Out_Go_With_One_Update) {
    const std::int32_t early = Add_Note(0.5, 60);
    const std::int32_t late = Add_Note(9.0, 126);
    Send(1018, CHANNEL, early, NOT_GIVEN_TIME, -1.0);
    Send(1018, CHANNEL, late, NOT_GIVEN_TIME, -1.0);
    EXPECT_EQ(store.GetEvent_I(early), -1) << "before the start";
    EXPECT_EQ(Told_Numbers(), (std::vector<int>{-1017, 1017, 1018, 1018})) << "views follow at the end";
    Send(1019, CHANNEL);
    EXPECT_EQ(session.project.SongLength, 9.0);
    Fresh();
    Send(1300, 2);
    EXPECT_EQ(store.GetTotalEvents(), -1) << "note 128";
    EXPECT_EQ(Told_Numbers(), (std::vector<int>{-1017, 1017, 1300, 1200}));

    for (int i = 0; i < 3; ++i)
        Add_Note(i, 60);
    Fresh();
    {
        const MsgManager::Batch batch(*session.hub);
        while (store.FirstEvent() >= 0)
            Send(1017, CHANNEL, store.GetEvent_ID(store.FirstEvent()));
    }
    EXPECT_EQ(Told_Numbers(), (std::vector<int>{-1017, 1017, -1017, 1017, -1017, 1017, 1200}));
    Fresh();
    { const MsgManager::Batch nothingHappens(*session.hub); }
    EXPECT_TRUE(told.empty());
}

TEST_F(MsgManager_Test, Recorded_Events_Wait_In_The_Buffer) {
    Send(1014, 0, 0, 2.0, EventData(NoteData{60, 100, 1.0}));
    EXPECT_EQ(store.Recorded_Count(), 1);
    EXPECT_EQ(store.GetTotalEvents(), -1);
    EXPECT_EQ(told.back().param, CHANNEL) << "the notice names the channel, the message its row";
    EXPECT_TRUE(session.project.Modified);
    Send(1014, 1, 0, 2.0, EventData(NoteData{60, 100, 1.0}));
    Send(1014, 0, 1, 2.0, EventData(NoteData{60, 100, 1.0}));
    Send(1014, 0, 0, -2.0, EventData(NoteData{60, 100, 1.0}));
    EXPECT_EQ(store.Recorded_Count(), 1) << "a row that is not live, another kind, before the start";
    store.CopyRecEvents();
    EXPECT_EQ(store.GetTotalEvents(), 0);
}

TEST_F(MsgManager_Test, Song_Messages) {
    const std::int32_t id = Add_Note(4.0, 60);
    const auto tempoCount = [&] { return session.tempoChanges.In_Time_Order().size(); };
    const auto change = [&](std::size_t n) { return session.tempoChanges.In_Time_Order().at(n); };
    struct Case {
        const char* name;
        std::function<void()> send;
        std::function<bool()> holds;
        std::vector<int> told;
        bool modifies;
    };
    const std::vector<Case> cases = {
        {"position family", [&] { Send(1100); }, [] { return true; }, {1100}, false},
        {"position value",
         [&] { Send(1101, 3.0); },
         [&] { return session.hub->PositionValue == 3.0; },
         {1101},
         false},
        {"position",
         [&] { Send(1102, 7); },
         [&] { return session.transport.PlayPosition == 7.0; },
         {1102},
         false},
        {"position below 0",
         [&] { Send(1102, -1.0); },
         [&] { return session.transport.PlayPosition == 7.0; },
         {},
         false},
        {"general update",
         [&] { Send(1200); },
         [&] { return session.project.SongLength == 5.0; },
         {1200},
         false},
        {"show position",
         [&] { Send(1201, 2.0); },
         [&] { return session.transport.PlayPosition == 7.0; },
         {1201},
         false},
        {"transpose", [&] { Send(1300, -3); }, [&] { return Note(id).Note == 57; }, {1300, 1200}, true},
        {"speed",
         [&] { Send(1301, 2.0); },
         [&] { return session.project.SongLength == 10.0; },
         {1301, 1200},
         true},
        {"speed 0", [&] { Send(1301, 0.0); }, [&] { return session.project.SongLength == 10.0; }, {}, false},
        {"tempo",
         [&] { Send(1302, 120); },
         [&] { return session.project.ProjectTempo == 120; },
         {1302, 1200},
         true},
        {"tempo 0", [&] { Send(1302, 0); }, [&] { return session.project.ProjectTempo == 120; }, {}, false},
        {"tempo not given",
         [&] { Send(1302); },
         [&] { return session.project.ProjectTempo == 120; },
         {},
         false},
        {"add tempo",
         [&] { Send(1600, 8.0, 90); },
         [&] { return change(0).Tempo == 90; },
         {1600, 1200},
         true},
        {"add tempo on a taken beat",
         [&] { Send(1600, 8.0, 70); },
         [&] { return tempoCount() == 1; },
         {},
         false},
        {"add tempo before the start",
         [&] { Send(1600, -1.0, 70); },
         [&] { return tempoCount() == 1; },
         {},
         false},
        {"add tempo 40000", [&] { Send(1600, 9.0, 40000); }, [&] { return tempoCount() == 1; }, {}, false},
        {"a second one", [&] { Send(1600, 4.0, 60); }, [&] { return tempoCount() == 2; }, {1600, 1200}, true},
        {"set tempo",
         [&] { Send(1602, change(1).ID, 100); },
         [&] { return change(1).Tempo == 100; },
         {1602, 1200},
         true},
        {"set tempo of nobody", [&] { Send(1602, 5, 100); }, [] { return true; }, {}, false},
        {"move tempo",
         [&] { Send(1701, change(1).ID, 16.0); },
         [&] { return change(1).BeatN == 16.0; },
         {1701, 1200},
         true},
        {"move tempo onto another",
         [&] { Send(1701, change(1).ID, 4.0); },
         [&] { return change(1).BeatN == 16.0; },
         {},
         false},
        {"delete tempo",
         [&] { Send(1601, change(0).ID); },
         [&] { return tempoCount() == 1; },
         {1601, 1200},
         true},
        {"delete nobody", [&] { Send(1601, 5); }, [&] { return tempoCount() == 1; }, {}, false},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        Fresh();
        row.send();
        EXPECT_TRUE(row.holds());
        EXPECT_EQ(Told_Numbers(), row.told);
        EXPECT_EQ(session.project.Modified, row.modifies);
        EXPECT_FALSE(session.transport.TempoChangedRequest) << "nothing runs";
    }
}

TEST_F(MsgManager_Test, Tempo_Edits_In_A_Run_Ask_For_A_New_Anchor) {
    session.transport.PlayRequested = true;
    for (const int msg : {1302, 1600, 1602, 1701, 1601}) {
        session.transport.TempoChangedRequest = false;
        const bool byId = msg == 1602 || msg == 1701 || msg == 1601;
        const std::int32_t id = byId ? session.tempoChanges.In_Time_Order().front().ID : 0;
        if (byId)
            Send(msg, id, 50);
        else
            Send(msg, msg == 1302 ? 100 : 8, 60);
        EXPECT_TRUE(session.transport.TempoChangedRequest) << msg;
    }
}

TEST_F(MsgManager_Test, Record_Mode_Is_Heeded_Once_In_50_Ms) {
    const std::vector<std::tuple<int, int, bool, bool>> steps = {
        {0, 1, true, true}, {49, 0, true, false}, {1, 0, false, true}, {50, 1, true, true}};
    for (const auto& [waitMs, mode, overwrite, heeded] : steps) {
        test.counter.Advance_Ms(waitMs);
        Fresh();
        Send(1403, mode);
        EXPECT_EQ(session.options.Overwrite, overwrite) << waitMs;
        EXPECT_EQ(!told.empty(), heeded) << waitMs;
    }
    Fresh();
    Send(1402);
    session.options.PlayAtRecSpeed = true;
    Send(1402);
    EXPECT_EQ(told[0].text, "Rec Speed:");
    EXPECT_EQ(told[1].text, "Rec/Play Speed:");
    EXPECT_FALSE(session.project.Modified);
}

TEST_F(MsgManager_Test, Knows_Who_Sent_What) {
    const int other = 0;
    session.hub->Message(&other, 1200);
    session.hub->Message(this, 1102, 0.0);
    EXPECT_EQ(session.hub->Last_Sender(), this);
    EXPECT_EQ(session.hub->Sender_Before(), &other);
    EXPECT_EQ(session.hub->Last_Msg(), 1102);
    EXPECT_EQ(session.hub->Msg_Before(), 1200);
    session.hub->Message(&other, 1302, 90);
    EXPECT_EQ(session.hub->Last_Msg(), 1200) << "the update that followed";
    EXPECT_EQ(session.hub->Last_Sender(), &other) << "in the name of the same sender";
}

TEST(EventRaiserClass_Test, Listeners_Come_And_Go_While_They_Are_Told) {
    EventRaiserClass raiser;
    std::string heard;
    int second = 0;
    const int first = raiser.Subscribe([&](int, std::int32_t, const std::string&) {
        heard += "a";
        raiser.Unsubscribe(second);
        raiser.Subscribe([&heard](int, std::int32_t, const std::string&) { heard += "c"; });
    });
    second = raiser.Subscribe([&](int, std::int32_t, const std::string&) { heard += "b"; });
    raiser.PassMsg(1, 0);
    EXPECT_EQ(heard, "a") << "b has left, c comes later";
    raiser.Unsubscribe(first);
    raiser.Unsubscribe(first);
    raiser.PassMsg(2, 0);
    EXPECT_EQ(heard, "ac");
    const int self = raiser.Subscribe([&](int msg, std::int32_t, const std::string&) {
        heard += "d";
        if (msg == 3)
            raiser.PassMsg(4, 0);
        raiser.Unsubscribe(self);
    });
    raiser.PassMsg(3, 0);
    EXPECT_EQ(heard, "accdcd") << "a notice within a notice";
    raiser.PassMsg(5, 0);
    EXPECT_EQ(heard, "accdcdc");
}

} // namespace
} // namespace tonvex
