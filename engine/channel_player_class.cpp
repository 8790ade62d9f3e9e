#include "engine/channel_player_class.h"

#include "base/rounding.h"
#include "engine/render_module.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tonvex {

namespace {
constexpr int NOTE_OFF_VELOCITY = 100;
constexpr double MOMENTS_A_BEAT = 1.0e9;
constexpr double LAST_BEAT = 9.0e9; ///< beyond any song, and still a moment
} // namespace

CHannelPlayerClass::CHannelPlayerClass(GlobalChannelsManager& manager, GCM_Midi& gcm,
                                       const VGetTickCount& runClock, const Millisecond_Counter& machineClock,
                                       const QChord_Parts& chords)
    : channels(manager), output(gcm), clock(runClock), counter(machineClock), chordParts(chords) {}

void CHannelPlayerClass::ActiveEventRow::Find_Next() noexcept {
    nextTime = EndTime;
    next = {Moment_At(EndTime), false};
    if (chord == nullptr || !QChordClass::Step_Sounds(chord->QChord.Next_Step_Time(), EndTime))
        return;
    nextTime = chord->QChord.Next_Step_Time();
    next = {Moment_At(nextTime), true};
}

std::int64_t CHannelPlayerClass::Moment_At(double beats) noexcept {
    return RoundHalfEven(std::clamp(beats, -LAST_BEAT, LAST_BEAT) * MOMENTS_A_BEAT);
}

void CHannelPlayerClass::SetChannel(std::int32_t newChannelId, int row) {
    channelId = newChannelId;
    channelRow = row >= 0 ? row : channels.ChannelI(newChannelId);
    store = nullptr;
    activeEvents.clear();
    patchChangesKnown = false;
    Set_Next(-1);
    Sounding = true;
    if (!Channel_Is_There())
        return;
    store = &channels.Store(channelRow);
    store->Clear_Mods();
}

bool CHannelPlayerClass::Channel_Is_There() const {
    return channelRow >= 0 && channelRow < GlobalChannelsManager::CHANNEL_ROWS &&
           channels.Is_Live_Row(channelRow) &&
           channels.Channels[static_cast<std::size_t>(channelRow)].ChannelID == channelId;
}

void CHannelPlayerClass::InitChannel_MidiData(double startTime) {
    Set_Next(store != nullptr ? store->First_Event_At(startTime - TimeOffset) : -1);
}

void CHannelPlayerClass::Set_Next(std::int32_t eventI) {
    NextEventI = -1;
    if (store == nullptr || eventI < 0)
        return;
    const auto event = store->ReadEvent(eventI);
    if (!event)
        return;
    NextEventI = eventI;
    nextEventId = event->EventID;
    nextStart = event->StartTime;
}

void CHannelPlayerClass::SetTimePos(double time) {
    Drop_If_Gone();
    Mark_All_Ended();
    ActiveEventsStep(0.0);
    InitChannel_MidiData(time);
    if (store == nullptr || muted || !Sounding)
        return;
    const std::int32_t patchRow = Patch_Before(time - TimeOffset);
    if (patchRow >= 0)
        output.GCM_SetChannelPatch(channelRow, patchRow);
    Resume_Chords(time - TimeOffset);
}

void CHannelPlayerClass::Resume_Chords(double position) {
    for (auto eventI = store->FirstEvent(); eventI >= 0 && eventI != NextEventI;
         eventI = store->Get_NextEventI(eventI)) {
        const auto event = store->ReadEvent(eventI);
        if (event && event->Kind == EV_QCHORD && event->QChord != nullptr &&
            event->StartTime + event->QChord->Length > position)
            Start_Chord(*event, position);
    }
}

std::int32_t CHannelPlayerClass::Patch_Before(double position) {
    if (!patchChangesKnown) {
        patchChanges.clear();
        for (auto eventI = store->FirstEvent(); eventI >= 0; eventI = store->Get_NextEventI(eventI)) {
            const auto event = store->ReadEvent(eventI);
            if (event && event->Kind == EV_PATCH)
                patchChanges.push_back({event->StartTime, event->DataRef});
        }
        patchChangesKnown = true;
    }
    const auto behind =
        std::partition_point(patchChanges.begin(), patchChanges.end(),
                             [position](const Patch_Change& change) { return change.startTime < position; });
    return behind == patchChanges.begin() ? -1 : std::prev(behind)->patchRow;
}

void CHannelPlayerClass::PlayNextEvent(double time) {
    Take_Changes(time);
    while (Next_Moment().at <= Moment_At(time))
        Play_Next_Moment();
}

void CHannelPlayerClass::Drop_If_Gone() {
    if (store == nullptr || Channel_Is_There())
        return;
    Mark_All_Ended();
    ActiveEventsStep(0.0);
    store = nullptr;
    Set_Next(-1);
    if (renderer != nullptr)
        renderer->Render_DropChannel(channelRow);
}

