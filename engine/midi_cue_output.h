#pragma once

#include "engine/cue_output.h"
#include "platform/midi_ports.h"

#include <functional>

namespace tonvex {

/// The player library's road to the synthesizer and to the open MIDI port. Threads as of Cue_Output.
class Midi_Cue_Output final : public Cue_Output {
public:
    /// Both outlive the output.
    Midi_Cue_Output(Sound_Door& sound, Midi_Ports_Door& ports);

    /// Hears every message when its moment has come. Set before the library runs, and only when it is
    /// stepped.
    std::function<void(const Sound_Message&)> onSounded;

    void Use(bool synth) noexcept override { useSynth = synth; }
    bool Send(const Sound_Message& message) noexcept override;
    bool Take_Back(std::int64_t fromNs) noexcept override;
    void Sounded(const Sound_Message& message) noexcept override;

private:
    Sound_Door& sound;
    Midi_Ports_Door& ports;
    bool useSynth = true;
};

} // namespace tonvex
