#include "project/loudness_meter.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace tonvex {
namespace {

/// A sine of 997 Hz, for which the weighting was made to give back its level: BS.1770 annex 1 has -3.01 for
/// one at full scale on one side.
std::vector<float> Sine(int rate, double seconds, double leftDb, double rightDb) {
    std::vector<float> stereo;
    for (int i = 0; i < static_cast<int>(seconds * rate); ++i) {
        const double value = std::sin(2.0 * std::numbers::pi * 997.0 * i / rate);
        stereo.push_back(static_cast<float>(value * std::pow(10.0, leftDb / 20.0)));
        stereo.push_back(static_cast<float>(value * std::pow(10.0, rightDb / 20.0)));
    }
    return stereo;
}

TEST(Loudness_Meter, Sines_Measure_What_The_Recommendation_Says) {
    constexpr double OFF = -1000.0;
    struct Part {
        double seconds, leftDb, rightDb;
    };
    struct Row {
        const char* name;
        std::vector<Part> parts;
        double loudness;
    };
    const Row rows[] = {
        {"one side at full scale", {{3.0, 0.0, OFF}}, -3.01},
        {"both sides 3.01 dB louder than one", {{3.0, -20.0, -20.0}}, -20.0},
        // 27 whole blocks and three that end in silence: 10 log10((27 + 0.75 + 0.5 + 0.25) / 30) = -0.22.
        {"silence is gated", {{3.0, -23.0, -23.0}, {6.0, OFF, OFF}}, -23.22},
        // 197 whole blocks and the three that reach over: 10 log10(198.5 / 200) = -0.03.
        {"10 LU below the mean is gated", {{20.0, -20.0, -20.0}, {20.0, -40.0, -40.0}}, -20.03},
        {"5 dB below is not: 10 log10((1 + 0.316) / 2) = -1.8",
         {{20.0, -20.0, -20.0}, {20.0, -25.0, -25.0}},
         -21.82},
    };
    for (const int rate : {44100, 48000, 96000}) {
        for (const Row& row : rows) {
            Loudness_Meter meter(rate);
            for (const Part& part : row.parts)
                meter.Add(Sine(rate, part.seconds, part.leftDb, part.rightDb));
            EXPECT_NEAR(meter.Loudness(), row.loudness, 0.03) << row.name << " at " << rate;
        }
    }
}

TEST(Loudness_Meter, Too_Short_Or_Silent_Has_No_Loudness) {
    Loudness_Meter meter(48000);
    meter.Add(Sine(48000, 0.39, -6.0, -12.0));
    EXPECT_TRUE(std::isinf(meter.Loudness()));
    EXPECT_NEAR(Decibels(static_cast<double>(meter.Peak())), -6.0, 0.01);
    EXPECT_TRUE(std::isinf(Decibels(0.0)));
}

} // namespace
} // namespace tonvex
