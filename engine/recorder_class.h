#pragma once

#include "engine/channel_player_class.h"
#include "input/input_handler.h"
#include "input/keyboard_layout.h"
#include "platform/run_loop.h"
#include "song/change_hub.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tonvex {

/// What both transports work on. All outlive them.
struct Transport_Parts {
    GlobalChannelsManager& channels;
    TempoChangeClass& tempoChanges;
    Project_State& project;
    midiapi& output;
    GCM_Midi& gcm;
    InputHandler& input;
    KeyboardLayout& layout;
    Change_Hub& hub;
    Transport_State& state;
    Transport_Options& options;
    Run_Loop& loop;
    const Millisecond_Counter& counter;
    User_Dialogs& dialogs;
    std::vector<Transport_Observer*>& observers;
};

/// Records: plays the song, listens to the keys, sounds them at once, stores what was played; or, in
/// practice mode, sounds the keys alone. Interface thread; StartRecording returns when the run is over.
class RecorderClass {
public:
    static constexpr std::int32_t PRACTICE_PLAIN = -1000;
    static constexpr std::int32_t PRACTICE_TEST = -2000;

    explicit RecorderClass(const Transport_Parts& parts);

    bool PracticeMode = false;
    bool StopRequested = false;
    double EndTime = -1.0; ///< stop behind this position; -1 never

    /// time: start position in beats. speed: record speed / 100. channel: a ChannelID, or PRACTICE_… in
    /// practice mode. oneRound: exactly one round, no set-up. True when the run took place.
    bool StartRecording(double time, float speed, std::int32_t channel, bool overwrite, bool metronome,
                        bool oneRound);
    bool IsRunning() const noexcept { return isRunning; }
    VGetTickCount& Clock() noexcept { return clock; }
    /// The very last act of a run.
    std::function<void()> RecStopped;

private:
    Transport_Parts parts;
    VGetTickCount clock;
    bool isRunning = false;
};

/// Plays the song without keys.
class Player_Recorder {
public:
    explicit Player_Recorder(const Transport_Parts& parts);
    /// Blocks for the whole run. True when the song ended by itself.
    bool Transport_Play(double time, bool viewFollows, float speed);
    VGetTickCount& Clock() noexcept { return clock; }

private:
    Transport_Parts parts;
    VGetTickCount clock;
};

} // namespace tonvex
