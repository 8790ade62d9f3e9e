#include "support/offline_bed.h"
#include "support/onsets.h"

#include <limits>

namespace tonvex {
namespace {

constexpr std::int64_t MS = 1'000'000;

/// An open door with a font of clicks at programs 0 and 1, a held level at 2, and the same for drums.
class Offline_Door : public Offline_Bed {
protected:
    explicit Offline_Door(int blockFrames = 256) : Offline_Bed(blockFrames) {
        test::Write_Click_Font(folder / "clicks.sf2", {{"Loud", 0, 0, 30000},
                                                       {"Soft", 0, 1, 10000},
                                                       {"Held", 0, 2, 20000, true},
                                                       {"Kit", 128, 0, 20000},
                                                       {"Held kit", 128, 2, 20000, true}});
        EXPECT_EQ(door.Set_Fonts({folder / "clicks.sf2"}).front(), 1);
        Open();
    }
    /// Highest sample of one click at the present settings.
    float Click_Level(int slot = 0) {
        Run_Ms(20); // a volume just set has moved by then
        door.Status();
        door.Post(Note(clock.Now_Ns(), slot));
        Run_Ms(100);
        return door.Status().peakLeft;
    }
};

class Offline_Blocks : public Offline_Door, public ::testing::WithParamInterface<int> {
protected:
    Offline_Blocks() : Offline_Door(GetParam()) {}
};

TEST_P(Offline_Blocks, Sound_One_Block_After_Their_Moment_Live_And_Ahead) {
    std::vector<std::int64_t> dues;
    for (int i = 0; i < 40; ++i) {
        clock.Advance_Ms(1);
        const std::int64_t liveNs = clock.Now_Ns() - (i % 7) * 137'013; // arrived within this millisecond
        dues.push_back(liveNs);
        door.Post(Note(liveNs));
        dues.push_back(liveNs + 20 * MS + i * 31'007); // a row sent ahead of its time
        door.Post_From_Player(Note(dues.back()));
        Run_Ms(43 + i % 3);
    }
    Run_Ms(100);
    const auto onsets = test::Onsets(samples);
    ASSERT_EQ(onsets.size(), dues.size());
    for (std::size_t i = 0; i < dues.size(); ++i) {
        const double late = static_cast<double>(onsets[i]) - static_cast<double>(dues[i]) * 44.1e-6;
        EXPECT_GT(late, door.Latency_Frames() - 64.0) << "note " << i; // the grid of 64
        EXPECT_LT(late, door.Latency_Frames() + 6.0) << "note " << i;  // the click's own rise
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, Offline_Blocks, ::testing::Values(64, 100, 256, 1024));

TEST_F(Offline_Door, Each_Slot_Sounds_In_Its_Own_Pair) {
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot) {
        door.Post(Note(clock.Now_Ns(), slot));
        Run_Ms(60);
        for (int other = 0; other < OUTPUT_SLOTS; ++other) {
            const float peak = door.Slot_Peak(other);
            EXPECT_EQ(peak > 0.0F, other == slot) << "note in " << slot << ", heard in " << other;
        }
    }
    EXPECT_EQ(door.Slot_Peak(-1) + door.Slot_Peak(32), 0.0F);
}

TEST_F(Offline_Door, Rows_Of_The_Player_Can_Be_Taken_Back) {
    for (const int ms : {50, 100, 150, 250})
        door.Post_From_Player(Note(ms * MS));
    door.Post(Note(200 * MS)); // a live key is not the player's
    Run_Ms(80);                // the first has sounded
    EXPECT_TRUE(door.Take_Back_From_Player(150 * MS));
    door.Post_From_Player(Note(300 * MS));
    Run_Ms(400);
    const auto onsets = test::Onsets(samples);
    ASSERT_EQ(onsets.size(), 4U);
    const int expectedMs[] = {50, 100, 200, 300};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(static_cast<double>(onsets[i]), expectedMs[i] * 44.1 + 256, 68.0) << i;
}

TEST_F(Offline_Door, A_Full_Queue_Refuses_Counts_And_Works_Again) {
    int refused = 0;
    for (std::size_t i = 0; i < Sound_Core::QUEUE_CAPACITY + 100; ++i)
        refused += door.Post(Message(Sound_Op::Pan, 3, 64, 0, 0)) ? 0 : 1;
    EXPECT_EQ(refused, 100);
    EXPECT_TRUE(door.Post_From_Player(Note(0))) << "the player has a queue of its own";
    EXPECT_EQ(door.Status().droppedMessages, 100U);
    Run_Ms(50);
    EXPECT_TRUE(door.Post(Note(clock.Now_Ns())));
    Run_Ms(50);
    EXPECT_EQ(test::Onsets(samples).size(), 2U);
}

TEST_F(Offline_Door, Equal_Moments_Keep_Their_Order) {
    const float loud = Click_Level();
    const std::int64_t due = clock.Now_Ns() + 30 * MS;
    for (int i = 0; i < 21; ++i) // ends with the soft one
        door.Post(Message(Sound_Op::Patch, 0, (i + 1) % 2, 0, due));
    door.Post(Note(due));
    door.Post(Message(Sound_Op::Patch, 0, 0, 0, due));
    Run_Ms(200);
    EXPECT_NEAR(door.Status().peakLeft, loud / 3, loud * 0.02F);
    EXPECT_NEAR(Click_Level(), loud, loud * 0.02F);
}

TEST_F(Offline_Door, Levels_Follow_Volume_Pan_Master_And_Amplification) {
    const float full = Click_Level();
    ASSERT_GT(full, 0.05F);
    door.Set_Master_Volume(64);
    EXPECT_EQ(door.Master_Volume(), 64);
    EXPECT_NEAR(Click_Level() / full, 64.0 * 64.0 / (127.0 * 127.0), 0.01);
    door.Set_Master_Volume(500);
    EXPECT_EQ(door.Master_Volume(), 127);
    door.Set_Amplification(2.5F);
    EXPECT_NEAR(Click_Level() / full, 2.5, 0.02);
    door.Set_Amplification(std::numeric_limits<float>::quiet_NaN());
    EXPECT_NEAR(Click_Level() / full, 1.0, 0.02);
    door.Set_Master_Volume(0);
    EXPECT_EQ(Click_Level(), 0.0F);
    door.Set_Master_Volume(127);
    door.Post(Message(Sound_Op::Volume, 0, 0, 0, 0));
    EXPECT_LT(Click_Level(), full * 0.01F);
    door.Post(Message(Sound_Op::Volume, 0, 255, 0, 0)); // brought down to 127, which is above the first 100
    door.Post(Message(Sound_Op::Pan, 0, 127, 0, 0));
    Click_Level(); // the synthesizer moves a voice from the pan of its last note
    EXPECT_LT(Click_Level(), full * 0.04F) << "left is next to silent when the slot is panned to the right";
    EXPECT_GT(Click_Level(1), full * 0.9F) << "the other slots are as they were";
}

TEST_F(Offline_Door, An_Off_Ends_A_Note_A_Slot_Or_All) {
    const auto Sounding = [this] {
        std::vector<int> slots;
        Run_Ms(100);
        for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
            door.Slot_Peak(slot);
        Run_Ms(50);
        for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
            if (door.Slot_Peak(slot) > 0.0F)
                slots.push_back(slot);
        return slots;
    };
    for (const int slot : {0, 3, 9, 31}) {
        door.Post(Message(Sound_Op::Patch, slot, 2, 0, 0));
        door.Post(Note(0, slot));
    }
    door.Post(Note(0, 40)); // a slot that does not exist
    EXPECT_EQ(Sounding(), (std::vector<int>{0, 3, 9, 31}));
    door.Post(Message(Sound_Op::NoteOff, 3, 61, 0, 0)); // another note
    EXPECT_EQ(Sounding().size(), 4U);
    door.Post(Message(Sound_Op::NoteOff, 3, 60, 0, 0));
    EXPECT_EQ(Sounding(), (std::vector<int>{0, 9, 31}));
    door.Post(Message(Sound_Op::ChannelNotesOff, 31, 0, 0, 0));
    EXPECT_EQ(Sounding(), (std::vector<int>{0, 9}));
    door.Post(Message(Sound_Op::NoteOn, 0, 60, 0, 0)); // velocity 0 is an off
    EXPECT_EQ(Sounding(), (std::vector<int>{9}));
    door.Post(Message(Sound_Op::AllNotesOff, 200, 0, 0, 0));
    EXPECT_TRUE(Sounding().empty());
}

TEST_F(Offline_Door, The_Tail_Ends_With_The_Last_Voice_Or_At_Its_Limit) {
    door.Post(Note(300 * MS));
    door.Render_Tail(8.0, keep);
    ASSERT_EQ(test::Onsets(samples).size(), 1U);
    EXPECT_LT(door.Frames_Rendered(), 44100);
    const std::int64_t before = door.Frames_Rendered();
    door.Post(Note(3'600'000 * MS));
    door.Render_Tail(0.5, {});
    EXPECT_NEAR(static_cast<double>(door.Frames_Rendered() - before), 22050.0, 256.0);
}

TEST_F(Offline_Door, While_Closed_Notes_Are_Refused_And_Settings_Kept) {
    const float full = Click_Level();
    door.Post(Message(Sound_Op::Patch, 5, 2, 0, 0));
    door.Post(Note(0, 5)); // is held
    Run_Ms(50);
    door.Post_From_Player(Note(clock.Now_Ns() + 20 * MS, 6)); // is under way
    door.Close();
    EXPECT_FALSE(door.Post(Note(0)));
    EXPECT_TRUE(door.Post(Message(Sound_Op::Patch, 0, 1, 0, 0)));
    EXPECT_FALSE(door.Status().open);
    std::string error;
    ASSERT_TRUE(door.Open({}, error)) << error;
    Run_Ms(100);
    EXPECT_EQ(door.Slot_Peak(5), 0.0F) << "the note before is over";
    EXPECT_EQ(door.Slot_Peak(6), 0.0F) << "the row before is dropped";
    EXPECT_NEAR(Click_Level() / full, 1.0 / 3.0, 0.02);
}

} // namespace
} // namespace tonvex
