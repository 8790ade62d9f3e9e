#include "platform/effects/effect_chain.h"
#include "platform/effects/soft_limit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

namespace tonvex {
namespace {

constexpr int RATE = 44100;
using Signal = std::vector<float>;

struct Stereo {
    Signal left;
    Signal right;
};

Effect_Settings With(Effect_Kind kind, const std::vector<std::pair<std::size_t, float>>& changed = {}) {
    Effect_Settings settings;
    const auto n = static_cast<std::size_t>(kind);
    settings.on[n] = true;
    for (const auto& [parameter, value] : changed)
        settings.values[n][parameter] = value;
    return settings;
}

/// The signal through the chain; each piece begins with a call of before, when there is one.
Stereo Through(Effect_Chain& chain, const Stereo& in, const std::function<void(int frame)>& before = {}) {
    Stereo out = in;
    for (std::size_t at = 0; at + EFFECT_PIECE <= out.left.size(); at += EFFECT_PIECE) {
        if (before)
            before(static_cast<int>(at));
        chain.Process(&out.left[at], &out.right[at]);
    }
    return out;
}

Stereo Through(const Effect_Settings& settings, const Stereo& in, int rate = RATE) {
    Effect_Chain chain(rate);
    chain.Set(settings, true);
    return Through(chain, in);
}

std::size_t Whole_Pieces(double seconds, int rate = RATE) {
    return static_cast<std::size_t>(seconds * rate) / EFFECT_PIECE * EFFECT_PIECE;
}

Stereo Click(double seconds, float left, float right, int rate = RATE) {
    Stereo in{Signal(Whole_Pieces(seconds, rate)), Signal(Whole_Pieces(seconds, rate))};
    in.left[0] = left;
    in.right[0] = right;
    return in;
}

Stereo Tone(double seconds, double hz, float level) {
    Stereo in;
    for (std::size_t i = 0; i < Whole_Pieces(seconds); ++i)
        in.left.push_back(level * static_cast<float>(
                                      std::sin(2.0 * std::numbers::pi * hz * static_cast<double>(i) / RATE)));
    in.right = in.left;
    return in;
}

float Peak(const Signal& signal, std::size_t from = 0, std::size_t to = SIZE_MAX) {
    float peak = 0.0F;
    for (std::size_t i = from; i < std::min(to, signal.size()); ++i)
        peak = std::isfinite(signal[i]) ? std::max(peak, std::fabs(signal[i])) : INFINITY;
    return peak;
}

float Largest_Step(const Signal& signal, std::size_t from = 1) {
    float step = 0.0F;
    for (std::size_t i = from; i < signal.size(); ++i)
        step = std::max(step, std::fabs(signal[i] - signal[i - 1]));
    return step;
}

/// Level of one frequency (Goertzel's sum, straight).
double Level_At(const Signal& signal, double hz, std::size_t from) {
    double re = 0.0;
    double im = 0.0;
    for (std::size_t i = from; i < signal.size(); ++i) {
        const double angle = 2.0 * std::numbers::pi * hz * static_cast<double>(i) / RATE;
        re += static_cast<double>(signal[i]) * std::cos(angle);
        im += static_cast<double>(signal[i]) * std::sin(angle);
    }
    return 2.0 * std::hypot(re, im) / static_cast<double>(signal.size() - from);
}

TEST(Effect_Ranges, Keep_Every_Value_Inside) {
    constexpr float NO_NUMBER = std::numeric_limits<float>::quiet_NaN();
    for (const Effect_Kind kind : ALL_EFFECTS) {
        const auto parameters = Parameters_Of(kind);
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            const Effect_Parameter& row = parameters[i];
            SCOPED_TRACE(row.name);
            const auto bounded = [&](float value) {
                Effect_Values values = Neutral_Values(kind);
                values[i] = value;
                return Bounded(kind, values)[i];
            };
            EXPECT_EQ(bounded(row.least), row.least);
            EXPECT_EQ(bounded(row.most), row.most);
            EXPECT_EQ(bounded(row.least - 1.0F), row.least);
            EXPECT_EQ(bounded(INFINITY), row.most);
            EXPECT_EQ(bounded(NO_NUMBER), row.neutral);
        }
    }
}

TEST(Echo, Repeats_At_Its_Delays_Each_The_Feedback_Quieter) {
    for (const int rate : {22050, 44100, 96000}) {
        SCOPED_TRACE(rate);
        const auto out = Through(
            With(Effect_Kind::Echo,
                 {{ECHO_MIX, 40.0F}, {ECHO_FEEDBACK, 50.0F}, {ECHO_LEFT, 100.0F}, {ECHO_RIGHT, 250.0F}}),
            Click(1.2, 0.8F, 0.8F, rate), rate);
        EXPECT_FLOAT_EQ(out.left[0], 0.48F) << "60 % of 0.8";
        float level = 0.32F; // 40 % of 0.8
        for (std::size_t repeat = 1; repeat <= 4; ++repeat, level /= 2.0F) {
            EXPECT_NEAR(out.left[repeat * static_cast<std::size_t>(rate) / 10], level, 1e-6F);
            EXPECT_NEAR(out.right[repeat * static_cast<std::size_t>(rate / 4)], level,
                        rate == 22050 ? 1.0F : 1e-6F);
        }
        EXPECT_EQ(Peak(out.left, 1, static_cast<std::size_t>(rate) / 10), 0.0F) << "nothing between";
    }
}

TEST(Echo, Swaps_Sides_At_Every_Repeat) {
    const auto out = Through(With(Effect_Kind::Echo, {{ECHO_MIX, 100.0F},
                                                      {ECHO_FEEDBACK, 50.0F},
                                                      {ECHO_LEFT, 100.0F},
                                                      {ECHO_RIGHT, 200.0F},
                                                      {ECHO_PAN, 1.0F}}),
                             Click(1.0, 0.8F, 0.0F));
    EXPECT_FLOAT_EQ(out.left[4410], 0.8F);         // left after 100 ms
    EXPECT_FLOAT_EQ(out.right[3 * 4410], 0.4F);    // right 200 ms later
    EXPECT_FLOAT_EQ(out.left[4 * 4410], 0.2F);     // left again
    EXPECT_EQ(Peak(out.right, 0, 3 * 4410), 0.0F); // never both
}

TEST(Reverb, Falls_By_60_dB_Within_Its_Time) {
    for (const int rate : {44100, 96000})
        for (const float timeMs : {300.0F, 1000.0F, 3000.0F}) {
            SCOPED_TRACE(timeMs);
            const auto out =
                Through(With(Effect_Kind::Reverb, {{REVERB_TIME, timeMs}, {REVERB_HIGH_RATIO, 0.9F}}),
                        Click(2.0 * timeMs / 1000.0, 1.0F, 1.0F, rate), rate);
            // Energy left from a moment on (Schroeder): the line between -5 and -35 dB tells the slope.
            std::vector<double> left(out.left.size() + 1, 0.0);
            const std::size_t behindClick = 64;
            for (std::size_t i = out.left.size(); i-- > behindClick;)
                left[i] = left[i + 1] + static_cast<double>(out.left[i] * out.left[i]);
            const auto reaches = [&](double db) {
                std::size_t i = behindClick;
                while (i < left.size() && left[i] > left[behindClick] * std::pow(10.0, db / 10.0))
                    ++i;
                return static_cast<double>(i) * 1000.0 / rate;
            };
            EXPECT_NEAR(2.0 * (reaches(-35.0) - reaches(-5.0)), static_cast<double>(timeMs),
                        0.2 * static_cast<double>(timeMs));
        }
}

TEST(Reverb, Loses_High_Frequencies_Sooner_With_A_Lower_Ratio) {
    const auto highs = [](float ratio) {
        auto in = Tone(0.5, 8000.0, 0.3F);
        in.left.resize(Whole_Pieces(1.0));
        in.right.resize(in.left.size());
        const auto out = Through(With(Effect_Kind::Reverb, {{REVERB_HIGH_RATIO, ratio}}), in);
        return Level_At(out.left, 8000.0, Whole_Pieces(0.7));
    };
    EXPECT_LT(highs(0.1F), 0.1 * highs(0.999F));
}

TEST(Reverb, Mix_And_Input_Gain_Are_Decibels) {
    const auto in = Click(0.5, 1.0F, 1.0F);
    const auto full = Through(With(Effect_Kind::Reverb), in);
    const auto less = Through(With(Effect_Kind::Reverb, {{REVERB_MIX, -20.0F}}), in);
    EXPECT_EQ(full.left[0], 1.0F);
    EXPECT_NEAR(Peak(less.left, 1), 0.1F * Peak(full.left, 1), 1e-5F);
    EXPECT_FLOAT_EQ(Through(With(Effect_Kind::Reverb, {{REVERB_IN_GAIN, -20.0F}}), in).left[0], 0.1F);
    EXPECT_EQ(Peak(Through(With(Effect_Kind::Reverb, {{REVERB_IN_GAIN, -96.0F}}), in).left), 0.0F);
}

TEST(Sweep, Swings_Around_Its_Delay_By_Its_Depth) {
    struct Case {
        Effect_Kind kind;
        float delayMs, depth, waveform;
        double fromMs, toMs;
    };
    for (const Case& row : {Case{Effect_Kind::Chorus, 16.0F, 50.0F, 1.0F, 8.0, 24.0},
                            Case{Effect_Kind::Chorus, 20.0F, 100.0F, 0.0F, 0.05, 40.0},
                            Case{Effect_Kind::Flanger, 4.0F, 25.0F, 0.0F, 3.0, 5.0},
                            Case{Effect_Kind::Flanger, 2.0F, 0.0F, 1.0F, 2.0, 2.0}}) {
        // A slow rise tells the delay: it is how far the output is behind the input.
        Stereo in{Signal(Whole_Pieces(2.5)), Signal(Whole_Pieces(2.5))};
        for (std::size_t i = 0; i < in.left.size(); ++i)
            in.left[i] = in.right[i] = static_cast<float>(i) / static_cast<float>(in.left.size());
        const auto out = Through(With(row.kind, {{SWEEP_MIX, 100.0F},
                                                 {SWEEP_DEPTH, row.depth},
                                                 {SWEEP_FEEDBACK, 0.0F},
                                                 {SWEEP_FREQUENCY, 1.0F},
                                                 {SWEEP_WAVEFORM, row.waveform},
                                                 {SWEEP_DELAY, row.delayMs}}),
                                 in);
        double least = 1e9;
        double most = 0.0;
        for (std::size_t i = 4410; i < in.left.size(); ++i) {
            const double ms = static_cast<double>(in.left[i] - out.left[i]) *
                              static_cast<double>(in.left.size()) * 1000.0 / RATE;
            least = std::min(least, ms);
            most = std::max(most, ms);
        }
        EXPECT_NEAR(least, row.fromMs, 0.15) << row.delayMs;
        EXPECT_NEAR(most, row.toMs, 0.15) << row.delayMs;
    }
}

TEST(Sweep, The_Sides_Swing_Apart_By_The_Phase) {
    Stereo in{Signal(Whole_Pieces(2.0)), Signal(Whole_Pieces(2.0))};
    for (std::size_t i = 0; i < in.left.size(); ++i)
        in.left[i] = in.right[i] = static_cast<float>(i) / static_cast<float>(in.left.size());
    for (const float phase : {0.0F, 2.0F, 4.0F}) {
        const auto out = Through(
            With(Effect_Kind::Chorus,
                 {{SWEEP_MIX, 100.0F}, {SWEEP_FEEDBACK, 0.0F}, {SWEEP_DEPTH, 100.0F}, {SWEEP_PHASE, phase}}),
            in);
        float apart = 0.0F;
        for (std::size_t i = 4410; i < in.left.size(); ++i)
            apart = std::max(apart, std::fabs(out.left[i] - out.right[i]));
        // Half a turn apart the delays differ by up to twice 16 ms.
        const float expected = phase == 2.0F ? 0.0F : 0.032F * RATE / static_cast<float>(in.left.size());
        EXPECT_NEAR(apart, expected, 0.02F * expected + 1e-6F) << phase;
    }
}

TEST(Distortion, Makes_Harmonics_And_Keeps_Its_Level) {
    const auto in = Tone(1.0, 441.0, 0.5F);
    const auto clean = Level_At(in.left, 3 * 441.0, 4410);
    double before = 0.0;
    for (const float edge : {0.0F, 15.0F, 50.0F, 100.0F}) {
        const auto out =
            Through(With(Effect_Kind::Distortion, {{DISTORTION_GAIN, 0.0F}, {DISTORTION_EDGE, edge}}), in);
        const double third = Level_At(out.left, 3 * 441.0, 4410);
        EXPECT_GT(third, before) << "more edge, more harmonics: " << edge;
        EXPECT_LT(Level_At(out.left, 2 * 441.0, 4410), 1e-3) << "both halves alike";
        EXPECT_LE(Peak(out.left), 3.0F);
        before = third;
    }
    EXPECT_GT(before, 100.0 * clean + 0.2);
    const auto soft = Through(With(Effect_Kind::Distortion, {{DISTORTION_GAIN, -40.0F}}), in);
    const auto loud = Through(With(Effect_Kind::Distortion, {{DISTORTION_GAIN, 0.0F}}), in);
    EXPECT_NEAR(Peak(soft.left), 0.01F * Peak(loud.left), 1e-4F);
    const auto dull =
        Through(With(Effect_Kind::Distortion, {{DISTORTION_LOWPASS, 100.0F}}), Tone(0.5, 4000.0, 0.01F));
    EXPECT_LT(Peak(dull.left, 4410),
              0.01F * Peak(Through(With(Effect_Kind::Distortion), Tone(0.5, 4000.0, 0.01F)).left, 4410));
}

TEST(Soft_Limit, Is_The_Mean_Of_Tanh_On_The_Way_To_The_Frame) {
    const auto integral = [](double x) {
        return std::fabs(x) + std::log1p(std::exp(-2.0 * std::fabs(x))) - std::numbers::ln2;
    };
    std::minstd_rand random(1);
    for (const double size : {1e-6, 1e-3, 0.05, 0.2, 1.0, 3.0, 30.0, 500.0, 1e6}) {
        Soft_Limit limit;
        double before = 0.0;
        for (int piece = 0; piece < 50; ++piece) {
            Effect_Piece in;
            for (float& sample : in) // now and then the same twice
                sample = random() % 8 == 0
                             ? static_cast<float>(before)
                             : static_cast<float>(std::uniform_real_distribution(-size, size)(random));
            Effect_Piece out = in;
            limit.Process(out.data());
            for (std::size_t i = 0; i < in.size(); ++i) {
                const double now = static_cast<double>(in[i]);
                const double way = now - before;
                const double mean = std::fabs(way) < 1e-4 ? std::tanh((now + before) / 2.0)
                                                          : (integral(now) - integral(before)) / way;
                ASSERT_NEAR(static_cast<double>(out[i]), mean, 3e-6) << "from " << before << " to " << now;
                before = now;
            }
        }
    }
}

TEST(Effect_Chain, Without_Wet_Sound_Is_Bit_For_Bit_The_Dry_One) {
    const auto in = Tone(0.5, 1000.0, 0.7F);
    EXPECT_EQ(Through(Effect_Settings(), in).left, in.left);
    EXPECT_EQ(Through(With(Effect_Kind::Reverb, {{REVERB_MIX, -96.0F}}), in).left, in.left);
    for (const Effect_Kind kind : {Effect_Kind::Chorus, Effect_Kind::Flanger, Effect_Kind::Echo})
        EXPECT_EQ(Through(With(kind, {{SWEEP_MIX, 0.0F}}), in).right, in.right);
}

Effect_Settings Random_Settings(std::mt19937& random) {
    Effect_Settings settings;
    for (const Effect_Kind kind : ALL_EFFECTS) {
        const auto n = static_cast<std::size_t>(kind);
        settings.on[n] = random() % 3 != 0;
        std::size_t i = 0;
        for (const Effect_Parameter& row : Parameters_Of(kind)) {
            const float share = static_cast<float>(random() % 1001) / 1000.0F;
            const float place = random() % 3 == 0 ? std::round(share) : share; // the ends often
            settings.values[n][i++] = row.least + place * (row.most - row.least);
        }
        settings.values[n] = Bounded(kind, settings.values[n]);
    }
    return settings;
}

TEST(Effect_Chain, Stays_In_Bounds_Whatever_It_Is_Set_To) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> noise(-1.0F, 1.0F);
    for (const int rate : {8000, 44100, 96000}) {
        Effect_Chain chain(rate);
        Stereo in{Signal(Whole_Pieces(10.0)), Signal(Whole_Pieces(10.0))};
        for (std::size_t i = 0; i < in.left.size(); ++i) {
            in.left[i] = i / 20000 % 2 == 0 ? noise(random) : 0.0F;
            in.right[i] = i / 30000 % 2 == 0 ? 1.0F : noise(random);
        }
        const auto out = Through(chain, in, [&](int frame) {
            if (frame % (EFFECT_PIECE * 40) == 0)
                chain.Set(Random_Settings(random), frame % (EFFECT_PIECE * 800) == 0);
        });
        EXPECT_LT(Peak(out.left), 60.0F) << rate;
        EXPECT_LT(Peak(out.right), 60.0F) << rate;
    }
}

