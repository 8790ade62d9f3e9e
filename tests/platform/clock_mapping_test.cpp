#include "platform/clock_mapping.h"

#include <gtest/gtest.h>

namespace tonvex {
namespace {

constexpr std::int64_t MS = 1'000'000;

/// Callbacks of 441 frames, 10 ms each, late by what lateness says for each number.
template <typename Lateness>
void Call_Back(Clock_Mapping& mapping, int from, int to, Lateness lateness) {
    for (int i = from; i < to; ++i)
        mapping.Observe(7'000 * MS + i * 10 * MS + lateness(i), i * 441);
}

TEST(Clock_Mapping, Follows_The_Least_Late_Callbacks) {
    Clock_Mapping mapping;
    mapping.Start(44100.0);
    EXPECT_EQ(mapping.Frame_At(123), 0) << "nothing observed yet";
    // Most callbacks are late by 1 to 6 ms, one in 33 is on time.
    Call_Back(mapping, 0, 400, [](int i) { return i % 33 == 5 ? 0 : (1 + i % 6) * MS; });
    for (const int ms : {0, 10, 2000, 4000})
        EXPECT_NEAR(static_cast<double>(mapping.Frame_At(7'000 * MS + ms * MS)), ms * 44.1, 1.0) << ms;
}

TEST(Clock_Mapping, One_Stalled_Callback_Moves_Nothing) {
    Clock_Mapping mapping;
    mapping.Start(44100.0);
    Call_Back(mapping, 0, 100, [](int) { return 0; });
    Call_Back(mapping, 100, 101, [](int) { return 9 * MS; });
    Call_Back(mapping, 101, 110, [](int) { return 0; });
    EXPECT_NEAR(static_cast<double>(mapping.Frame_At(8'000 * MS)), 44100.0, 1.0);
}

TEST(Clock_Mapping, Starts_Anew_After_The_Stream_Stood_Still) {
    Clock_Mapping mapping;
    mapping.Start(44100.0);
    Call_Back(mapping, 0, 100, [](int) { return 0; });
    Call_Back(mapping, 100, 125,
              [](int) { return 300 * MS; }); // the device stood for 300 ms and never made it up
    EXPECT_NEAR(static_cast<double>(mapping.Frame_At(8'500 * MS)), 44100.0 + 200 * 44.1, 1.0);
}

TEST(Clock_Mapping, Follows_A_Device_That_Runs_Fast_Or_Slow) {
    for (const int ppm : {-150, 150}) {
        Clock_Mapping mapping;
        mapping.Start(44100.0);
        Call_Back(mapping, 0, 3000, [ppm](int i) { return static_cast<std::int64_t>(i) * 10 * ppm; });
        const std::int64_t lastNs = 7'000 * MS + 2999 * 10 * MS + 2999LL * 10 * ppm;
        // Four seconds of 150 ppm are 0.6 ms, 26 frames.
        EXPECT_NEAR(static_cast<double>(mapping.Frame_At(lastNs)), 2999.0 * 441, 28.0) << ppm;
    }
}

TEST(Clock_Mapping, Fixed_Time_Is_Exact) {
    Clock_Mapping mapping;
    mapping.Start(44100.0);
    mapping.Fix(5 * MS, 0);
    EXPECT_EQ(mapping.Frame_At(5 * MS), 0);
    EXPECT_EQ(mapping.Frame_At(1'005 * MS), 44100);
    EXPECT_EQ(mapping.Frame_At(4 * MS), -45) << "44.1 frames before, cut downward";
}

} // namespace
} // namespace tonvex
