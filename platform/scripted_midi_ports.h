#pragma once

#include "platform/midi_ports.h"
#include "platform/millisecond_counter.h"

#include <deque>

namespace tonvex {

/// One input port that plays a script: a message arrives once the counter has reached its moment.
/// No outputs; what is sent goes nowhere. Interface thread.
class Scripted_Midi_Ports final : public Midi_Ports_Door {
public:
    static constexpr std::int32_t PORT_ID = 0;

    /// counter outlives the ports.
    explicit Scripted_Midi_Ports(const Millisecond_Counter& clock) : counter(clock) {}

    /// In order of time.
    std::deque<Midi_In_Message> messages;

    std::vector<Midi_Port> Input_Ports() override { return {{"Script", PORT_ID}}; }
    std::vector<Midi_Port> Output_Ports() override { return {}; }
    Midi_Result Open_Input(std::int32_t portId) override;
    void Close_Input() override { open = false; }
    bool Take_Input(Midi_In_Message& message) override;
    std::uint64_t Dropped_Inputs() const override { return 0; }
    Midi_Result Open_Output(std::int32_t) override { return Midi_Result::BadDevice; }
    void Close_Output() override {}
    void Send(std::uint8_t, std::uint8_t, std::uint8_t) override {}
    bool Ports_Changed() override { return false; }
    bool Input_Alive() override { return open; }
    bool Output_Alive() override { return false; }

private:
    const Millisecond_Counter& counter;
    bool open = false;
};

} // namespace tonvex
