#include "engine/engine_run.h"

namespace tonvex {

namespace {

constexpr int TRIES_TO_A_RESET = 100;
constexpr int MOST_TRIES = 1000;

} // namespace

Engine_Run::Engine_Run(const Transport_Parts& transportParts, VGetTickCount& runClock)
    : parts(transportParts), clock(runClock) {}

void Engine_Run::Prepare(int excludeRow) {
    if (!parts.options.Global_UseThreadEngine || !parts.cue.Is_Running())
        return;
    parts.state.EngineRunning = true;
    clock.listener = &parts.cue;
    parts.render.Render_StopPlayer();
    parts.output.Midi_PlayerOutput(parts.cue);
    // When the library takes no lists the run goes on without the stored events.
    (void)parts.render.Render_Start(excludeRow);
}

void Engine_Run::Set_Channels(double startBeat, int performerRow) {
    if (!Is_On())
        return;
    parts.cue.Player_SetPos(startBeat);
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        const GlobalChannel& channel = parts.channels.Channels[static_cast<std::size_t>(row)];
        if (!parts.channels.Is_Live_Row(row) || tonvex::Is_On(channel.IsAudio))
            continue;
        parts.cue.Channel_SetVolFactor(row, Vol_Factor(channel));
        parts.cue.Channel_SetMute(row, parts.channels.Effective_Mute(row));
    }
    performerSlot = Slot_Of(performerRow);
    parts.cue.Player_SetRecChannelI(performerRow, performerSlot);
    parts.cue.Player_CopyRecActiveNotes(parts.state.LiveNotes);
}

bool Engine_Run::Start(double startBeat) {
    if (!Is_On())
        return true;
    clock.Set_RenderDLL_Clock();
    for (int tries = 1; parts.cue.clock_CheckValid(startBeat) == 1; ++tries) {
        if (tries % TRIES_TO_A_RESET == 0)
            clock.Reset();
        if (tries > MOST_TRIES) {
            parts.dialogs.Show_Message(Box_Kind::Warning, "Error setting clock");
            return false;
        }
        clock.Set_RenderDLL_Clock();
    }
    parts.cue.Player_Start();
    return true;
}

void Engine_Run::Step() {
    if (Is_On())
        parts.cue.Step();
}

void Engine_Run::Follow_Performer(int performerRow) {
    const int slot = Slot_Of(performerRow);
    if (!Is_On() || slot == performerSlot)
        return;
    performerSlot = slot;
    parts.cue.Player_SetRecChannelI(performerRow, slot);
}

void Engine_Run::Stop() {
    if (Is_On())
        parts.render.Render_StopPlayer();
}

void Engine_Run::Set_Position(double beats) {
    if (Is_On())
        parts.cue.Player_SetPos(beats);
}

void Engine_Run::End() {
    clock.listener = nullptr;
    parts.state.EngineRunning = false;
}

int Engine_Run::Slot_Of(int row) const {
    return parts.channels.Is_Live_Row(row)
               ? parts.channels.Channels[static_cast<std::size_t>(row)].OutputChannel
               : -1;
}

} // namespace tonvex
