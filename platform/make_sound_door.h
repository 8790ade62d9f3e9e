#pragma once

#include "platform/millisecond_counter.h"
#include "platform/synth_sound_door.h"

#include <memory>

namespace tonvex {

enum class Sound_Driver_Choice {
    Automatic, ///< JACK, then PulseAudio, then ALSA, whichever opens first; the quiet driver when none does
    Quiet      ///< no device is looked for
};

/// The door to the machine's sound. clock is the monotonic clock and outlives the door.
///
/// Automatic obeys the environment variable TONVEX_SOUND: "jack", "pulse" or "alsa" tries that one alone,
/// "quiet" tries none; anything else, and no value, tries all.
std::unique_ptr<Synth_Sound_Door> Make_Sound_Door(const Millisecond_Counter& clock,
                                                  Sound_Driver_Choice choice);

} // namespace tonvex
