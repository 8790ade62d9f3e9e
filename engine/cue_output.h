#pragma once

#include "platform/sound_door.h"

#include <cstdint>

namespace tonvex {

/// Where the player library's messages go. Called on the player's thread alone, or on the interface thread
/// when the library is stepped. No call waits.
class Cue_Output {
public:
    virtual ~Cue_Output() = default;
    /// The synthesizer (true) or the MIDI port.
    virtual void Use(bool synth) noexcept = 0;
    /// Messages come in order, ahead of their dueNs by no more than the lead that the library was given.
    /// False when there is no room now: the message is given again.
    virtual bool Send(const Sound_Message& message) noexcept = 0;
    /// What was sent and is due at fromNs or later must not sound. False when that cannot be done now; it
    /// then sounds.
    virtual bool Take_Back(std::int64_t fromNs) noexcept = 0;
    /// The moment of a message that was sent has come; it can no longer be taken back.
    virtual void Sounded(const Sound_Message& message) noexcept = 0;
};

} // namespace tonvex
