#pragma once

#include "platform/midi_ports.h"
#include "platform/millisecond_counter.h"

#include <memory>

namespace tonvex {

/// MIDI ports of the ALSA sequencer and of JACK, as far as they are there. Besides the machine's ports each
/// list ends with a port of our own that patch bays can connect: "Tonvex virtual input" and "Tonvex virtual
/// output". Interface thread; messages come in on the driver's thread, which stamps and queues them, and go
/// out on a sender's thread, so that no call waits for a port.
class RtMidi_Ports final : public Midi_Ports_Door {
public:
    explicit RtMidi_Ports(const Millisecond_Counter& counter);
    ~RtMidi_Ports() override;

    std::vector<Midi_Port> Input_Ports() override;
    std::vector<Midi_Port> Output_Ports() override;
    Midi_Result Open_Input(std::int32_t portId) override;
    void Close_Input() override;
    bool Take_Input(Midi_In_Message& message) override;
    std::uint64_t Dropped_Inputs() const override;
    Midi_Result Open_Output(std::int32_t portId) override;
    void Close_Output() override;
    void Send(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override;
    /// Looks through the ports, in about 0.2 ms; without a JACK server one is looked for every 2 s, in 3 ms.
    bool Ports_Changed() override;
    bool Input_Alive() override;
    bool Output_Alive() override;

private:
    struct Parts;
    std::unique_ptr<Parts> parts;
};

} // namespace tonvex