void CHannelPlayerClass::Take_Changes(double time) {
    Drop_If_Gone();
    if (store == nullptr)
        return;
    if (store->Mods_Pending()) {
        patchChangesKnown = false;
        bool seek = false;
        for (const ChannelClass::Mod& mod : store->Get_Mods())
            seek = Take_Change(mod, time - TimeOffset) || seek;
        Restore_Heap();
        if (seek)
            SetTimePos(time);
        // As here: only what asks for the place anew ends all that sounds.
        if (renderer != nullptr && Sounding)
            renderer->Render_UpdateChannel(channelRow, !seek);
        store->Clear_Mods();
    }
    // A sort of the store moves events between rows without logging anything.
    if (NextEventI >= 0 && store->GetEvent_ID(NextEventI) != nextEventId)
        Set_Next(store->GetEvent_I(nextEventId));
}

/// True when the place in the channel has to be found anew.
bool CHannelPlayerClass::Take_Change(const ChannelClass::Mod& mod, double position) {
    switch (mod.Code) {
    case ChannelClass::MOD_DELETED:
        Mark_Ended(mod.ID);
        return true;
    case ChannelClass::MOD_LENGTH:
        Change_Length(mod.ID);
        return false;
    case ChannelClass::MOD_START_TIME: {
        const std::int32_t eventI = store->GetEvent_I(mod.ID);
        const auto event = store->ReadEvent(eventI);
        if (!event)
            return false;
        const bool hasLength = event->Kind == EV_NOTE || event->Kind == EV_QCHORD || event->Kind == EV_MC;
        if (hasLength &&
            (event->StartTime + store->GetEvent_Length(eventI) < position || event->StartTime > position))
            Mark_Ended(mod.ID);
        return true;
    }
    case ChannelClass::MOD_ADDED:
        return true;
    case ChannelClass::MOD_NOTE:
    case ChannelClass::MOD_PROPERTIES:
        Mark_Ended(mod.ID);
        return false;
    default:
        return false;
    }
}

void CHannelPlayerClass::Mark_Ended(std::int32_t eventId) {
    for (ActiveEventRow& row : activeEvents) {
        if (row.ID == eventId)
            row.EndTime = END_NOW;
    }
}

void CHannelPlayerClass::Mark_All_Ended() {
    for (ActiveEventRow& row : activeEvents)
        row.EndTime = END_NOW;
    Restore_Heap();
}

void CHannelPlayerClass::Change_Length(std::int32_t eventId) {
    const std::int32_t eventI = store->GetEvent_I(eventId);
    if (eventI < 0)
        return;
    const double length = store->GetEvent_Length(eventI);
    for (ActiveEventRow& row : activeEvents) {
        if (row.ID != eventId || row.EndTime == END_NOW)
            continue;
        row.EndTime += length - row.length;
        row.length = length;
    }
}

void CHannelPlayerClass::Restore_Heap() {
    for (ActiveEventRow& row : activeEvents)
        row.Find_Next();
    std::make_heap(activeEvents.begin(), activeEvents.end());
}

CHannelPlayerClass::Moment CHannelPlayerClass::Next_Moment() const noexcept {
    // With the player library on, only the channel on show is walked, for its notes to be seen.
    if (renderer != nullptr && !output.Views(channelRow))
        return {NEVER, true};
    const Moment start{NextEventI < 0 ? NEVER : Moment_At(nextStart + TimeOffset), true};
    if (activeEvents.empty())
        return start;
    const ActiveEventRow& first = activeEvents.front();
    const Moment active{Moment_At(first.nextTime + TimeOffset), first.next.isStart};
    return start < active ? start : active;
}

void CHannelPlayerClass::Play_Next_Moment() {
    const Moment moment = Next_Moment();
    if (moment.at == NEVER)
        return;
    const bool isActive =
        !activeEvents.empty() && Moment_At(activeEvents.front().nextTime + TimeOffset) == moment.at;
    if (!moment.isStart)
        End_First_Row();
    else if (isActive)
        Step_First_Chord();
    else
        Start_Next_Event();
}

void CHannelPlayerClass::Start_Next_Event() {
    const auto event = store->ReadEvent(NextEventI);
    if (event && Sounding && !muted) {
        if (event->Kind == EV_NOTE && event->Note != nullptr)
            Start_Note(*event);
        else if (event->Kind == EV_QCHORD && event->QChord != nullptr)
            Start_Chord(*event, event->StartTime);
        else if (event->Kind == EV_PATCH && renderer == nullptr)
            output.GCM_SetChannelPatch(channelRow, event->DataRef);
    }
    Set_Next(store->Get_NextEventI(NextEventI));
}

