#include "platform/scripted_midi_ports.h"

namespace tonvex {

Midi_Result Scripted_Midi_Ports::Open_Input(std::int32_t portId) {
    open = portId == PORT_ID;
    return open ? Midi_Result::Ok : Midi_Result::BadDevice;
}

bool Scripted_Midi_Ports::Take_Input(Midi_In_Message& message) {
    if (!open || messages.empty() || messages.front().arrivedNs > counter.Now_Ns())
        return false;
    message = messages.front();
    messages.pop_front();
    return true;
}

} // namespace tonvex
