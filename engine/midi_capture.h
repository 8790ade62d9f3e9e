#pragma once

#include "platform/sound_door.h"

namespace tonvex {

/// Takes what would leave for the output while a MIDI file is being written. Interface thread.
class Midi_Capture {
public:
    virtual ~Midi_Capture() = default;
    /// Notes, patches, pans and volumes. slot 0 to 31; a and b as of Sound_Message.
    virtual void Take(Sound_Op op, int slot, int a, int b) = 0;
};

} // namespace tonvex
