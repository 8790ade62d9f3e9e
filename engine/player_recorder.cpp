#include "engine/recorder_class.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace tonvex {

namespace {
constexpr std::int64_t NEVER_SHOWN = std::numeric_limits<std::int64_t>::min() / 2;
} // namespace

Player_Recorder::Player_Recorder(const Transport_Parts& transportParts)
    : parts(transportParts), clock(parts.counter, parts.tempoChanges, parts.project), players(parts, clock),
      engineRun(parts, clock) {}

bool Player_Recorder::Transport_Play(double time, bool /*viewFollows*/, float speed) {
    Transport_State& state = parts.state;
    if (state.Song_Runs())
        return false;
    const double start = Usable_Position(time);
    clock.Tempo = parts.project.ProjectTempo;
    clock.Speed = std::isfinite(speed) && speed > 0.0F ? speed : 1.0F;
    clock.UseTempoMap = true;
    endedByItself = false;
    lastShownMs = NEVER_SHOWN;
    state.SeekRequest = -1.0;
    state.TempoChangedRequest = false;
    state.TransportStopped = false;
    state.PlayRequested = true;
    state.LiveNotes.fill(0);
    parts.gcm.Clear_Note_Counts();
    parts.Tell(&Transport_Observer::On_Run_Started, false);

    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (parts.channels.Is_Live_Row(row))
            parts.channels.Store(row).Defrag_Data();
    }
    engineRun.Prepare(RenderModule::NO_CHANNEL);
    players.Make(-1);
    state.LiveChanges = true;
    parts.loop.Let_Messages_Run();
    parts.gcm.GCM_SendAllPatches();
    parts.gcm.GCM_SendAllVolumes();
    players.Start_At(start);
    engineRun.Set_Channels(start, RenderModule::NO_CHANNEL);
    players.Catch_Up(start);
    clock.SetTime(start);
    if (state.PlayRequested && engineRun.Start(start))
        parts.loop.Run([this] { return parts.state.PlayRequested && Round(); });

    engineRun.Stop();
    parts.output.Midi_AllNotesOff();
    players.Mute_All();
    players.Make_None();
    engineRun.End();
    state.LiveChanges = false;
    state.PlayRequested = false;
    state.SeekRequest = -1.0;
    state.PlayPosition = clock.GetTime();
    state.TransportStopped = true;
    parts.gcm.GCM_SendAllPatches();
    parts.gcm.GCM_SendAllVolumes();
    parts.gcm.GCM_ResetMaps();
    parts.Tell(&Transport_Observer::On_Position, state.PlayPosition, clock.GetTimeMS());
    parts.Tell(&Transport_Observer::On_Run_Ended);
    return endedByItself;
}

/// False when the run is over.
bool Player_Recorder::Round() {
    if (Follow_Tempo(parts, clock))
        players.Tempo_Changed();
    double time = Current_Position(clock);
    const std::int64_t ms = clock.GetTimeMS();
    if (std::abs(ms - lastShownMs) >= RUN_DISPLAY_MS) { // a seek or a tempo may have turned the clock back
        lastShownMs = ms;
        Follow_Song(time, ms);
    }
    // A seek that came with the end is still to be looked at.
    if (Transport_Step(time) && parts.state.SeekRequest < 0.0) {
        parts.state.PlayRequested = false;
        endedByItself = true;
    }
    return parts.state.PlayRequested;
}

void Player_Recorder::Follow_Song(double& time, std::int64_t ms) {
    parts.state.PlayPosition = time;
    if (parts.state.SeekRequest >= 0.0) {
        time = Usable_Position(parts.state.SeekRequest);
        parts.state.SeekRequest = -1.0;
        Seek(time);
        parts.state.PlayPosition = time;
        ms = clock.GetTimeMS();
        lastShownMs = ms;
    }
    players.Follow_Mutes(time);
    parts.gcm.GCM_UpdateMaps(time);
    parts.Tell(&Transport_Observer::On_Position, time, ms);
}

void Player_Recorder::Seek(double beats) {
    parts.output.Midi_AllNotesOff();
    engineRun.Stop();
    engineRun.Set_Position(beats);
    clock.SetTime(beats);
    players.Seek(beats);
    players.Catch_Up(beats);
    if (!engineRun.Start(beats))
        parts.state.PlayRequested = false;
}

bool Player_Recorder::Transport_Step(double time) {
    players.Step(time);
    engineRun.Step();
    return players.At_End();
}

} // namespace tonvex
