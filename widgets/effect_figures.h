#pragma once

#include "platform/effects/effect_settings.h"

#include <utility>
#include <vector>

namespace tonvex {

/// What the picture of an effect shows, in shares of its box: x from left to right, y from below upwards,
/// both 0 to 1.
struct Effect_Figure {
    struct Curve {
        std::vector<std::pair<double, double>> points;
        bool second = false; ///< of the right side, of high frequencies
    };
    struct Tap {
        double x;
        double height; ///< from the middle line: upwards of the left side, downwards (below 0) of the right
    };
    std::vector<Curve> curves;
    std::vector<Tap> taps;
};

/// Reverb: how the room falls, low and high frequencies, over REVERB_SHOWN_MS and 60 dB. Chorus and flanger:
/// the delay of both sides over SWEEP_SHOWN_MS, up to twice the longest delay. Echo: what comes back, over
/// ECHO_SHOWN_MS and ECHO_SHOWN_DB. Distortion: the height that goes out for each that comes in, both -1
/// to 1. values: bounded ones.
Effect_Figure Figure_Of(Effect_Kind kind, const Effect_Values& values);
/// Distortion: its filters over LEAST_TONE_HZ to MOST_TONE_HZ (equal ratios) and LEAST_TONE_DB to
/// MOST_TONE_DB.
Effect_Figure Tone_Of_Distortion(const Effect_Values& values);

inline constexpr double REVERB_SHOWN_MS = 3000.0;
inline constexpr double REVERB_SHOWN_DB = 60.0;
inline constexpr double SWEEP_SHOWN_MS = 2000.0;
inline constexpr double ECHO_SHOWN_MS = 4000.0;
inline constexpr double ECHO_SHOWN_DB = 48.0;
inline constexpr double LEAST_TONE_HZ = 100.0;
inline constexpr double MOST_TONE_HZ = 8000.0;
inline constexpr double LEAST_TONE_DB = -36.0;
inline constexpr double MOST_TONE_DB = 12.0;

} // namespace tonvex
