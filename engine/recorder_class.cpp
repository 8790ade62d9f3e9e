#include "engine/recorder_class.h"

#include "base/rounding.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

namespace tonvex {

namespace {

constexpr double CLICK_WINDOW_BEATS = 0.2; ///< a round later in the beat than this skips its click
constexpr double CLICK_VELOCITY_FACTOR = 1.27;
constexpr std::uint8_t FULL_SLOT_VOLUME = 127;
/// Volume byte that leaves the velocity of a key as it is.
constexpr std::uint8_t PLAIN_PRACTICE_VOLUME = 100;
constexpr std::int64_t NEVER_SHOWN = std::numeric_limits<std::int64_t>::min() / 2;

std::int32_t Click_Velocity(const Project_State& project) {
    return static_cast<std::int32_t>(RoundHalfEven(project.MetronomeNoteA * CLICK_VELOCITY_FACTOR));
}

} // namespace

RecorderClass::RecorderClass(const Transport_Parts& transportParts)
    : parts(transportParts), clock(parts.counter, parts.tempoChanges, parts.project), players(parts, clock),
      engineRun(parts, clock) {}

bool RecorderClass::StartRecording(double time, float speed, std::int32_t channel, bool overwrite,
                                   bool metronome, bool oneRound) {
    if (oneRound) {
        if (!isRunning)
            return false;
        if (!Stop_Asked())
            (void)Round(metronome);
        if (Stop_Asked())
            End_Run(false);
        return true;
    }
    if (isRunning || parts.state.Song_Runs() || parts.state.Practising)
        return false;
    bool opened = false;
    if (!Set_Up(time, speed, channel, overwrite, opened))
        return opened;
    if (!PracticeMode && parts.options.Global_Rec_WaitForKey)
        Wait_For_Key();
    const bool clockStarted = Start_Clock();
    if (PracticeMode)
        return true;
    // Stopped in the set-up or the wait, it has played nothing that could be overwritten.
    const bool played = clockStarted && !Stop_Asked();
    if (played)
        parts.loop.Run([this, metronome] { return !Stop_Asked() && Round(metronome); });
    End_Run(overwrite && played);
    return true;
}

/// False when there is no run; opened then tells whether the input at least could be opened.
bool RecorderClass::Set_Up(double time, float speed, std::int32_t channel, bool overwrite, bool& opened) {
    parts.state.StopTransportRequest = false;
    parts.state.TempoChangedRequest = false;
    SavedPosition = parts.state.PlayPosition;
    startBeat = Usable_Position(time);
    clock.Tempo = parts.project.ProjectTempo;
    clock.Speed = std::isfinite(speed) && speed > 0.0F ? speed : 1.0F;
    clock.StartBeat = startBeat;
    clock.UseTempoMap = true;

    opened = parts.input.Input_Select(parts.input.InputDevice);
    if (!opened) {
        const auto device = static_cast<std::size_t>(parts.input.InputDevice);
        const std::string name =
            device < parts.input.InputDevices.size() ? parts.input.InputDevices[device] : std::string();
        parts.dialogs.Show_Message(Box_Kind::Critical, "Error initializing Input Device: " + name);
        return false;
    }
    parts.state.LiveNotes.fill(0);
    parts.gcm.Clear_Note_Counts();
    RecChannelRow = Find_Row(channel);
    if (RecChannelRow < 0) {
        parts.input.Input_Close();
        return false;
    }
    practiceChannel = channel;
    Take_Volume();

    StopRequested = false;
    isRunning = true;
    playedKeys.fill({});
    QChords.clear();
    heldNotes.fill(0);
    silentNotes.fill(0);
    endBeat = -1.0;
    lastShownMs = NEVER_SHOWN;
    if (PracticeMode) {
        parts.state.Practising = true;
    } else {
        parts.state.TransportStopped = false;
        parts.state.Recording = true;
        parts.gcm.View_Channel(RecChannelRow);
        parts.Tell(&Transport_Observer::On_Run_Started, true);
        // In a blend the old take goes on sounding; what is to be overwritten stays silent.
        const int silentRow = overwrite ? RecChannelRow : RenderModule::NO_CHANNEL;
        engineRun.Prepare(silentRow);
        players.Make(silentRow);
        parts.state.LiveChanges = true;
    }
    parts.loop.Let_Messages_Run();
    parts.gcm.GCM_SendAllPatches();
    parts.gcm.GCM_SendAllVolumes();
    if (PracticeMode && (channel == PRACTICE_PLAIN || channel == PRACTICE_TEST)) {
        const GlobalChannel& practice = parts.channels.Channels[GlobalChannelsManager::PRACTICE_ROW];
        parts.gcm.GCM_SetChannelPatch(RecChannelRow, practice.PatchI);
        parts.output.Midi_SetVolume(practice.OutputChannel, FULL_SLOT_VOLUME);
    }
    // Behind the channels' own patches, so that a change just before the start has the last word.
    if (!PracticeMode) {
        players.Start_At(startBeat);
        engineRun.Set_Channels(startBeat, RecChannelRow);
        Follow_Slot();
    }
    return true;
}

/// The recorded channel may have been given another slot.
void RecorderClass::Follow_Slot() {
    if (!parts.channels.Is_Live_Row(RecChannelRow))
        return;
    parts.state.LiveSlot = parts.channels.Channels[static_cast<std::size_t>(RecChannelRow)].OutputChannel;
    engineRun.Follow_Performer(RecChannelRow);
}

/// -1 for a channel that cannot be played on.
int RecorderClass::Find_Row(std::int32_t channel) {
    const bool plain = PracticeMode && (channel == PRACTICE_PLAIN || channel == PRACTICE_TEST);
    const int row = plain ? -1 : parts.channels.ChannelI(channel);
    if (!plain && row < 0)
        return -1;
    if (row >= 0) {
        const GlobalChannel& found = parts.channels.Channels[static_cast<std::size_t>(row)];
        if (Is_On(found.IsAudio) || found.OutputChannel >= GlobalChannelsManager::SLOTS)
            return -1;
    }
    if (!PracticeMode)
        return row;
    GlobalChannel& practice = parts.channels.Channels[GlobalChannelsManager::PRACTICE_ROW];
    if (row >= 0) {
        const GlobalChannel& source = parts.channels.Channels[static_cast<std::size_t>(row)];
        practice.OutputChannel = source.OutputChannel;
        practice.Volume = source.Volume;
        practice.PatchI = source.PatchI;
        practice.Style = source.Style;
    } else if (channel == PRACTICE_PLAIN) {
        practice.OutputChannel = 0;
        practice.Volume = PLAIN_PRACTICE_VOLUME;
        practice.PatchI = 0;
        practice.Style = 0;
    }
    return GlobalChannelsManager::PRACTICE_ROW;
}

void RecorderClass::Take_Volume() {
    const auto row = static_cast<std::size_t>(RecChannelRow);
    RecVolFactor = static_cast<float>(parts.channels.Channels[row].Volume) / 100.0F;
}

/// What the user makes of the channel between two notes holds from the next one on; a note that is down
/// has to end where it began.
void RecorderClass::Follow_Practice_Channel() {
    const auto isHeld = [](std::int32_t count) { return count > 0; };
    if (std::any_of(heldNotes.begin(), heldNotes.end(), isHeld) || Find_Row(practiceChannel) < 0)
        return;
    Take_Volume();
}

void RecorderClass::Wait_For_Key() {
    parts.Tell(&Transport_Observer::On_Waiting_For_Key, true);
    parts.loop.Run([this] {
        if (Stop_Asked())
            return false;
        parts.input.Input_Poll();
        return !parts.input.Input_KeyWaiting();
    });
    parts.Tell(&Transport_Observer::On_Waiting_For_Key, false);
}

bool RecorderClass::Start_Clock() {
    ClickNote = parts.project.MetronomeNoteB;
    ClickVelocity = Click_Velocity(parts.project);
    LastClickBeat = -1;
    if (!PracticeMode)
        players.Catch_Up(startBeat);
    clock.Reset();
    startNs = parts.counter.Now_Ns();
    return PracticeMode || (!Stop_Asked() && engineRun.Start(startBeat));
}

/// False when the run is over.
bool RecorderClass::Round(bool metronome) {
    const bool tempoChanged = Follow_Tempo(parts, clock);
    const double time = Current_Position(clock);
    if (tempoChanged) {
        players.Tempo_Changed();
        for (Live_Chord& chord : QChords)
            chord.QChord.Tempo_Changed(time);
    }
    if (metronome && parts.options.Metronome)
        Click(time);
    if (!PracticeMode) {
        if (EndTime > -1.0 && time > EndTime) {
            StopRequested = true;
            endBeat = EndTime;
        }
        const std::int64_t ms = clock.GetTimeMS();
        if (std::abs(ms - lastShownMs) >= RUN_DISPLAY_MS) { // a faster tempo turns the song's ms back
            lastShownMs = ms;
            Follow_Song(time, ms);
        }
        players.Step(time);
        engineRun.Step();
    }
    // An edge that is here already came before what the chords do now.
    Take_Key();
    QChordsStep(time);
    return !Stop_Asked();
}

void RecorderClass::Click(double time) {
    const double wholeBeat = std::floor(time);
    if (static_cast<std::int32_t>(wholeBeat) == LastClickBeat || time - wholeBeat >= CLICK_WINDOW_BEATS)
        return;
    LastClickBeat = static_cast<std::int32_t>(wholeBeat);
    if (PracticeMode) { // it may stay on for hours, while the metronome is set up
        ClickNote = parts.project.MetronomeNoteB;
        ClickVelocity = Click_Velocity(parts.project);
    }
    parts.output.Midi_NoteOn(DRUM_SLOT, ClickNote, ClickVelocity);
}

void RecorderClass::Follow_Song(double time, std::int64_t ms) {
    parts.state.PlayPosition = time;
    parts.gcm.GCM_UpdateMaps(time);
    parts.Tell(&Transport_Observer::On_Position, time, ms);
    if (parts.channels.Is_Live_Row(RecChannelRow))
        Take_Volume();
    Follow_Slot();
    players.Follow_Mutes(time);
}

double RecorderClass::Position_Now() const {
    return clock.GetTime_At(parts.counter.Now_Ns());
}

void RecorderClass::End_Run(bool overwrite) {
    (void)Follow_Tempo(parts, clock); // an edit may have come with the stop
    const double end = std::max(startBeat, endBeat >= 0.0 ? endBeat : Position_Now());
    if (!PracticeMode)
        engineRun.Stop();
    parts.output.Midi_AllNotesOff();
    Release_All_Keys(end);
    if (!PracticeMode) {
        players.Mute_All();
        players.Make_None();
        parts.state.LiveChanges = false;
        parts.hub.Begin_Step("Recording");
        if (parts.channels.Is_Live_Row(RecChannelRow)) {
            parts.hub.Keep_Events(RecChannelRow);
            if (overwrite)
                Wipe_Span(end);
            parts.channels.Store(RecChannelRow).CopyRecEvents();
        }
        parts.hub.End_Step();
        parts.gcm.View_Channel(-1);
        parts.state.TransportStopped = true;
        parts.hub.Message(this, HUB_GENERAL_UPDATE);
        parts.hub.Message(this, HUB_SONG_POSITION, SavedPosition);
        engineRun.End();
        parts.state.LiveSlot = -1;
    }
    parts.input.Input_Close();
    parts.gcm.GCM_SendAllPatches();
    parts.gcm.GCM_SendAllVolumes();
    parts.gcm.GCM_ResetMaps();
    parts.state.Recording = parts.state.Recording && PracticeMode;
    parts.state.Practising = parts.state.Practising && !PracticeMode;
    isRunning = false;
    if (!PracticeMode)
        parts.Tell(&Transport_Observer::On_Run_Ended);
    if (RecStopped)
        RecStopped();
}

/// The old take goes over the span that was played, not beyond it.
void RecorderClass::Wipe_Span(double end) {
    const ChannelClass& store = parts.channels.Store(RecChannelRow);
    std::vector<std::int32_t> covered;
    for (std::int32_t eventI = store.First_Event_At(startBeat); eventI >= 0;
         eventI = store.Get_NextEventI(eventI)) {
        const auto event = store.ReadEvent(eventI);
        if (!event || event->StartTime >= end)
            break;
        covered.push_back(event->EventID);
    }
    const std::int32_t channelId = parts.channels.Channels[static_cast<std::size_t>(RecChannelRow)].ChannelID;
    parts.hub.Hold_Update(); // the run ends with one
    for (const std::int32_t eventId : covered)
        parts.hub.Message(this, HUB_DELETE_EVENT, channelId, eventId);
    parts.hub.Release_Update();
}

} // namespace tonvex
