#pragma once

#include "platform/sound_door.h"

namespace tonvex {

inline constexpr int PORT_CHANNELS = 16;

/// Status bytes of the MIDI channel messages and the controllers in use.
inline constexpr int STATUS_NOTE_OFF = 128;
inline constexpr int STATUS_NOTE_ON = 144;
inline constexpr int STATUS_CONTROLLER = 176;
inline constexpr int STATUS_PROGRAM = 192;
inline constexpr int CONTROLLER_BANK = 0;
inline constexpr int CONTROLLER_VOLUME = 7;
inline constexpr int CONTROLLER_PAN = 10;
inline constexpr int CONTROLLER_SOUND_OFF = 120;

/// Calls send(status, data1, data2) for each short message that the order makes for a MIDI port. Slots are
/// masked to the port's 16 channels; values are 0 to 127.
template <typename Send>
void Each_Short_Message(Sound_Op op, int slot, int a, int b, const Send& send) {
    const int channel = slot % PORT_CHANNELS;
    switch (op) {
    case Sound_Op::NoteOn:
        send(STATUS_NOTE_ON + channel, a, b);
        break;
    case Sound_Op::NoteOff:
        send(STATUS_NOTE_OFF + channel, a, b);
        break;
    case Sound_Op::Patch:
        send(STATUS_CONTROLLER + channel, CONTROLLER_BANK, b);
        send(STATUS_PROGRAM + channel, a, 0);
        break;
    case Sound_Op::Pan:
        send(STATUS_CONTROLLER + channel, CONTROLLER_PAN, a);
        break;
    case Sound_Op::Volume:
        send(STATUS_CONTROLLER + channel, CONTROLLER_VOLUME, a);
        break;
    case Sound_Op::ChannelNotesOff:
        send(STATUS_CONTROLLER + channel, CONTROLLER_SOUND_OFF, 0);
        break;
    case Sound_Op::AllNotesOff:
        // A port has no message for all channels at once, so each slot sends its own.
        for (int each = 0; each < OUTPUT_SLOTS; ++each)
            send(STATUS_CONTROLLER + each % PORT_CHANNELS, CONTROLLER_SOUND_OFF, 0);
        break;
    }
}

} // namespace tonvex
