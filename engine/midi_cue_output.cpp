#include "engine/midi_cue_output.h"

#include "engine/short_messages.h"

namespace tonvex {

Midi_Cue_Output::Midi_Cue_Output(Sound_Door& soundDoor, Midi_Ports_Door& portsDoor)
    : sound(soundDoor), ports(portsDoor) {}

bool Midi_Cue_Output::Send(const Sound_Message& message) noexcept {
    if (useSynth)
        return sound.Post_From_Player(message);
    if (message.op == Sound_Op::Patch && message.slot >= PORT_CHANNELS)
        return true; // it would change the patch of the channel that the slot is masked to
    Each_Short_Message(message.op, message.slot, message.a, message.b,
                       [this](int status, int data1, int data2) {
                           ports.Send(static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                                      static_cast<std::uint8_t>(data2));
                       });
    return true;
}

bool Midi_Cue_Output::Take_Back(std::int64_t fromNs) noexcept {
    // What went to a port went at its moment.
    return useSynth && sound.Take_Back_From_Player(fromNs);
}

void Midi_Cue_Output::Sounded(const Sound_Message& message) noexcept {
    if (onSounded)
        onSounded(message);
}

} // namespace tonvex
