#include "widgets/effect_figures.h"

#include "platform/effects/distortion.h"
#include "platform/effects/sweep.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>

namespace tonvex {

namespace {

constexpr int CURVE_POINTS = 240;
/// Echoes a millisecond apart would otherwise be thousands.
constexpr std::size_t MOST_TAPS = 400;

double Share(double db, double range) {
    return std::clamp(1.0 + db / range, 0.0, 1.0);
}

double Db_Of(double level) {
    return level > 0.0 ? 20.0 * std::log10(level) : -1000.0;
}

Effect_Figure Reverb_Figure(const Effect_Values& values) {
    Effect_Figure figure;
    const double dry = Share(static_cast<double>(values[REVERB_IN_GAIN]), REVERB_SHOWN_DB);
    if (dry > 0.0)
        figure.taps.push_back({0.0, dry});
    const double start = Share(static_cast<double>(values[REVERB_MIX]), REVERB_SHOWN_DB);
    if (start <= 0.0)
        return figure;
    const auto timeMs = static_cast<double>(values[REVERB_TIME]);
    const double highMs = timeMs * static_cast<double>(values[REVERB_HIGH_RATIO]);
    // Its time is that of a fall by 60 dB, the whole height.
    figure.curves.push_back({{{0.0, start}, {start * timeMs / REVERB_SHOWN_MS, 0.0}}, false});
    figure.curves.push_back({{{0.0, start}, {start * highMs / REVERB_SHOWN_MS, 0.0}}, true});
    return figure;
}

Effect_Figure Sweep_Figure(const Effect_Values& values, double longestMs) {
    const auto delay = static_cast<double>(values[SWEEP_DELAY]);
    const double depth = static_cast<double>(values[SWEEP_DEPTH]) / 100.0;
    const auto roundness = static_cast<double>(values[SWEEP_WAVEFORM]);
    const double ahead = (static_cast<double>(values[SWEEP_PHASE]) - 2.0) / 4.0;
    const double turns = static_cast<double>(values[SWEEP_FREQUENCY]) * SWEEP_SHOWN_MS / 1000.0;
    Effect_Figure figure;
    for (const bool right : {true, false}) { // the left one in front
        Effect_Figure::Curve curve;
        curve.second = right;
        for (int i = 0; i <= CURVE_POINTS; ++i) {
            const double x = static_cast<double>(i) / CURVE_POINTS;
            const double wave =
                static_cast<double>(Sweep::Wave(x * turns + (right ? ahead : 0.0), roundness));
            curve.points.emplace_back(x, delay * (1.0 + depth * wave) / (2.0 * longestMs));
        }
        figure.curves.push_back(std::move(curve));
    }
    return figure;
}

Effect_Figure Echo_Figure(const Effect_Values& values) {
    Effect_Figure figure;
    const double wet = static_cast<double>(values[ECHO_MIX]) / 100.0;
    const double feedback = static_cast<double>(values[ECHO_FEEDBACK]) / 100.0;
    const bool swapped = values[ECHO_PAN] > 0.5F;
    const double delays[] = {static_cast<double>(values[ECHO_LEFT]), static_cast<double>(values[ECHO_RIGHT])};
    const auto add = [&figure](bool right, double ms, double level) {
        const double height = Share(Db_Of(level), ECHO_SHOWN_DB);
        if (height <= 0.0 || ms > ECHO_SHOWN_MS || figure.taps.size() >= MOST_TAPS)
            return false;
        figure.taps.push_back({ms / ECHO_SHOWN_MS, right ? -height : height});
        return true;
    };
    for (const bool begun : {false, true}) {
        (void)add(begun, 0.0, 1.0 - wet);
        bool right = begun;
        double ms = delays[right ? 1 : 0];
        for (double level = wet; add(right, ms, level); level *= feedback) {
            right = right != swapped;
            ms += delays[right ? 1 : 0];
        }
    }
    return figure;
}

Effect_Figure Distortion_Figure(const Effect_Values& values) {
    const auto drive = static_cast<double>(Distortion::Drive_Of(values[DISTORTION_EDGE]));
    Effect_Figure figure;
    Effect_Figure::Curve curve;
    for (int i = 0; i <= CURVE_POINTS; ++i) {
        const double x = static_cast<double>(i) / CURVE_POINTS;
        curve.points.emplace_back(x, 0.5 + 0.5 * std::tanh(drive * (2.0 * x - 1.0)));
    }
    figure.curves.push_back(std::move(curve));
    return figure;
}

} // namespace

Effect_Figure Figure_Of(Effect_Kind kind, const Effect_Values& values) {
    switch (kind) {
    case Effect_Kind::Reverb:
        return Reverb_Figure(values);
    case Effect_Kind::Chorus:
    case Effect_Kind::Flanger:
        return Sweep_Figure(values, static_cast<double>(Parameters_Of(kind)[SWEEP_DELAY].most));
    case Effect_Kind::Echo:
        return Echo_Figure(values);
    case Effect_Kind::Distortion:
        break;
    }
    return Distortion_Figure(values);
}

Effect_Figure Tone_Of_Distortion(const Effect_Values& values) {
    const auto centre = static_cast<double>(values[DISTORTION_CENTRE]);
    const auto lowpass = static_cast<double>(values[DISTORTION_LOWPASS]);
    const double damping = static_cast<double>(values[DISTORTION_BANDWIDTH]) / centre;
    Effect_Figure figure;
    Effect_Figure::Curve curve;
    for (int i = 0; i <= CURVE_POINTS; ++i) {
        const double x = static_cast<double>(i) / CURVE_POINTS;
        const double hz = LEAST_TONE_HZ * std::pow(MOST_TONE_HZ / LEAST_TONE_HZ, x);
        // Two poles of Butterworth's; the signal and its band, whose height at the centre is 1.
        const double before = 1.0 / std::sqrt(1.0 + std::pow(hz / lowpass, 4.0));
        const std::complex<double> s(0.0, hz / centre);
        const double behind = std::abs(1.0 + damping * s / (s * s + damping * s + 1.0));
        const double db = Db_Of(before * behind);
        curve.points.emplace_back(
            x, std::clamp((db - LEAST_TONE_DB) / (MOST_TONE_DB - LEAST_TONE_DB), 0.0, 1.0));
    }
    figure.curves.push_back(std::move(curve));
    return figure;
}

} // namespace tonvex
