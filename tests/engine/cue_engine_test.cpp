#include "engine/cue_engine.h"

#include "support/recording_cue_output.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

namespace tonvex {
namespace {

constexpr std::uint16_t PATCH = CueRow::PATCH_CHANGE;
constexpr std::uint16_t MARKER = CueRow::LIST_MARKER;

using Rows = std::vector<CueRow>;

/// A list of channel row 5 + n on slot 0; 60 beats a minute, so a beat is 1000 ms.
CueRow Marker(std::uint16_t row) {
    return {0.0, 0, MARKER, row, 0};
}
CueRow On(double beat, std::uint16_t note, std::uint16_t velocity = 100, std::int16_t slot = 0) {
    return {beat, slot, note, velocity, 0};
}
CueRow Off(double beat, std::uint16_t note, std::int16_t slot = 0) {
    return {beat, slot, note, 0, 0};
}

struct Stepped_Rig {
    Stepped_Rig() {
        EXPECT_TRUE(engine.InitDLL());
        engine.Init_SetOutput(true, 0);
    }
    void Give(const std::vector<Rows>& lists) {
        EXPECT_TRUE(engine.Init_Buffers(static_cast<std::int32_t>(lists.size()) - 1, 0));
        for (std::size_t i = 0; i < lists.size(); ++i)
            engine.AddEvents(static_cast<std::int32_t>(i), lists[i].data(),
                             static_cast<std::int32_t>(lists[i].size()));
    }
    void Start(double beat = 0.0) {
        engine.Player_SetPos(beat);
        engine.clock_SetPars(1.0F, 60, counter.Now_Ms(), 0, beat, {});
        engine.Player_Start();
    }
    void Run_To(std::int64_t ms) {
        while (counter.Now_Ms() < ms) {
            counter.Advance_Ms(1);
            engine.Step();
        }
    }
    void Update(std::int32_t list, const Rows& rows, bool keepSounding = false) {
        engine.Channel_UpdateModded(list, rows.data(), static_cast<std::int32_t>(rows.size()), keepSounding);
    }