TEST(Effect_Chain, Rings_As_Long_As_Something_Can_Be_Heard) {
    for (const Effect_Kind kind : ALL_EFFECTS) {
        SCOPED_TRACE(static_cast<int>(kind));
        Effect_Chain chain(RATE);
        EXPECT_FALSE(chain.Rings());
        chain.Set(With(kind), true);
        EXPECT_FALSE(chain.Is_Off());
        std::size_t lastRing = 0;
        const auto out = Through(chain, Click(20.0, 0.5F, 0.5F), [&](int frame) {
            if (frame == 0 || chain.Rings())
                lastRing = static_cast<std::size_t>(frame) + EFFECT_PIECE;
        });
        EXPECT_LT(lastRing, out.left.size()) << "comes to rest";
        EXPECT_LT(Peak(out.left, lastRing), 1e-5F) << "nothing is cut off";
    }
}

TEST(Effect_Chain, Nothing_Clicks_When_Effects_Change_In_A_Steady_Tone) {
    // A tone of 220 Hz steps by 0.3 * 2 pi 220 / 44100 at most; the effects may add as much a few times over.
    const auto in = Tone(4.0, 220.0, 0.3F);
    const float own = Largest_Step(in.left);
    const std::vector<Effect_Settings> kinds = {
        With(Effect_Kind::Reverb, {{REVERB_MIX, -10.0F}}), With(Effect_Kind::Chorus, {{SWEEP_DELAY, 4.0F}}),
        With(Effect_Kind::Flanger, {{SWEEP_FEEDBACK, 40.0F}, {SWEEP_WAVEFORM, 0.0F}, {SWEEP_PHASE, 4.0F}}),
        With(Effect_Kind::Echo, {{ECHO_LEFT, 123.4F}, {ECHO_RIGHT, 77.0F}, {ECHO_FEEDBACK, 70.0F}}),
        With(Effect_Kind::Distortion,
             {{DISTORTION_EDGE, 0.0F}, {DISTORTION_CENTRE, 400.0F}, {DISTORTION_BANDWIDTH, 100.0F}})};
    for (std::size_t n = 0; n < kinds.size(); ++n) {
        SCOPED_TRACE(n);
        Effect_Chain chain(RATE);
        Effect_Settings plain;
        plain.on = kinds[n].on;
        const std::vector<Effect_Settings> steps = {plain, kinds[n], plain, Effect_Settings(), kinds[n]};
        const auto out = Through(chain, in, [&](int frame) {
            const auto step = static_cast<std::size_t>(frame / (RATE / 2));
            if (frame % (RATE / 2) < EFFECT_PIECE && step >= 1 && step <= steps.size())
                chain.Set(steps[step - 1], false);
        });
        EXPECT_LT(Largest_Step(out.left), 3.0F * own);
        EXPECT_LT(Largest_Step(out.right), 3.0F * own);
    }
}

} // namespace
} // namespace tonvex
