#include "support/hub_bed.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <vector>

namespace tonvex {
namespace {

class MsgManager_Test : public Hub_Bed {
protected:
    std::int32_t Add_Note(double start, std::uint8_t note, double length = 1.0) {
        return store.AddNewEvent(start, NoteData{note, 100, length});
    }
    using Args = Change_Hub::Args;
    /// What one message does: what is told (nothing: it is refused) and what then holds.
    struct Case {
        const char* name;
        int msg;
        Args args;
        std::vector<int> told;
        std::function<bool()> holds;
    };
    void Check(const std::vector<Case>& cases) {
        const std::vector<int> changeNothing = {1016, 1019, 1021, 1023, 1100, 1101, 1102, 1200, 1201};
        for (const Case& row : cases) {
            SCOPED_TRACE(row.name);
            Fresh();
            session.hub->Send(this, row.msg, row.args);
            EXPECT_TRUE(!row.holds || row.holds());
            EXPECT_EQ(Told_Numbers(), row.told);
            const bool changes =
                std::find(changeNothing.begin(), changeNothing.end(), row.msg) == changeNothing.end();
            EXPECT_EQ(session.project.Modified, changes && !row.told.empty());
            EXPECT_FALSE(session.transport.TempoChangedRequest) << "nothing runs";
        }
    }
    /// What adds a channel.
    static Args Named(const std::string& name, int slot) { return {name, false, slot}; }
    GlobalChannel& Row(std::size_t row = 0) { return session.channels->Channels[row]; }
    NoteData Note(std::int32_t id) { return *store.ReadEvent(store.GetEvent_I(id))->Note; }
};

TEST_F(MsgManager_Test, Channel_Messages) {
    const auto count = [&] { return session.channels->Count_Channels(); };
    const std::vector<Case> cases = {
        {"patch", 1001, {CHANNEL, 24}, {1001}, [&] { return Row().PatchI == 24; }},
        {"patch row 256", 1001, {CHANNEL, 256}, {}, [&] { return Row().PatchI == 24; }},
        {"volume", 1002, {CHANNEL, 300}, {1002}, [&] { return Row().Volume == 127; }},
        {"volume of nobody", 1002, {NOBODY, 3}, {}, [&] { return Row().Volume == 127; }},
        {"volume as text", 1002, {CHANNEL, std::string("3")}, {}, [&] { return Row().Volume == 127; }},
        {"name", 1003, {CHANNEL, std::string("Lead")}, {1003}, [&] { return Row().ChannelName == "Lead"; }},
        {"pan", 1005, {CHANNEL, 20.0}, {1005}, [&] { return Row().Pan == 20; }},
        {"pan not finite", 1005, {CHANNEL, NAN_ARG}, {}, [&] { return Row().Pan == 20; }},
        {"solo on", 1006, {CHANNEL, true}, {1006}, [&] { return Is_On(Row().Solo); }},
        {"clear solo", 1007, {CHANNEL, false}, {1007}, [&] { return !Is_On(Row().Solo); }},
        {"toggle solo", 1008, {CHANNEL}, {1008}, [&] { return Is_On(Row().Solo); }},
        {"mute on", 1009, {CHANNEL, 1}, {1009}, [&] { return Is_On(Row().Mute); }},
        {"clear mute", 1010, {CHANNEL, 0}, {1010}, [&] { return !Is_On(Row().Mute); }},
        {"toggle mute", 1011, {CHANNEL}, {1011}, [&] { return Is_On(Row().Mute); }},
        {"output", 1012, {CHANNEL, 31}, {1012}, [&] { return Row().OutputChannel == 31; }},
        {"output 32", 1012, {CHANNEL, 32}, {}, [&] { return Row().OutputChannel == 31; }},
        {"add", 1013, Named("Bass", 5), {1013, 1200}, [&] { return Row(1).OutputChannel == 5; }},
        {"add on slot 32", 1013, Named("x", 32), {}, [&] { return count() == 2; }},
        {"add without arguments", 1013, {}, {1013, 1200}, [&] { return Row(2).OutputChannel == 0; }},
        {"delete", 1004, {FIRST_ID + 1}, {-1004, 1004, 1200}, [&] { return count() == 2; }},
        {"delete again", 1004, {FIRST_ID + 1}, {}, {}},
        {"unknown number", 4711, {CHANNEL}, {}, {}}};
    Check(cases);
}

TEST_F(MsgManager_Test, Channel_101_Is_Refused) {
    for (int i = 1; i < 100; ++i)
        Send(1013);
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
    const auto sent = [this](Sound_Op op, int slot, int a) { return Count(test.sound.posted, op, slot, a); };
    session.channels->Global_Patches[7].Patch = 24;
    Send(1001, CHANNEL, 7);
    EXPECT_EQ(sent(Sound_Op::Patch, 0, 24), 1) << "the program of patch row 7";
    Send(1005, CHANNEL, 20);
    EXPECT_EQ(sent(Sound_Op::Pan, 0, 20), 1);
    Send(1005, CHANNEL, 20);
    EXPECT_EQ(sent(Sound_Op::Pan, 0, 20), 1) << "only what differs";
    session.transport.PlayRequested = true;
    Send(1012, CHANNEL, 3);
    EXPECT_EQ(sent(Sound_Op::ChannelNotesOff, 0, 0), 0) << "other channels may sound there";
    session.transport.LiveSlot = 3;
    Fresh();
    Send(1012, CHANNEL, 4);
    EXPECT_EQ(test.sound.posted.front().op, Sound_Op::ChannelNotesOff) << "what the performer holds ends";
    EXPECT_EQ(test.sound.posted.front().slot, 3);
    EXPECT_EQ(sent(Sound_Op::Pan, 4, 20), 1);
    session.transport.LiveSlot = 4;
    Fresh();
    Send(1004, CHANNEL);
    ASSERT_FALSE(test.sound.posted.empty());
    EXPECT_EQ(test.sound.posted.front().op, Sound_Op::ChannelNotesOff);
    EXPECT_EQ(test.sound.posted.front().slot, 4);
}

TEST_F(MsgManager_Test, Volume_And_Output_Reach_The_Song_While_Either_Engine_Plays_It) {
    for (const bool engine : {false, true}) {
        SCOPED_TRACE(engine);
        session.options.Global_UseThreadEngine = engine;
        Send(1002, CHANNEL, 100);
        Send(1012, CHANNEL, 0);
        Fresh();
        const std::int64_t startMs = test.counter.Now_Ns() / 1'000'000;
        bool engineRan = false;
        test.loop.betweenRounds = [&](std::int64_t nowMs) {
            engineRan = engineRan || session.transport.EngineRunning;
            if (nowMs - startMs == 700)
                Send(1002, CHANNEL, 50);
            if (nowMs - startMs == 1700)
                Send(1012, CHANNEL, 4);
        };
        for (const double start : {0.0, 2.0, 4.0}) { // 0, 1000 and 2000 ms at tempo 120
            if (!engine)
                Add_Note(start, 60);
        }
        session.player->Transport_Play(0.0, false, 1.0F);
        test.loop.betweenRounds = nullptr;
        std::string ons;
        for (const Sound_Message& message : test.sound.posted) {
            if (message.op == Sound_Op::NoteOn)
                ons += std::to_string(message.slot) + ":" + std::to_string(message.b) + " ";
        }
        EXPECT_EQ(ons, "0:100 0:50 4:50 ");
        EXPECT_EQ(engineRan, engine);
    }
}

TEST_F(MsgManager_Test, Event_Messages) {
    const std::int32_t id = Add_Note(4.0, 60);
    const std::int32_t chordId =
        store.AddNewEvent(6.0, QChordData{.Active = 3, .ChordName = "C", .ChordNotes = {48, 52, 55}});
    const auto chord = [&] { return *store.ReadEvent(store.GetEvent_I(chordId))->QChord; };
    const auto start = [&] { return store.ReadEvent(store.GetEvent_I(id))->StartTime; };
    const auto first = [&] { return store.ReadEvent(store.FirstEvent())->EventID; };
    const auto length = [&] { return session.project.SongLength; };
    const EventData given = NoteData{70, 9, 44.0};
    const EventData patch = PatchData{3};
    const NoteData kept{70, 9, 2.05};
    constexpr double NO_TIME = NOT_GIVEN_TIME;
    constexpr double endless = std::numeric_limits<double>::infinity();
    const std::vector<Case> cases = {
        {"added", 1015, {CHANNEL, id}, {1015}, {}},
        {"added, but not there", 1015, {CHANNEL, id + 9}, {}, {}},
        {"end of adds", 1016, {CHANNEL}, {1016, 1200}, [&] { return length() == 6.0; }},
        {"move to", 1018, {CHANNEL, id, 8.0}, {1018}, [&] { return start() == 8.0; }},
        {"move by", 1018, {CHANNEL, id, NO_TIME, -1.5}, {1018}, [&] { return start() == 6.5; }},
        {"move nowhere", 1018, {CHANNEL, id}, {}, [&] { return start() == 6.5; }},
        {"move to infinity", 1018, {CHANNEL, id, endless}, {}, [&] { return start() == 6.5; }},
        {"end of moves sorts",
         1019,
         {CHANNEL},
         {1019, 1200},
         [&] { return first() == chordId && length() == 7.5; }},
        {"length", 1020, {CHANNEL, id, 0.0}, {1020}, [&] { return Note(id).Length == 0.05; }},
        {"length by", 1020, {CHANNEL, id, NO_TIME, 2.0}, {1020}, [&] { return Note(id).Length == 2.05; }},
        {"end of lengths", 1021, {CHANNEL}, {1021, 1200}, [&] { return length() == 8.55; }},
        {"note", 1022, {CHANNEL, id, 61}, {1022}, [&] { return Note(id).Note == 61; }},
        {"note by", 1022, {CHANNEL, id, NOT_GIVEN, -1}, {1022}, [&] { return Note(id).Note == 60; }},
        {"end of notes", 1023, {CHANNEL}, {1023, 1200}, {}},
        {"properties keep the length", 1024, {CHANNEL, id, given}, {1024}, [&] { return Note(id) == kept; }},
        {"properties of another kind", 1024, {CHANNEL, id, patch}, {}, [&] { return Note(id) == kept; }},
        {"volume by", 1026, {CHANNEL, id, NOT_GIVEN, 200}, {1026}, [&] { return Note(id).Vol == 127; }},
        {"chord type", 1031, {CHANNEL, chordId, 1}, {1031}, [&] { return chord().ChordNotes[1] == 51; }},
        {"chord type 12", 1031, {CHANNEL, chordId, 12}, {}, [&] { return chord().ChordTypeIndex == 1; }},
        {"chord type of a note", 1031, {CHANNEL, id, 1}, {}, [&] { return Note(id).Note == 70; }},
        {"chord's note by",
         1022,
         {CHANNEL, chordId, NOT_GIVEN, 2},
         {1022},
         [&] { return chord().ChordName == "Dm"; }},
        {"delete", 1017, {CHANNEL, id}, {-1017, 1017, 1200}, [&] { return store.GetEvent_I(id) < 0; }},
        {"delete again", 1017, {CHANNEL, id}, {}, {}},
        {"of nobody", 1019, {NOBODY}, {}, {}}};
    Check(cases);
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

TEST_F(MsgManager_Test, An_Overwritten_Span_Goes_With_One_Update) {
    for (const double start : {0.0, 0.1, 0.2, 3.0})
        Add_Note(start, 60);
    test.loop.betweenRounds = [&](std::int64_t ms) { session.transport.StopTransportRequest = ms >= 750; };
    EXPECT_TRUE(session.recorder->StartRecording(0.0, 1.0F, CHANNEL, true, false, false));
    EXPECT_EQ(store.GetTotalEvents(), 0) << "750 ms are a beat at tempo 80: only the last note stays";
    const auto numbers = Told_Numbers();
    EXPECT_EQ(std::count(numbers.begin(), numbers.end(), 1017), 3);
    EXPECT_EQ(std::count(numbers.begin(), numbers.end(), 1200), 1);
    EXPECT_NEAR(session.project.SongLength, 4.0, 1e-9);
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
    const std::int32_t style = store.AddNewEvent(0.0, MCEventData{.Root = 2}); // 48 and the root is its row
    const auto root = [&] { return store.Get_Event_BaseNote(store.GetEvent_I(style)) - 48; };
    const auto tempoCount = [&] { return session.tempoChanges.In_Time_Order().size(); };
    const auto change = [&](std::size_t n) { return session.tempoChanges.In_Time_Order().at(n); };
    const std::vector<Case> cases = {
        {"position family", 1100, {}, {1100}, {}},
        {"position value", 1101, {3.0}, {1101}, [&] { return session.hub->PositionValue == 3.0; }},
        {"position", 1102, {7}, {1102}, [&] { return session.transport.PlayPosition == 7.0; }},
        {"position below 0", 1102, {-1.0}, {}, [&] { return session.transport.PlayPosition == 7.0; }},
        {"general update", 1200, {}, {1200}, [&] { return session.project.SongLength == 5.0; }},
        {"show position", 1201, {2.0}, {1201}, [&] { return session.transport.PlayPosition == 7.0; }},
        {"transpose", 1300, {-3}, {1300, 1200}, [&] { return Note(id).Note == 57 && root() == 11; }},
        {"speed", 1301, {2.0}, {1301, 1200}, [&] { return session.project.SongLength == 10.0; }},
        {"speed 0", 1301, {0.0}, {}, [&] { return session.project.SongLength == 10.0; }},
        {"tempo", 1302, {120}, {1302, 1200}, [&] { return session.project.ProjectTempo == 120; }},
        {"tempo 0", 1302, {0}, {}, [&] { return session.project.ProjectTempo == 120; }},
        {"tempo not given", 1302, {}, {}, [&] { return session.project.ProjectTempo == 120; }},
        {"add tempo", 1600, {8.0, 90}, {1600, 1200}, [&] { return change(0).Tempo == 90; }},
        {"add tempo on a taken beat", 1600, {8.0, 70}, {}, [&] { return tempoCount() == 1; }},
        {"add tempo before the start", 1600, {-1.0, 70}, {}, [&] { return tempoCount() == 1; }},
        {"add tempo 40000", 1600, {9.0, 40000}, {}, [&] { return tempoCount() == 1; }},
        {"a second one", 1600, {4.0, 60}, {1600, 1200}, [&] { return tempoCount() == 2; }},
        {"set tempo", 1602, {FIRST_ID, 100}, {1602, 1200}, [&] { return change(1).Tempo == 100; }},
        {"set tempo of nobody", 1602, {5, 100}, {}, {}},
        {"move tempo", 1701, {FIRST_ID, 16.0}, {1701, 1200}, [&] { return change(1).BeatN == 16.0; }},
        {"move tempo onto another", 1701, {FIRST_ID, 4.0}, {}, [&] { return change(1).BeatN == 16.0; }},
        {"delete tempo", 1601, {FIRST_ID + 1}, {1601, 1200}, [&] { return tempoCount() == 1; }},
        {"delete nobody", 1601, {5}, {}, [&] { return tempoCount() == 1; }}};
    Check(cases);
}

TEST_F(MsgManager_Test, Tempo_Edits_In_A_Run_Ask_For_A_New_Anchor) {
    session.transport.PlayRequested = true;
    Send(1301, 2.0);
    EXPECT_TRUE(told.empty()) << "a run plays the song as it is";
    for (const auto& [msg, first] :
         {std::pair{1302, 100}, {1600, 8}, {1602, FIRST_ID}, {1701, FIRST_ID}, {1601, FIRST_ID}}) {
        session.transport.TempoChangedRequest = false;
        Send(msg, first, 50);
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
