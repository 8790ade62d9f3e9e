#pragma once

#include "platform/sound_door.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>

namespace tonvex::bench {

inline constexpr int RATE = 44100;
inline constexpr int SECONDS = 4;

/// A synthesizer whose time is taken.
struct Timed_Synth {
    virtual ~Timed_Synth() = default;
    virtual void Note_On(int index) = 0;
    virtual int Voices() const = 0;
    /// SECONDS of sound.
    virtual void Render_Seconds() = 0;
};

/// Slots_Synth with a graph that was compiled without its chains of effects.
std::unique_ptr<Timed_Synth> Make_Dry_Synth(const std::filesystem::path& font);

/// Sounds that last: organs, strings, choirs and pads, another on each slot.
inline int Program_Of(int slot) {
    constexpr std::array<int, 8> LASTING = {16, 19, 48, 49, 52, 89, 91, 73};
    return LASTING[static_cast<std::size_t>(slot) % LASTING.size()];
}
inline int Note_Number(int index) {
    return 40 + index * 5 % 37;
}
inline int Slot_Of(int index) {
    const int slot = index % OUTPUT_SLOTS;
    return slot == DRUM_SLOT ? 10 : slot;
}

} // namespace tonvex::bench
