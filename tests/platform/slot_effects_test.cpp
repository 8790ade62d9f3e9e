#include "support/offline_bed.h"
#include "support/onsets.h"

#include <algorithm>

namespace tonvex {
namespace {

constexpr int RATE = 44100;

Effect_Settings Echo_Of(float ms, float feedback = 0.0F) {
    Effect_Settings settings;
    settings.on[static_cast<std::size_t>(Effect_Kind::Echo)] = true;
    settings.values[static_cast<std::size_t>(Effect_Kind::Echo)] = {50.0F, feedback, ms, ms, 0.0F};
    return settings;
}

struct Slot_Effects : Offline_Bed {
    Slot_Effects() {
        test::Write_Click_Font(folder / "clicks.sf2", {{"Click", 0, 0, 30000}, {"Held", 0, 2, 20000, true}});
        door.Set_Fonts({folder / "clicks.sf2"});
        Open();
    }
    void Strike(int slot) { door.Post(Note(clock.Now_Ns(), slot)); }
    /// Onsets of one click in the slot, within the time.
    std::vector<std::int64_t> Clicks(int slot, int ms) {
        samples.clear();
        Strike(slot);
        Run_Ms(ms);
        return test::Onsets(samples);
    }
};

TEST_F(Slot_Effects, Are_Each_Slots_Own_And_Sound_On_After_The_Note) {
    door.Set_Effects(3, Echo_Of(200.0F));
    door.Set_Effects(4, Echo_Of(90.0F, 10.0F));
    const auto third = Clicks(3, 500);
    ASSERT_EQ(third.size(), 2U);
    EXPECT_NEAR(static_cast<double>(third[1] - third[0]), 0.2 * RATE, 1.0);
    EXPECT_EQ(Clicks(5, 500).size(), 1U);
    const auto fourth = Clicks(4, 500);
    ASSERT_GE(fourth.size(), 2U);
    EXPECT_NEAR(static_cast<double>(fourth[1] - fourth[0]), 0.09 * RATE, 1.0);
    door.Set_Effects(3, Effect_Settings());
    EXPECT_EQ(Clicks(3, 500).size(), 1U);
    door.Set_Effects(32, Echo_Of(10.0F)); // passed over, as is
    door.Set_Effects(-1, Echo_Of(10.0F));
}

TEST_F(Slot_Effects, A_Tail_Is_Rendered_To_Its_End) {
    door.Set_Effects(0, Echo_Of(500.0F, 50.0F));
    Strike(0);
    Run_Ms(10);
    door.Render_Tail(60.0, keep);
    // Halved every 500 ms from 0.2 on: below 1e-6 after some 18 repeats, 9 s.
    EXPECT_GT(samples.size() / 2, std::size_t{8 * RATE});
    EXPECT_LT(samples.size() / 2, std::size_t{12 * RATE});
    // The first repeat is as loud as the dry click beside it; each further one has half of that.
    std::size_t heard = 1;
    for (float level = *std::max_element(samples.begin(), samples.end()); level > 1e-3F; level /= 2.0F)
        ++heard;
    EXPECT_EQ(test::Onsets(samples, 1e-3F).size(), heard);
}

TEST_F(Slot_Effects, Hold_Over_Closing_And_Forget_What_They_Heard) {
    door.Set_Effects(0, Echo_Of(200.0F, 90.0F));
    EXPECT_EQ(Clicks(0, 300).size(), 2U);
    door.Close();
    door.Set_Effects(7, Echo_Of(100.0F));
    Open();
    Run_Ms(500);
    EXPECT_TRUE(test::Onsets(samples, 1e-6F).empty()) << "no repeat of what was before";
    EXPECT_EQ(Clicks(7, 300).size(), 2U);
    EXPECT_EQ(Clicks(0, 300).size(), 2U);
}

TEST_F(Slot_Effects, Other_Fonts_Let_A_Tail_Ring_On) {
    door.Set_Effects(0, Echo_Of(100.0F, 60.0F));
    samples.clear();
    Strike(0);
    Run_Ms(250);
    door.Set_Fonts({folder / "clicks.sf2"});
    Run_Ms(250);
    EXPECT_EQ(test::Onsets(samples).size(), 5U) << "at 0, 100, 200, 300 and 400 ms";
}

} // namespace
} // namespace tonvex