    Simulated_Counter counter;
    Recording_Cue_Output output;
    CueEngine engine{counter, output, Cue_Drive::Stepped};
};

TEST(Cue_Engine, Lists_Sound_In_Order_Of_Time) {
    struct Case {
        const char* name;
        std::vector<Rows> lists;
        double start;
        const char* text;
    };
    const Case cases[] = {
        {"nothing but a marker", {{Marker(5)}}, 0.0, ""},
        {"a short note inside a long one",
         {{Marker(5), On(0.1, 60), Off(0.5, 60), On(0.2, 62), Off(0.3, 62)}},
         0.0,
         "100 +60/0 v100\n200 +62/0 v100\n300 -62/0\n500 -60/0\n"},
        {"touching: the off first, also where 0.1 + 0.2 misses 0.3",
         {{Marker(5), On(0.1, 60), Off(0.1 + 0.2, 60), On(0.3, 60, 90), Off(0.4, 60)}},
         0.0,
         "100 +60/0 v100\n300 -60/0\n300 +60/0 v90\n400 -60/0\n"},
        {"overlapping in one list: the last sends the off",
         {{Marker(5), On(0.1, 60), Off(0.3, 60), On(0.2, 60, 90), Off(0.4, 60)}},
         0.0,
         "100 +60/0 v100\n200 +60/0 v90\n400 -60/0\n"},
        {"overlapping over lists of one slot",
         {{Marker(5), On(0.1, 60), Off(0.4, 60)}, {Marker(6), On(0.2, 60), Off(0.3, 60)}},
         0.0,
         "100 +60/0 v100\n200 +60/0 v100\n400 -60/0\n"},
        {"the same on two slots: apart",
         {{Marker(5), On(0.1, 60), Off(0.4, 60)}, {Marker(6), On(0.2, 60, 100, 3), Off(0.3, 60, 3)}},
         0.0,
         "100 +60/0 v100\n200 +60/3 v100\n300 -60/3\n400 -60/0\n"},
        {"begun before the start: neither on nor off, and it cuts nobody",
         {{Marker(5), On(0.0, 60), Off(0.3, 60), On(0.2, 60, 90), Off(0.4, 60)}},
         0.15,
         "50 +60/0 v90\n250 -60/0\n"},
        {"patches in their place, equal times in their order",
         {{Marker(5), {0.1, 2, PATCH, 7 + 256 * 3, 4}, On(0.1, 60, 100, 2), Off(0.2, 60, 2)}},
         0.0,
         "100 patch 7/2\n100 +60/2 v100\n200 -60/2\n"},
        {"rows that are none",
         {{Marker(5), On(0.1, 999), On(0.1, 60, 100, 40), Off(0.2, 61), {NAN, 0, 60, 100, 0}}},
         0.0,
         ""},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        Stepped_Rig rig;
        rig.Give(item.lists);
        rig.Start(item.start);
        rig.Run_To(600);
        EXPECT_EQ(rig.output.Text(), item.text);
        EXPECT_TRUE(rig.engine.At_End());
        EXPECT_EQ(rig.output.told.size(), rig.output.Sounding_Order().size());
    }
}

TEST(Cue_Engine, Rows_Leave_Ahead_For_The_Synthesizer_And_In_Time_For_A_Port) {
    Stepped_Rig rig;
    auto& [counter, output, engine] = rig;
    const Rows song = {Marker(5), On(0.1, 60), Off(0.2, 60)};
    struct Case {
        bool synth;
        std::int64_t blockNs;
        std::int64_t leavesAtMs; ///< 100 less the lead, and the millisecond that goes along
    };
    for (const Case& item : {Case{true, 0, 89}, Case{true, 20'000'000, 59}, Case{false, 20'000'000, 100}}) {
        engine.Player_Stop();
        engine.Init_SetOutput(item.synth, item.blockNs);
        EXPECT_EQ(output.synth, item.synth);
        rig.Give({song});
        rig.Start();
        const std::int64_t began = counter.Now_Ms();
        const std::size_t before = output.Sounding_Order().size();
        rig.Run_To(began + item.leavesAtMs - 1);
        EXPECT_EQ(output.Sounding_Order().size(), before);
        rig.Run_To(began + item.leavesAtMs);
        EXPECT_EQ(output.Sounding_Order().size(), before + 1);
        EXPECT_EQ(output.Sounding_Order().back().dueNs, (began + 100) * 1'000'000);
        EXPECT_FALSE(engine.At_End());
        rig.Run_To(began + 300);
        EXPECT_TRUE(engine.At_End());
    }
    engine.Player_Stop();
    rig.Start();
    const std::int64_t began = counter.Now_Ms();
    rig.Run_To(began + 99);
    counter.Advance_Ms(2); // late
    rig.Update(0, song, true);
    engine.Step();
    EXPECT_EQ(output.Sounding_Order().back().dueNs, (began + 100) * 1'000'000)
        << "the new list goes on there";
}

TEST(Cue_Engine, What_Changes_While_It_Plays_Acts_At_Once) {
    struct Case {
        const char* name;
        std::function<void(Stepped_Rig& test)> change; ///< at 200 ms, between two steps
        const char* text;
    };
    // List 0 of row 5: 60 from 100 to 500, 62 at 205. List 1 of row 6: 40 on slot 1 from 203 to 300.
    const Rows first = {Marker(5), On(0.1, 60), Off(0.5, 60), On(0.205, 62), Off(0.25, 62)};
    const Rows second = {Marker(6), On(0.203, 40, 50, 1), Off(0.3, 40, 1)};
    const Case cases[] = {
        {"nothing", [](Stepped_Rig&) {},
         "100 +60/0 v100\n203 +40/1 v50\n205 +62/0 v100\n250 -62/0\n300 -40/1\n500 -60/0\n"},
        {"muted", [](Stepped_Rig& test) { test.engine.Channel_SetMute(5, true); },
         "100 +60/0 v100\n200 -60/0\n203 +40/1 v50\n300 -40/1\n"},
        {"muted and not",
         [](Stepped_Rig& test) {
             test.engine.Channel_SetMute(5, true);
             test.engine.Channel_SetMute(5, false);
         },
         "100 +60/0 v100\n200 -60/0\n203 +40/1 v50\n205 +62/0 v100\n250 -62/0\n300 -40/1\n"},
        {"another volume: 100 * 0.555 is cut",
         [](Stepped_Rig& test) { test.engine.Channel_SetVolFactor(5, 0.555F); },
         "100 +60/0 v100\n203 +40/1 v50\n205 +62/0 v55\n250 -62/0\n300 -40/1\n500 -60/0\n"},
        {"too loud", [](Stepped_Rig& test) { test.engine.Channel_SetVolFactor(5, 2.0F); },
         "100 +60/0 v100\n203 +40/1 v50\n205 +62/0 v127\n250 -62/0\n300 -40/1\n500 -60/0\n"},
        {"replaced: sounding notes get their off",
         [](Stepped_Rig& test) {
             test.Update(0, {Marker(5), On(0.1, 60), Off(0.5, 60), On(0.2, 65), Off(0.3, 65)});
         },
         "100 +60/0 v100\n200 -60/0\n200 +65/0 v100\n203 +40/1 v50\n300 -65/0\n300 -40/1\n"},
        {"replaced, with what is the same going on to its new end",
         [](Stepped_Rig& test) {
             test.Update(0, {Marker(5), On(0.1, 60), Off(0.4, 60)}, true);
         },
         "100 +60/0 v100\n203 +40/1 v50\n300 -40/1\n400 -60/0\n"},
        {"replaced, with a new end that has passed",
         [](Stepped_Rig& test) {
             test.Update(0, {Marker(5), On(0.1, 60), Off(0.15, 60)}, true);
         },
         "100 +60/0 v100\n200 -60/0\n203 +40/1 v50\n300 -40/1\n"},
        {"twice as fast from here",
         [](Stepped_Rig& test) { test.engine.clock_SetPars(2.0F, 60, 100, 0, 0.0, {}); },
         "100 +60/0 v100\n201 +40/1 v50\n202 +62/0 v100\n225 -62/0\n250 -40/1\n350 -60/0\n"},
        {"stopped", [](Stepped_Rig& test) { test.engine.Player_Stop(); }, "100 +60/0 v100\n200 -60/0\n"},
        {"a seek",
         [](Stepped_Rig& test) {
             test.engine.Player_Stop();
             test.Start(0.22);
         },
         "100 +60/0 v100\n200 -60/0\n"},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        Stepped_Rig test;
        test.Give({first, second});
        test.Start();
        test.Run_To(199);
        test.counter.Advance_Ms(1);
        item.change(test);
        test.engine.Step();
        test.Run_To(700);
        EXPECT_EQ(test.output.Text(), item.text);
        EXPECT_EQ(test.output.told.size(), test.output.Sounding_Order().size());
    }
}

TEST(Cue_Engine, A_Note_Let_Go_As_Its_Row_Ends_Is_Ended_By_The_Row) {
    for (const bool letGo : {false, true}) {
        Simulated_Counter counter;
        Recording_Cue_Output output;
        Cue_Player player(output, counter, 0);
        player.Set_List_Count(1);
        player.Set_Output(true, 10'000'000);
        player.Set_List(0, Cue_List::Make(Rows{On(0.005, 0), Off(0.2, 0)}));
        player.Set_Clock(1.0F, 0, {{0.0, 0, 60}});
        player.Set_Performer_Slot(0);
        const Cue_Player::Live_Notes held = {1};
        player.Set_Live_Notes(held);
        player.Tell_Live_Notes(letGo ? Cue_Player::Live_Notes{} : held);
        player.Start();
        EXPECT_EQ(player.Advance(), 5'000'000) << "to know in time that the row holds the note";
        counter.Advance_Ms(200);
        player.Advance();
        EXPECT_EQ(output.Text(), letGo ? "5 +0/0 v100\n200 -0/0\n" : "5 +0/0 v100\n");
    }
}

TEST(Cue_Engine, An_Off_Never_Cuts_What_The_Performer_Holds) {
    struct Case {
        const char* name;
        int row; ///< the performer's
        int slot;
        std::int64_t pressMs;
        std::int64_t releaseMs;
        const char* text;
    };
    // 60 on slot 0 from 100 to 200; lead and margin put the off on its way at 190.
    const Case cases[] = {
        {"held", 5, 0, 150, 400, "100 +60/0 v100\n"},
        {"pressed while the off is on its way", 5, 0, 198, 400, "100 +60/0 v100\n"},
        {"let go again before", 5, 0, 150, 198, "100 +60/0 v100\n200 -60/0\n"},
        {"on another slot", 5, 1, 150, 400, "100 +60/0 v100\n200 -60/0\n"},
        {"no performer", -1, 0, 150, 400, "100 +60/0 v100\n200 -60/0\n"},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.name);
        Stepped_Rig rig;
        rig.Give({{Marker(5), On(0.1, 60), Off(0.2, 60)}});
        rig.engine.Player_SetRecChannelI(item.row, item.slot);
        rig.Start();
        CueEngine::Live_Notes held{};
        rig.Run_To(item.pressMs);
        held[60] = 1;
        rig.engine.Player_CopyRecActiveNotes(held);
        rig.Run_To(item.releaseMs);
        held[60] = 0;
        rig.engine.Player_CopyRecActiveNotes(held);
        rig.Run_To(500);
        EXPECT_EQ(rig.output.Text(), item.text);
        EXPECT_TRUE(rig.engine.At_End());
    }
    // Pressed and let go behind the row's end, before the library has looked at the clock again.
    Stepped_Rig rig;
    rig.Give({{Marker(5), On(0.1, 60), Off(0.2, 60)}});
    rig.engine.Player_SetRecChannelI(5, 0);
    rig.Start();
    rig.Run_To(195);
    rig.counter.Advance_Ms(10);
    for (const std::int32_t presses : {1, 0}) {
        CueEngine::Live_Notes held{};
        held[60] = presses;
        rig.engine.Player_CopyRecActiveNotes(held);
    }
    EXPECT_TRUE(rig.engine.Player_TakesOver(0, 60));
    rig.Run_To(300);
    EXPECT_EQ(rig.output.Text(), "100 +60/0 v100\n200 -60/0\n205 -60/0\n");
}

TEST(Cue_Engine, An_Output_Without_Room_Gets_Its_Rows_Later) {
    Stepped_Rig rig;
    rig.Give({{Marker(5), On(0.1, 60), Off(0.2, 60), On(0.3, 62), Off(0.6, 62)}});
    rig.Start();
    rig.Run_To(150);
    rig.output.refuses = true;
    rig.Run_To(320);
    rig.output.refuses = false;
    rig.Run_To(350);
    rig.output.refuses = true;
    rig.engine.Channel_SetMute(5, true);
    rig.Run_To(370);
    rig.output.refuses = false;
    rig.Run_To(700);
    EXPECT_EQ(rig.output.Text(), "100 +60/0 v100\n200 -60/0\n300 +62/0 v100\n350 -62/0\n");
    EXPECT_EQ(rig.output.told.size(), 4U);
}

TEST(Cue_Engine, Takes_Calls_At_Any_Time_And_No_Absurd_Ones) {
    Stepped_Rig rig;
    EXPECT_TRUE(rig.engine.Init_Buffers(-1, 0)) << "a song without channels";
    EXPECT_TRUE(rig.engine.Init_Buffers(CueEngine::MAX_LISTS - 1, 0));
    EXPECT_FALSE(rig.engine.Init_Buffers(CueEngine::MAX_LISTS, 0));
    rig.Give({{Marker(5), On(0.1, 60), Off(0.2, 60)}});
    const Rows other = {Marker(6), On(0.1, 61), Off(0.2, 61)};
    for (const std::int32_t list : {-1, 1, 1000}) {
        rig.engine.AddEvents(list, other.data(), 3);
        rig.Update(list, other);
    }
    rig.engine.Channel_SetMute(77, true);
    rig.engine.Channel_SetVolFactor(5, NAN);
    rig.engine.Channel_SetVolFactor(5, 1.0F);
    rig.engine.Player_SetRecChannelI(5, 99);
    rig.engine.Player_Start(); // without a clock nothing is due
    rig.Run_To(300);
    EXPECT_EQ(rig.output.Text(), "");
    rig.engine.Player_Stop();
    rig.engine.Player_Stop();
    rig.Start(0.0);
    rig.Run_To(900);
    EXPECT_EQ(rig.output.Text(), "400 +60/0 v100\n500 -60/0\n");
    rig.engine.FreeDLL();
    rig.engine.Player_Start();
    EXPECT_TRUE(rig.engine.Player_IsPaused());
    EXPECT_FALSE(rig.engine.Init_Buffers(0, 0));
}

} // namespace
} // namespace tonvex
