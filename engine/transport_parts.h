#pragma once

#include "engine/cue_engine.h"
#include "engine/gcm_midi.h"
#include "engine/midiapi.h"
#include "engine/qchord_class.h"
#include "engine/render_module.h"
#include "engine/transport_state.h"
#include "input/input_handler.h"
#include "input/keyboard_layout.h"
#include "platform/millisecond_counter.h"
#include "platform/run_loop.h"
#include "platform/user_dialogs.h"
#include "song/change_hub.h"
#include "song/global_channels_manager.h"
#include "song/project_state.h"
#include "song/tempo_change_class.h"
#include "song/vget_tick_count.h"

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
    Fingerpick_Patterns& fingerpicks;
    CueEngine& cue;
    RenderModule& render;

    QChord_Parts Chord_Parts() const { return {tempoChanges, project, fingerpicks}; }

    /// Calls one operation of every observer, by index, since an observer may leave the list meanwhile.
    template <typename Operation, typename... Arg>
    void Tell(Operation operation, const Arg&... arg) const {
        for (std::size_t i = 0; i < observers.size(); ++i)
            (observers[i]->*operation)(arg...);
    }
};

/// Shortest time, in song ms, between two updates of what a run shows.
inline constexpr std::int64_t RUN_DISPLAY_MS = 10;

/// The first thing of a round. Re-anchors the running clock when the tempo map was edited: whatever its
/// formula makes of the new tempo, the song goes on from where it was. True when it had to.
bool Follow_Tempo(const Transport_Parts& parts, VGetTickCount& clock);

/// The position now. GetTime alone reads on by the tempo before for once when it has passed a change, which
/// is far off behind a round that came late.
double Current_Position(VGetTickCount& clock);

/// What a channel's volume makes of a velocity.
inline float Vol_Factor(const GlobalChannel& channel) noexcept {
    return static_cast<float>(channel.Volume) / 100.0F;
}

/// start as a run can use it: a number, 0 or above.
double Usable_Position(double beats) noexcept;

} // namespace tonvex
