#pragma once

#include "engine/midiapi.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tonvex {

enum class Watched_Device { Sound, Midi_Output, Midi_Input };

/// A device that is no longer there, for a banner with a button that opens it again.
struct Device_Loss {
    Watched_Device device;
    std::string text; ///< what happened and what that means, whole sentences
};

struct Device_News {
    std::vector<Device_Loss> losses; ///< since the check before; each is told once
    bool portsChanged = false;       ///< lists of MIDI ports on show are out of date
};

/// Notices that the sound device or an open MIDI port went away. The owner checks about twice a second,
/// shows the losses and, when asked to, opens Device_To_Reopen. A device that is there again may be lost,
/// and is told, again. Interface thread; changes nothing.
class Device_Watch {
public:
    /// Both outlive the watch.
    Device_Watch(midiapi& output, Midi_Ports_Door& ports);

    /// sound: the status of the sound door, which the owner asks for (asking resets its peaks).
    /// inputPort: the MIDI port that is open for input, NO_DEVICE when none is.
    Device_News Check(const Sound_Status& sound, std::int32_t inputPort);
    /// The device ID under which a lost device is to be opened; for a port that under which its name is
    /// listed now, NO_DEVICE while it is away.
    std::int32_t Device_To_Reopen(Watched_Device device);

private:
    enum class Sound_State { Fine, Absent, Lost };
    struct Watched_Port {
        std::int32_t id = midiapi::NO_DEVICE;
        std::string name;
        bool alive = false;
    };

    void Check_Sound(const Sound_Status& sound, Device_News& news);
    /// Keeps the name of the open port, which its list no longer tells once it is gone.
    void Follow(Watched_Port& port, std::int32_t id, bool portsChanged, bool isOutput);
    /// True when the port went away since the check before.
    static bool Port_Went(Watched_Port& port, std::int32_t id, bool alive);

    midiapi& output;
    Midi_Ports_Door& ports;
    Sound_State soundState = Sound_State::Fine;
    Watched_Port outputPort;
    Watched_Port inputPort;
};

} // namespace tonvex
