#pragma once

#include "input/keyboard_class.h"
#include "platform/midi_ports.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace tonvex {

/// The MIDI keyboard: edges by note from one input port, all 16 channels. Interface thread; the driver's
/// thread only stamps and queues behind the door.
class MidiIn_Module {
public:
    static constexpr int NOTES = 129;

    explicit MidiIn_Module(Midi_Ports_Door& ports);

    /// Empty on success, else the error's name.
    std::string MidiIn_Open(std::int32_t deviceId);
    void MidiIn_Close();
    Key_Edge MidiIn_GetNextEvent();
    bool MidiIn_KeyWaiting() const;
    bool Is_Down(int note) const;
    void Clear_Reported();
    /// Takes the queue's messages into the note states, one edge of a note at a time, so that a note shorter
    /// than a poll is not lost.
    void Poll();
    bool Is_Open() const noexcept { return MidiInOpened; }

    /// Called with note and velocity when a note goes down, before its edge is reported.
    std::function<void(int note, int velocity)> onVelocity;

private:
    Midi_Ports_Door& ports;
    bool MidiInOpened = false;
    std::array<std::int32_t, NOTES> MidiNow{};
    std::array<std::int32_t, NOTES> MidiPrev{};
    std::array<std::int64_t, NOTES> changedAtNs{};
};

} // namespace tonvex
