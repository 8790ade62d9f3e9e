#include "platform/effects/distortion.h"

#include <numbers>
#include <utility>

namespace tonvex {

namespace {

constexpr double RAMP_MS = 20.0;
constexpr double GLIDE_MS = 30.0;
constexpr double MEMORY_MS = 50.0; ///< the narrowest band (100 Hz) has rung out
/// Drive in dB without and with full edge.
constexpr float LEAST_DRIVE = 6.0F;
constexpr float MOST_DRIVE = 54.0F;
constexpr float BUTTERWORTH = 1.41421356F;

} // namespace

float Distortion::Drive_Of(float edge) noexcept {
    return Gain_Of_Db(LEAST_DRIVE + edge / 100.0F * (MOST_DRIVE - LEAST_DRIVE));
}

// With g the warped frequency and k the damping, high = (in - (g + k) first - second) / (1 + g (g + k)),
// band = g high + first, low = g band + second, and each state grows by twice its step.
Distortion::Filter::Setting::Setting(float warped, float damping) noexcept {
    const float sum = warped + damping;
    const float inverse = 1.0F / (1.0F + warped * sum);
    firstOfIn = 2.0F * warped * inverse;
    firstOfFirst = 1.0F - firstOfIn * sum;
    firstOfSecond = -firstOfIn;
    secondOfIn = warped * firstOfIn;
    secondOfFirst = 2.0F * warped - secondOfIn * sum;
    secondOfSecond = 1.0F - secondOfIn;
}

Distortion::Distortion(int rate) : Effect_Processor(rate) {
    Set_Memory(Frames(MEMORY_MS));
}

float Distortion::Warped(float hz) const noexcept {
    const double bounded = std::min(static_cast<double>(hz), 0.45 * sampleRate);
    return static_cast<float>(std::tan(std::numbers::pi * bounded / sampleRate));
}

void Distortion::Set(const Effect_Values& values, bool atOnce) noexcept {
    const int frames = atOnce ? 0 : Frames(RAMP_MS);
    gain.Move(Gain_Of_Db(values[DISTORTION_GAIN]), frames);
    drive.Move(Drive_Of(values[DISTORTION_EDGE]), frames);
    lowpass.Aim(Warped(values[DISTORTION_LOWPASS]), atOnce);
    centre.Aim(Warped(values[DISTORTION_CENTRE]), atOnce);
    bandwidth.Aim(values[DISTORTION_BANDWIDTH] / values[DISTORTION_CENTRE], atOnce);
}

void Distortion::Process(float* left, float* right) noexcept {
    const float share = Share(GLIDE_MS);
    lowpass.Step(share);
    centre.Step(share);
    bandwidth.Step(share);
    const Filter::Setting before(lowpass.Now(), BUTTERWORTH);
    const Filter::Setting behind(centre.Now(), bandwidth.Now());
    const float width = bandwidth.Now();
    const auto drives = drive.Next_Ones<EFFECT_PIECE>();
    const auto gains = gain.Next_Ones<EFFECT_PIECE>();
    const float peak = std::max(Peak_Of(left), Peak_Of(right));
    // The filters' states stay in registers: left and right could lie over those of the sides.
    std::array<Filter, 2> filters = {sides[0].before, sides[1].before};
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
        left[i] = drives[i] * filters[0].Pass(left[i], before).low;
        right[i] = drives[i] * filters[1].Pass(right[i], before).low;
    }
    sides[0].before = std::exchange(filters[0], sides[0].behind);
    sides[1].before = std::exchange(filters[1], sides[1].behind);
    sides[0].limit.Process(left);
    sides[1].limit.Process(right);
    for (std::size_t i = 0; i < EFFECT_PIECE; ++i) {
        left[i] = gains[i] * (left[i] + width * filters[0].Pass(left[i], behind).band);
        right[i] = gains[i] * (right[i] + width * filters[1].Pass(right[i], behind).band);
    }
    sides[0].behind = filters[0];
    sides[1].behind = filters[1];
    Note_Memory(peak);
}

void Distortion::Clear() noexcept {
    sides = {};
    Memory_Is_Empty();
}

} // namespace tonvex
