#include "project/loudness_meter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace tonvex {

namespace {

constexpr std::size_t STEPS_A_BLOCK = 4;
constexpr double STEPS_A_SECOND = 10.0;
constexpr double ABSOLUTE_GATE = -70.0;
constexpr double RELATIVE_GATE = -10.0;
constexpr double SILENCE = -std::numeric_limits<double>::infinity();

/// Of the mean squares of both weighted sides, summed.
double Loudness_Of(double power) {
    return power > 0.0 ? -0.691 + 10.0 * std::log10(power) : SILENCE;
}

/// Mean of the blocks that are louder than gate; 0 when none is.
double Gated_Mean(const std::vector<double>& blocks, double gate) {
    double sum = 0.0;
    std::size_t count = 0;
    for (const double power : blocks) {
        if (Loudness_Of(power) > gate) {
            sum += power;
            ++count;
        }
    }
    return count == 0 ? 0.0 : sum / static_cast<double>(count);
}

} // namespace

Loudness_Meter::Loudness_Meter(int rate)
    : shelf(Shelf(rate)), highPass(High_Pass(rate)),
      stepFrames(std::max<std::size_t>(static_cast<std::size_t>(std::lround(rate / STEPS_A_SECOND)), 1)) {}

/// The first stage: what a head does to the highs.
Loudness_Meter::Biquad Loudness_Meter::Shelf(double rate) {
    constexpr double CORNER = 1681.974450955533;
    constexpr double GAIN_DB = 3.999843853973347;
    constexpr double QUALITY = 0.7071752369554196;
    const double k = std::tan(std::numbers::pi * CORNER / rate);
    const double high = std::pow(10.0, GAIN_DB / 20.0);
    const double band = std::pow(high, 0.4996667741545416);
    const double a0 = 1.0 + k / QUALITY + k * k;
    return {(high + band * k / QUALITY + k * k) / a0, 2.0 * (k * k - high) / a0,
            (high - band * k / QUALITY + k * k) / a0, 2.0 * (k * k - 1.0) / a0,
            (1.0 - k / QUALITY + k * k) / a0};
}

/// The second stage: the revised low-frequency B curve.
Loudness_Meter::Biquad Loudness_Meter::High_Pass(double rate) {
    constexpr double CORNER = 38.13547087602444;
    constexpr double QUALITY = 0.5003270373238773;
    const double k = std::tan(std::numbers::pi * CORNER / rate);
    const double a0 = 1.0 + k / QUALITY + k * k;
    return {1.0, -2.0, 1.0, 2.0 * (k * k - 1.0) / a0, (1.0 - k / QUALITY + k * k) / a0};
}

void Loudness_Meter::Add(std::span<const float> stereo) {
    for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
        for (std::size_t side = 0; side < 2; ++side) {
            const float sample = stereo[i + side];
            peak = std::max(peak, std::abs(sample));
            const double weighted = highPass.Process(side, shelf.Process(side, static_cast<double>(sample)));
            stepSum += weighted * weighted;
        }
        if (++framesInStep == stepFrames) {
            steps.push_back(stepSum / static_cast<double>(stepFrames));
            stepSum = 0.0;
            framesInStep = 0;
        }
    }
}

double Loudness_Meter::Loudness() const {
    std::vector<double> blocks;
    for (std::size_t i = STEPS_A_BLOCK; i <= steps.size(); ++i) {
        double sum = 0.0;
        for (std::size_t step = i - STEPS_A_BLOCK; step < i; ++step)
            sum += steps[step];
        blocks.push_back(sum / STEPS_A_BLOCK);
    }
    const double ungated = Gated_Mean(blocks, ABSOLUTE_GATE);
    const double relative = Loudness_Of(ungated) + RELATIVE_GATE;
    return Loudness_Of(Gated_Mean(blocks, std::max(relative, ABSOLUTE_GATE)));
}

double Decibels(double amplitude) {
    return amplitude > 0.0 ? 20.0 * std::log10(amplitude) : SILENCE;
}

} // namespace tonvex
