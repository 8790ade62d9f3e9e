#pragma once

#include <array>
#include <cstdint>

namespace tonvex {

/// What the transport shares with the windows and the output. Interface thread.
struct Transport_State {
    double PlayPosition = 0.0;         ///< beats, the last shown position
    bool StopTransportRequest = false; ///< the Stop button on a recording
    bool PlayRequested = false;        ///< true while the play loop runs
    double SeekRequest = -1.0;         ///< beats, -1 when none
    bool TempoChangedRequest = false;
    bool EngineRunning = false;                ///< the thread engine owns the stored events
    std::array<std::int32_t, 128> LiveNotes{}; ///< live presses that hold a note
    int LiveSlot = -1;                         ///< output slot of the channel being recorded, -1 when none is
    bool TransportStopped = false;             ///< set at the end of each run
    bool Recording = false;                    ///< a recording (not practice) runs
    bool Practising = false;                   ///< practice mode is open
    bool LiveChanges = false;                  ///< a song runs: channel stores log their changes
    /// A song is being recorded or played.
    bool Song_Runs() const noexcept { return Recording || PlayRequested; }
};

/// Settings of a run that the user changes while it goes on.
struct Transport_Options {
    bool Global_Rec_WaitForKey = false;
    bool Global_UseThreadEngine = true;
    bool Metronome = false;    ///< the metronome's check box
    int RecSpeedPercent = 100; ///< 20 to 100
    bool Overwrite = false;
    bool PlayAtRecSpeed = false;
};

/// Windows that follow a run. Calls come between rounds' steps, at most once in 10 ms for positions.
class Transport_Observer {
public:
    virtual ~Transport_Observer() = default;
    virtual void On_Run_Started(bool /*recording*/) {}
    virtual void On_Position(double /*beats*/, std::int64_t /*songMs*/) {}
    /// A note shows on, or leaves, the piano; counted, so two keys on a note need two offs.
    virtual void On_Note_Shown(int /*note*/) {}
    virtual void On_Note_Hidden(int /*note*/) {}
    /// A computer or MIDI key goes down or up (key number).
    virtual void On_Key_Pressed(int /*key*/) {}
    virtual void On_Key_Released(int /*key*/) {}
    virtual void On_Octaves_Changed() {}
    virtual void On_Waiting_For_Key(bool /*waiting*/) {}
    virtual void On_Run_Ended() {}
};

} // namespace tonvex
