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

    /// Empty on success, else the error's name. All notes start as up.
    std::string MidiIn_Open(std::int32_t deviceId);
    void MidiIn_Close();
    /// The next edge in order of arrival; among edges that wait at once the lowest note's.
    Key_Edge MidiIn_GetNextEvent();
    /// A press waits to be read. Nothing is consumed.
    bool MidiIn_KeyWaiting() const;
    bool Is_Down(int note) const;
    /// Forgets what was reported: notes that are down give a press again.
    void Clear_Reported();
    /// Takes messages into the note states up to the first that makes an edge. While an edge waits to be
    /// read nothing is taken, so that a note shorter than a poll is not lost and order is kept. What is down
    /// on a port that has gone is let go, now; a port that comes back is opened anew.
    void Poll();
    bool Is_Open() const noexcept { return MidiInOpened; }

    /// Called with note and velocity (1 to 127) when a note on is taken in, before its edge is reported.
    std::function<void(int note, int velocity)> onVelocity;

private:
    void Take_In(const Midi_In_Message& message);
    /// The lowest note whose state differs from what was reported, -1 for none.
    int Waiting_Note() const noexcept;
    void Follow_Port();

    Midi_Ports_Door& ports;
    bool MidiInOpened = false;
    std::int32_t openDevice = -1;
    bool portGone = false; ///< the open port left the machine
    std::array<std::int32_t, NOTES> MidiNow{};
    std::array<std::int32_t, NOTES> MidiPrev{};
    std::array<std::int64_t, NOTES> changedAtNs{};
};

} // namespace tonvex
