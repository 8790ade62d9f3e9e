#include "platform/effects/distortion.h"

#include <numbers>

namespace tonvex {

namespace {

constexpr double RAMP_MS = 20.0;
constexpr double GLIDE_MS = 30.0;
constexpr double MEMORY_MS = 50.0; ///< the narrowest band (100 Hz) has rung out
/// Drive in dB without and with full edge.
constexpr float LEAST_DRIVE = 6.0F;
constexpr float MOST_DRIVE = 54.0F;
constexpr float BUTTERWORTH = 1.41421356F;
/// Frames closer together than this are taken as one by the shaper.
constexpr double TOO_CLOSE = 1e-5;

/// The integral of tanh, exact for large values too. Only differences of it are looked at, so log1p, which is
/// slower, would bring nothing.
double Log_Cosh(double x) noexcept {
    const double size = std::fabs(x);
    return size + std::log(1.0 + std::exp(-2.0 * size)) - std::numbers::ln2;
}

} // namespace

float Distortion::Drive_Of(float edge) noexcept {
    return Gain_Of_Db(LEAST_DRIVE + edge / 100.0F * (MOST_DRIVE - LEAST_DRIVE));
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

float Distortion::Side::Pass(float in, const Filter::Setting& cut, const Filter::Setting& peak, float width,
                             float factor) noexcept {
    float low = 0.0F;
    float band = 0.0F;
    before.Pass(in, cut, low, band);
    const double x = static_cast<double>(low) * static_cast<double>(factor);
    const double integralNow = Log_Cosh(x);
    const double way = x - driven;
    const double shaped =
        std::fabs(way) < TOO_CLOSE ? std::tanh(0.5 * (x + driven)) : (integralNow - integral) / way;
    driven = x;
    integral = integralNow;
    const auto out = static_cast<float>(shaped);
    behind.Pass(out, peak, low, band);
    return out + width * band;
}

void Distortion::Process(float* left, float* right) noexcept {
    const float share = Share(GLIDE_MS);
    lowpass.Step(share);
    centre.Step(share);
    bandwidth.Step(share);
    const Filter::Setting before(lowpass.Now(), BUTTERWORTH);
    const Filter::Setting behind(centre.Now(), bandwidth.Now());
    const float width = bandwidth.Now();
    float peak = 0.0F;
    for (int i = 0; i < EFFECT_PIECE; ++i) {
        const float driveNow = drive.Next();
        const float gainNow = gain.Next();
        peak = std::max({peak, std::fabs(left[i]), std::fabs(right[i])});
        left[i] = gainNow * sides[0].Pass(left[i], before, behind, width, driveNow);
        right[i] = gainNow * sides[1].Pass(right[i], before, behind, width, driveNow);
    }
    Note_Memory(peak);
}

void Distortion::Clear() noexcept {
    sides = {};
    Memory_Is_Empty();
}

} // namespace tonvex
