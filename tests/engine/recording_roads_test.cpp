#include "support/transport_rig.h"

#include <gtest/gtest.h>

namespace tonvex {
namespace {

/// Keys in, song and sound out. One beat is 1000 ms; velocity 127 leaves as 127 x 0.8 = 101.6, so 102.
struct Road {
    const char* name;
    const char* stored;
    const char* keys;
    int stopMs;
    const char* events;
    const char* trace;
    bool overwrite = false;
    double position = 0.0;
    float speed = 1.0F;
};

const Road ROADS[] = {
    {"one key", "", "100+Z 350-Z", 500, "0.1 48 127 0.25\n",
     "100 On 0 48 102\n350 Off 0 48 100\n500 AllOff\n"},
    {"two keys on one note: the off goes with the second release", "", "100+Z 200+A 400-Z 600-A", 700,
     "0.1 48 127 0.3\n0.2 48 127 0.4\n", "100 On 0 48 102\n200 On 0 48 102\n600 Off 0 48 100\n700 AllOff\n"},
    {"a repeat while held is nothing", "", "100+Z 150+Z 200+Z 300-Z", 400, "0.1 48 127 0.2\n",
     "100 On 0 48 102\n300 Off 0 48 100\n400 AllOff\n"},
    {"held at the stop", "", "100+Z 250+X", 1000, "0.1 48 127 0.9\n0.25 50 127 0.75\n",
     "100 On 0 48 102\n250 On 0 50 102\n1000 AllOff\n1000 Off 0 48 100\n1000 Off 0 50 100\n"},
    {"a MIDI key held at the stop is stored too", "", "100+60:90", 300, "0.1 60 90 0.2\n",
     "100 On 0 60 72\n300 AllOff\n300 Off 0 60 100\n"},
    {"an edge at the very stop comes too late", "", "100+Z 200-Z 500+X", 500, "0.1 48 127 0.1\n",
     "100 On 0 48 102\n200 Off 0 48 100\n500 AllOff\n"},
    {"overwrite without a key wipes what was played, silently",
     "0 60 100 0.1\n0.5 61 100 9\n0.9999 62 100 1\n1 63 100 1\n2 64 100 1", "", 1000,
     "1 63 100 1\n2 64 100 1\n", "1000 AllOff\n", true},
    {"overwrite leaves what lies before the start", "0 60 100 2\n0.5 61 100 1", "100+Z 200-Z", 300,
     "0 60 100 2\n0.6 48 127 0.1\n", "100 On 0 48 102\n200 Off 0 48 100\n300 AllOff\n", true, 0.5},
    {"a blend sounds the old take and keeps it", "0.2 60 100 0.3", "300+Z 400-Z", 600,
     "0.2 60 100 0.3\n0.3 48 127 0.1\n",
     "200 On 0 60 80\n300 On 0 48 102\n400 Off 0 48 100\n500 Off 0 60 100\n600 AllOff\n"},
    {"a start in the middle of a note does not sound it", "0 60 100 0.7\n0.6 62 100 0.1", "", 400,
     "0 60 100 0.7\n0.6 62 100 0.1\n", "100 On 0 62 80\n200 Off 0 62 100\n400 AllOff\n", false, 0.5},
    // the clock reads whole song ms: at half speed 199.5 already reads 200
    {"half speed stores half the beats", "0.2 60 100 0.1", "200+Z 400-Z", 800,
     "0.1 48 127 0.1\n0.2 60 100 0.1\n",
     "200 On 0 48 102\n399 On 0 60 80\n400 Off 0 48 100\n599 Off 0 60 100\n800 AllOff\n", false, 0.0, 0.5F},
    {"Escape ends the run like the Stop button", "", "100+Z 400+ESC 450+X", 1000, "0.1 48 127 0.3\n",
     "100 On 0 48 102\n400 AllOff\n400 Off 0 48 100\n"},
    {"F2 and F6 pick octaves 2 and 6: 12 x 1 + 12, 12 x 5 + 12", "",
     "10+F2 20-F2 100+Z 200-Z 210+F6 220-F6 300+X 400-X", 500, "0.1 24 127 0.1\n0.3 74 127 0.1\n",
     "100 On 0 24 102\n200 Off 0 24 100\n300 On 0 74 102\n400 Off 0 74 100\n500 AllOff\n"},
    {"a note ends as what it began, whatever the octave has become", "", "100+Z 150+F6 160-F6 200-Z", 300,
     "0.1 48 127 0.1\n", "100 On 0 48 102\n200 Off 0 48 100\n300 AllOff\n"},
    {"the touch of a MIDI key is stored, and heard times 0.8", "", "100+60:90 200-60 300+60:33 400-60", 500,
     "0.1 60 90 0.1\n0.3 60 33 0.1\n",
     "100 On 0 60 72\n200 Off 0 60 100\n300 On 0 60 26\n400 Off 0 60 100\n500 AllOff\n"},
    {"a press of 0 ms is kept, its off goes in the next round", "", "100+Z 100-Z", 200, "0.1 48 127 0\n",
     "100 On 0 48 102\n101 Off 0 48 100\n200 AllOff\n"},
    {"three keys at once: one a round, all stored at their arrival", "",
     "100+Z 100+X 100+60:100 300-Z 400-X 500-60", 600, "0.1 48 127 0.2\n0.1 50 127 0.3\n0.1 60 100 0.4\n",
     nullptr},
    {"keys that mean nothing", "", "100+200 150+F12 200-200", 300, "", "300 AllOff\n"},
    {"touching notes are heard apart", "0.1 60 100 0.1\n0.2 60 100 0.1", "", 400,
     "0.1 60 100 0.1\n0.2 60 100 0.1\n",
     "100 On 0 60 80\n200 Off 0 60 100\n200 On 0 60 80\n300 Off 0 60 100\n400 AllOff\n"},
    {"overlapping notes: one off, at the end of the later", "0.1 60 100 0.3\n0.2 60 50 0.1", "", 500,
     "0.1 60 100 0.3\n0.2 60 50 0.1\n", "100 On 0 60 80\n200 On 0 60 40\n400 Off 0 60 100\n500 AllOff\n"}};

TEST(Recording_Roads, From_Keys_To_Song_And_Sound) {
    for (const Road& road : ROADS) {
        SCOPED_TRACE(road.name);
        Transport_Rig rig;
        rig.Add_Notes(road.stored);
        rig.Keys(road.keys);
        EXPECT_TRUE(rig.Record(road.stopMs, road.overwrite, road.position, road.speed));
        EXPECT_EQ(rig.Events(), road.events);
        if (road.trace != nullptr) {
            EXPECT_EQ(rig.Trace(), road.trace);
        }
        EXPECT_FALSE(rig.recorder.IsRunning());
        EXPECT_FALSE(rig.state.Song_Runs());
        EXPECT_TRUE(rig.state.TransportStopped);
    }
}

TEST(Recording_Roads, Sound_Is_Due_When_The_Key_Was_Hit) {
    Transport_Rig rig;
    rig.Keys("100+Z 100+X 300-Z");
    rig.Record(400);
    EXPECT_EQ(rig.Due_Ms(), (std::vector<std::int64_t>{100, 100}));
}

TEST(Recording_Roads, The_First_Key_Falls_At_The_Start) {
    Transport_Rig rig;
    rig.options.Global_Rec_WaitForKey = true;
    rig.Add_Note({2.1, 60, 100, 0.1});
    rig.Keys("200-X 700+Z 900-Z");
    rig.Record(1200, false, 2.0);
    // The key opens the run at 700 and sounds in its first round; the stored note 100 ms later.
    EXPECT_EQ(rig.Trace(),
              "701 On 0 48 102\n800 On 0 60 80\n900 Off 0 60 100\n900 Off 0 48 100\n1200 AllOff\n");
    EXPECT_EQ(rig.Events(), "2 48 127 0.2\n2.1 60 100 0.1\n");
}

TEST(Recording_Roads, Waiting_Ends_With_Stop_Or_Escape_And_Wipes_Nothing) {
    for (const bool withEscape : {false, true}) {
        SCOPED_TRACE(withEscape ? "Escape" : "Stop");
        Transport_Rig rig;
        rig.options.Global_Rec_WaitForKey = true;
        rig.Add_Note({0.0, 60, 100, 1.0});
        rig.counter.Advance_Ns(700'000); // a real clock never stands on a whole millisecond
        if (withEscape)
            rig.Keys("300+ESC");
        EXPECT_TRUE(rig.Record(withEscape ? 5000 : 300, true));
        EXPECT_EQ(rig.Events(), "0 60 100 1\n");
        EXPECT_LE(rig.counter.Now_Ms(), 301);
    }
}

TEST(Recording_Roads, Clicks_Fall_On_Whole_Beats) {
    struct Case {
        const char* name;
        bool argument;
        bool checkBox;
        int tempo;
        float speed;
        double position;
        const char* trace;
    };
    // 80 x 1.27 = 101.6, so 102; at half speed 249.5 song ms read 250.
    const Case cases[] = {{"each 250 ms at 240", true, true, 240, 1.0F, 0.0,
                           "1 On 9 33 102\n250 On 9 33 102\n500 On 9 33 102\n600 AllOff\n"},
                          {"each 500 ms at half speed", true, true, 240, 0.5F, 0.0,
                           "1 On 9 33 102\n499 On 9 33 102\n600 AllOff\n"},
                          {"no click late in a beat", true, true, 240, 1.0F, 0.25,
                           "188 On 9 33 102\n438 On 9 33 102\n600 AllOff\n"},
                          {"check box off", true, false, 240, 1.0F, 0.0, "600 AllOff\n"},
                          {"argument off", false, true, 240, 1.0F, 0.0, "600 AllOff\n"}};
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        Transport_Rig rig;
        rig.project.ProjectTempo = item.tempo;
        rig.options.Metronome = item.checkBox;
        rig.Record(600, false, item.position, item.speed, item.argument);
        EXPECT_EQ(rig.Trace(), item.trace);
    }
}

TEST(Recording_Roads, A_Key_On_A_Channel_At_Volume_0_Neither_Sounds_Nor_Ends_Anything) {
    Transport_Rig rig;
    rig.channels.Set_Volume(rig.firstChannel, 0);
    rig.At(300, [&] { rig.channels.Set_Volume(rig.firstChannel, 40); });
    // Another channel on the slot, at 80, holds the same note 48 from 50 to 250 and 51 from 400 to 500.
    rig.Add_Channel(0);
    rig.Add_Note({0.05, 48, 100, 0.2}, 1);
    rig.Add_Note({0.4, 51, 100, 0.1}, 1);
    // Z is struck in silence and let go behind the stored note; A strikes its 48 when the volume is up again
    // and goes before Z's second, silent press does.
    rig.Keys("100+Z 280-Z 290+Z 350+A 450-A 550-Z");
    rig.Record(600);
    EXPECT_EQ(rig.Trace(), "50 On 0 48 80\n250 Off 0 48 100\n350 On 0 48 51\n400 On 0 51 80\n"
                           "500 Off 0 51 100\n550 Off 0 48 100\n600 AllOff\n");
}

TEST(Recording_Roads, A_Take_Follows_Tempo_Changes_And_Edits) {
    Transport_Rig rig;
    rig.Add_Channel(1);
    rig.Add_Note({0.6, 60, 100, 0.1}, 1); // at 425 ms
    rig.tempoChanges.AddTempoChange(0.5, 240);
    rig.Keys("300+Z 440-Z"); // 0.3 and, with 0.2 beats at 120 in 100 ms and 40 ms at 240, 0.66
    rig.At(300, [&] { rig.project.ProjectTempo = 120; });
    rig.At(330, [&] { rig.channels.Set_Mute(rig.channels.Channels[1].ChannelID, true); });
    rig.Record(500);
    EXPECT_EQ(rig.Trace(), "300 On 0 48 102\n440 Off 0 48 100\n500 AllOff\n");
    EXPECT_EQ(rig.Events(), "0.3 48 127 0.36\n");
}

TEST(Recording_Roads, Two_Takes_Lie_Side_By_Side) {
    Transport_Rig rig;
    rig.Keys("100+Z 200-Z 600+X 700-X");
    rig.Record(500);
    rig.Record(500);
    // The second take begins at 500 ms: its key comes 100 ms into it, with the first take's note.
    EXPECT_EQ(rig.Events(), "0.1 48 127 0.1\n0.1 50 127 0.1\n");
    EXPECT_EQ(rig.Trace(),
              "100 On 0 48 102\n100 On 0 50 102\n200 Off 0 48 100\n200 Off 0 50 100\n500 AllOff\n");
}

TEST(Recording_Roads, The_Hub_Hears_The_Take_In_Order) {
    Transport_Rig rig;
    rig.Add_Note({0.1, 60, 100, 1.0});
    rig.state.PlayPosition = 3.5;
    rig.Keys("100+Z 200-Z");
    rig.recorder.RecStopped = [&] { rig.hubMessages.push_back(0); };
    rig.Record(300, true);
    EXPECT_EQ(rig.hubMessages, (std::vector<int>{1014, 1017, 1200, 1102, 0}));
    EXPECT_EQ(rig.state.PlayPosition, 3.5);
}

TEST(Recording_Roads, Where_Nothing_Can_Be_Recorded) {
    Transport_Rig rig;
    rig.Keys("50+Z");
    rig.firstChannel += 5;
    EXPECT_TRUE(rig.Record(100)); // no such channel
    rig.firstChannel = rig.channels.New_ChannelID();
    rig.channels.Add_Channel(rig.firstChannel, true, NOT_GIVEN, "Audio");
    EXPECT_TRUE(rig.Record(100));
    EXPECT_EQ(rig.counter.Now_Ms(), 0);
    EXPECT_EQ(rig.Trace(), "");
    rig.input.InputDevice = 1;
    rig.input.MidiInDevice = -1;
    rig.firstChannel = rig.channels.Channels[0].ChannelID;
    EXPECT_FALSE(rig.Record(100));
    ASSERT_EQ(rig.dialogs.shown.size(), 1U);
    EXPECT_EQ(rig.dialogs.shown[0].text, "Error initializing Input Device: Midi Input");
    EXPECT_FALSE(rig.state.Song_Runs());
    rig.input.InputDevice = 0; // the legal call still works
    EXPECT_TRUE(rig.Record(100));
    EXPECT_EQ(rig.Events(), "0.05 48 127 0.05\n");
}

TEST(Recording_Roads, It_Stops_Behind_The_End_Time) {
    Transport_Rig rig;
    rig.recorder.EndTime = 0.25;
    rig.Add_Notes("0.2 60 100 1  0.25 62 100 1");
    rig.Record(2000, true);
    EXPECT_EQ(rig.counter.Now_Ms(), 251);
    EXPECT_EQ(rig.Events(), "0.25 62 100 1\n") << "the span that was asked for";
}

TEST(Recording_Roads, Practice_Sounds_And_Stores_Nothing) {
    for (const bool plain : {true, false}) { // on slot 0, velocity as played, or with a channel's sound
        SCOPED_TRACE(plain);
        Transport_Rig rig;
        rig.Add_Note({0.0, 60, 100, 1.0});
        rig.recorder.PracticeMode = true;
        rig.options.Global_Rec_WaitForKey = true; // is not for practice
        rig.Keys("100+Z 200-Z 300+X");
        const std::int32_t channel = plain ? RecorderClass::PRACTICE_PLAIN : rig.firstChannel;
        EXPECT_FALSE(rig.recorder.StartRecording(0, 0, 0, false, true, true)); // no round before the set-up
        EXPECT_TRUE(rig.recorder.StartRecording(0, 1, channel, false, true, false));
        EXPECT_FALSE(rig.Record(10)); // the recorder is busy; Record forgets the trace of the set-up
        while (rig.counter.Now_Ms() < 400) {
            rig.counter.Advance_Ms(1);
            rig.recorder.StopRequested = rig.counter.Now_Ms() == 400;
            EXPECT_TRUE(rig.recorder.StartRecording(0, 0, 0, false, true, true));
        }
        EXPECT_FALSE(rig.recorder.IsRunning());
        const std::string vol = plain ? "127" : "102";
        EXPECT_EQ(rig.Trace(), "100 On 0 48 " + vol + "\n200 Off 0 48 100\n300 On 0 50 " + vol +
                                   "\n400 AllOff\n400 Off 0 50 100\n");
        EXPECT_EQ(rig.Events(), "0 60 100 1\n");
        EXPECT_TRUE(rig.hubMessages.empty());
    }
}

// A beat of 1000 ms, from 20 ms on one of 20: the other 0.98 of it end at 39.6 ms.
TEST(Recording_Roads, Practice_Follows_Its_Channel_Between_Notes_And_The_Song) {
    Transport_Rig rig;
    rig.options.Metronome = true;
    rig.project.ProjectTempo = 60;
    rig.recorder.PracticeMode = true;
    rig.Keys("10+Z 30-Z 50+X");
    EXPECT_TRUE(rig.recorder.StartRecording(0, 1, rig.firstChannel, false, true, false));
    while (rig.counter.Now_Ms() < 60) {
        rig.counter.Advance_Ms(1);
        if (rig.counter.Now_Ms() == 20) {
            rig.channels.Set_OutputChannel(rig.firstChannel, 3);
            rig.channels.Set_Volume(rig.firstChannel, 40);
            rig.project.ProjectTempo = 3000;
            rig.project.MetronomeNoteB = 50;
            rig.project.MetronomeNoteA = 100;
        }
        rig.recorder.StartRecording(0, 0, 0, false, true, true);
    }
    EXPECT_EQ(rig.Trace(), "1 On 9 33 102\n10 On 0 48 102\n30 Off 0 48 100\n40 On 9 50 127\n50 On 3 50 51\n"
                           "60 On 9 50 127\n");
}

} // namespace
} // namespace tonvex
