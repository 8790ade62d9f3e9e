#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tonvex {

/// The effects of an output slot, in the order in which files and messages number them.
enum class Effect_Kind : std::uint8_t { Reverb, Chorus, Flanger, Echo, Distortion };
inline constexpr std::size_t EFFECT_KINDS = 5;
inline constexpr std::array<Effect_Kind, EFFECT_KINDS> ALL_EFFECTS = {
    Effect_Kind::Reverb, Effect_Kind::Chorus, Effect_Kind::Flanger, Effect_Kind::Echo,
    Effect_Kind::Distortion};

// The parameters of each kind, in the order of its record.
enum Reverb_Parameter : std::size_t { REVERB_IN_GAIN, REVERB_MIX, REVERB_TIME, REVERB_HIGH_RATIO };
/// Of the chorus and the flanger.
enum Sweep_Parameter : std::size_t {
    SWEEP_MIX,
    SWEEP_DEPTH,
    SWEEP_FEEDBACK,
    SWEEP_FREQUENCY,
    SWEEP_WAVEFORM, ///< 0 triangle, 1 sine
    SWEEP_DELAY,
    SWEEP_PHASE ///< of the right side's sweep against the left's: 0 to 4 for -180, -90, 0, 90, 180 degrees
};
enum Echo_Parameter : std::size_t { ECHO_MIX, ECHO_FEEDBACK, ECHO_LEFT, ECHO_RIGHT, ECHO_PAN };
enum Distortion_Parameter : std::size_t {
    DISTORTION_GAIN,
    DISTORTION_EDGE,
    DISTORTION_CENTRE,
    DISTORTION_BANDWIDTH,
    DISTORTION_LOWPASS
};
inline constexpr std::size_t MOST_PARAMETERS = 7;

/// One parameter: what may stand in it, both ends included.
struct Effect_Parameter {
    const char* name; ///< as shown
    const char* unit; ///< as shown behind the figure; empty when it has none
    float least;
    float most;
    float neutral; ///< of a new effect
    bool whole;    ///< only whole numbers; an integer in the record
};

/// The values of one effect; entries beyond the kind's parameters are 0.
using Effect_Values = std::array<float, MOST_PARAMETERS>;

/// A gain or a mix of this many decibels or less is none at all.
inline constexpr float SILENT_DB = -96.0F;

std::span<const Effect_Parameter> Parameters_Of(Effect_Kind kind) noexcept;
Effect_Values Neutral_Values(Effect_Kind kind) noexcept;
/// Every value in its range: beyond it the nearer end, what is no number the neutral one.
Effect_Values Bounded(Effect_Kind kind, const Effect_Values& values) noexcept;

/// What one output slot is to sound through.
struct Effect_Settings {
    Effect_Settings() noexcept;
    std::array<bool, EFFECT_KINDS> on{};
    std::array<Effect_Values, EFFECT_KINDS> values{};

    bool Is_On(Effect_Kind kind) const noexcept { return on[static_cast<std::size_t>(kind)]; }
    bool Any_On() const noexcept;
    const Effect_Values& Of(Effect_Kind kind) const noexcept {
        return values[static_cast<std::size_t>(kind)];
    }
    bool operator==(const Effect_Settings&) const = default;
};

} // namespace tonvex