int CHannelPlayerClass::Velocity(std::uint8_t volume) const {
    const auto channelVolume = channels.Channels[static_cast<std::size_t>(channelRow)].Volume;
    const float factor = static_cast<float>(channelVolume) / 100.0F;
    return static_cast<int>(RoundHalfEven(static_cast<float>(volume) * factor));
}

void CHannelPlayerClass::Add_Active(ActiveEventRow row) {
    if (row.chord != nullptr && row.chord->QChord.Is_Over())
        return;
    row.Find_Next();
    activeEvents.push_back(std::move(row));
    std::push_heap(activeEvents.begin(), activeEvents.end());
}

void CHannelPlayerClass::Start_Note(const ChannelClass::Event_View& event) {
    const NoteData& note = *event.Note;
    // What has no length or no volume is not there to hear.
    if (note.Length <= 0.0 || note.Vol == 0)
        return;
    output.GCM_PlayNoteOn(channelRow, note.Note, Velocity(note.Vol), false, Due(event.StartTime));
    Add_Active({event.StartTime + note.Length, nextOrder++, note.Length, event.EventID, note.Note, nullptr});
}

/// Its first notes are a step like the others, and due at once. Steps before from are passed over.
void CHannelPlayerClass::Start_Chord(const ChannelClass::Event_View& event, double from) {
    const QChordData& data = *event.QChord;
    if (data.Length <= 0.0 || data.ChordVol == 0)
        return;
    auto chord = std::make_unique<Active_Chord>(Active_Chord{QChordClass(chordParts), data.ChordVol, {}});
    chord->QChord.Set_Stored_Chord(data, event.StartTime);
    QChord_Messages passed;
    while (Moment_At(chord->QChord.Next_Step_Time()) < Moment_At(from)) {
        chord->QChord.GetMsg_On_Time(chord->QChord.Next_Step_Time(), passed);
        for (std::size_t i = 0; i < passed.Rows(); ++i)
            chord->leftOut.set(passed.Notes[i], passed.Actions[i] == QChord_Messages::NOTE_ON);
    }
    const double end = event.StartTime + data.Length;
    if (QChordClass::Step_Sounds(chord->QChord.Next_Step_Time(), end))
        Add_Active({end, nextOrder++, data.Length, event.EventID, 0, std::move(chord)});
}

void CHannelPlayerClass::Step_First_Chord() {
    ActiveEventRow row = Take_First_Row();
    QChord_Messages messages;
    row.chord->QChord.GetMsg_On_Time(row.nextTime, messages);
    Play_Messages(*row.chord, messages, Due(messages.Time));
    Add_Active(std::move(row));
}

void CHannelPlayerClass::Play_Messages(Active_Chord& chord, const QChord_Messages& messages,
                                       std::int64_t due) {
    const int velocity = Velocity(chord.volume);
    for (std::size_t i = 0; i < messages.Rows(); ++i) {
        const int note = messages.Notes[i];
        const bool isOn = messages.Actions[i] == QChord_Messages::NOTE_ON;
        const bool wasLeftOut = chord.leftOut.test(messages.Notes[i]);
        chord.leftOut.set(messages.Notes[i], isOn && output.Performer_Holds(channelRow, note));
        if (isOn && !chord.leftOut.test(messages.Notes[i]))
            output.GCM_PlayNoteOn(channelRow, note, velocity, false, due);
        else if (!isOn && !wasLeftOut)
            output.GCM_PlayNoteOff(channelRow, note, NOTE_OFF_VELOCITY, false, due);
    }
}

CHannelPlayerClass::ActiveEventRow CHannelPlayerClass::Take_First_Row() {
    std::pop_heap(activeEvents.begin(), activeEvents.end());
    ActiveEventRow row = std::move(activeEvents.back());
    activeEvents.pop_back();
    return row;
}

void CHannelPlayerClass::End_First_Row() {
    const ActiveEventRow row = Take_First_Row();
    const std::int64_t due = row.EndTime == END_NOW ? midiapi::DUE_NOW : Due(row.EndTime);
    if (row.chord == nullptr)
        return output.GCM_PlayNoteOff(channelRow, row.Note, NOTE_OFF_VELOCITY, false, due);
    QChord_Messages messages;
    row.chord->QChord.GetMsg_On_Time(QChordClass::STOP, messages);
    Play_Messages(*row.chord, messages, due);
}

void CHannelPlayerClass::ActiveEventsStep(double time) {
    while (!activeEvents.empty() && activeEvents.front().nextTime <= time)
        End_First_Row();
}

std::int64_t CHannelPlayerClass::Due(double beat) const {
    return std::min(clock.Moment_Of(beat + TimeOffset), counter.Now_Ns());
}

void CHannelPlayerClass::MuteChannel() {
    muted = true;
    Mark_All_Ended();
    ActiveEventsStep(0.0);
}

void CHannelPlayerClass::UnMuteChannel() {
    muted = false;
}
} // namespace tonvex
