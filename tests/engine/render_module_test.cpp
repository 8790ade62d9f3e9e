#include "support/transport_rig.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tonvex {
namespace {

/// "<time> <channel> <data1> <data2>" a line.
std::string Text(const Render_MidiEventColClass& list) {
    std::ostringstream text;
    for (std::int32_t i = 0; i < list.TotalEvents(); ++i) {
        std::int16_t channel = 0;
        double time = 0.0;
        std::uint16_t data1 = 0;
        std::uint16_t data2 = 0;
        EXPECT_TRUE(list.GetEvent(i, channel, time, data1, data2));
        text << time << ' ' << channel << ' ' << data1 << ' ' << data2 << '\n';
    }
    return text.str();
}

TEST(Render_Module, Lays_A_Channel_Out_In_The_Order_Of_Its_Events) {
    Transport_Rig rig;
    rig.withPatches = true;
    rig.Add_Channel(3);
    rig.channels.Global_Patches[9] = {"Far", 12, 5, 0};
    EXPECT_EQ(Text(rig.render.Render_Channel(1)), "0 0 3000 1\n") << "an empty channel";
    rig.Add_Note({0.5, 60, 100, 4.0}, 1);
    rig.Add_Note({1.0, 62, 90, 0.5}, 1);
    rig.Add_Note({1.25, 63, 90, 0.0}, 1); // no length, no rows
    rig.Add_Patch(2.0, 9, 1);
    rig.channels.Store(1).AddNewEvent(3.0, NamedEventData{});
    EXPECT_EQ(rig.Trace(), "");
    EXPECT_EQ(Text(rig.render.Render_Channel(1)),
              "0 0 3000 1\n0.5 3 60 100\n4.5 3 60 0\n1 3 62 90\n1.5 3 62 0\n2 3 1000 1292\n"); // 12 + 256 * 5
    EXPECT_EQ(rig.Trace(), "0 Patch 3 12 5\n") << "at once, too";
    EXPECT_EQ(Text(rig.render.Render_EmptyChannel(1)), "0 0 3000 1\n");
}

TEST(Render_Module, An_Excluded_Channel_Keeps_Its_Place_And_Can_Be_Filled) {
    Transport_Rig rig;
    rig.Add_Channel(1);
    rig.channels.Add_Channel(rig.channels.New_ChannelID(), true, NOT_GIVEN, "Audio"); // row 2, no list
    rig.Add_Channel(2);
    for (int row : {0, 1, 3})
        rig.Add_Note({0.1, 60 + row, 100, 0.1}, row);
    rig.cue.Init_SetOutput(true, 0);
    ASSERT_TRUE(rig.render.Render_Start(1));
    rig.cue.Player_SetPos(0.0);
    rig.cue.clock_SetPars(1.0F, 60, 0, 0, 0.0, {});
    rig.cue.Channel_SetMute(3, true); // the second list: the marker ties it to the row
    rig.cue.Player_Start();
    rig.counter.Advance_Ms(50);
    rig.cue.Step();
    rig.render.Render_UpdateChannel(1);
    rig.counter.Advance_Ms(450);
    rig.cue.Step();
    EXPECT_EQ(rig.Trace(), "500 On 0 60 100\n500 On 1 61 100\n500 Off 0 60 100\n500 Off 1 61 100\n");
    rig.render.Render_StopPlayer();
    EXPECT_TRUE(rig.cue.Player_IsPaused());
}

TEST(Engine_Run, Sets_The_Clock_Or_Says_That_It_Cannot) {
    Transport_Rig rig;
    rig.options.Global_UseThreadEngine = true;
    rig.Add_Note({0.1, 60, 100, 0.1});
    EXPECT_EQ(rig.cue.clock_CheckValid(0.0), 1) << "never set";
    rig.cue.clock_SetPars(1.0F, 60, 0, 0, 0.0, {});
    EXPECT_EQ(rig.cue.clock_CheckValid(0.001), 0) << "to the millisecond";
    EXPECT_EQ(rig.cue.clock_CheckValid(0.0011), 1);
    rig.counter.Advance_Ms(1000);
    EXPECT_EQ(rig.cue.clock_CheckValid(1.0), 0);

    EXPECT_FALSE(rig.Play(1e300)) << "no clock gets there";
    EXPECT_TRUE(rig.Record(500, false, 1e300));
    ASSERT_EQ(rig.dialogs.shown.size(), 2U);
    EXPECT_EQ(rig.dialogs.shown[0].text, "Error setting clock");
    EXPECT_FALSE(rig.state.Song_Runs() || rig.state.EngineRunning || rig.recorder.IsRunning());
    EXPECT_EQ(rig.counter.Now_Ms(), 1000) << "not a round";
    EXPECT_TRUE(rig.Play()) << "and on";
    EXPECT_NE(rig.Trace().find("100 On 0 60 80\n"), std::string::npos) << rig.Trace();
}

TEST(Engine_Run, Is_Told_No_Clock_But_The_Right_One_At_A_Tempo_Edit) {
    struct Told final : Clock_Listener {
        std::vector<double> beats;
        void clock_SetPars(float, std::int32_t tempo, std::int64_t startTick, std::int64_t ms, double beat,
                           std::span<const Tempo_Segment>) override {
            beats.push_back(beat + static_cast<double>(-startTick - ms) * tempo / 60000.0); // now is 0
        }
    } told;
    Transport_Rig rig;
    rig.tempoChanges.AddTempoChange(10.0, 30);
    rig.player.Clock().UseTempoMap = true;
    rig.player.Clock().SetTime(12.0);
    rig.player.Clock().listener = &told;
    rig.tempoChanges.AddTempoChange(14.0, 60);
    EXPECT_TRUE(Follow_Tempo(rig.parts, rig.player.Clock()));
    EXPECT_EQ(told.beats, std::vector<double>{12.0});
}

} // namespace
} // namespace tonvex
