#include "engine/channel_player_class.h"

#include "engine/render_module.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tonvex {

CHannelPlayerClass::CHannelPlayerClass(GlobalChannelsManager& manager, GCM_Midi& gcm,
                                       const VGetTickCount& runClock, const Millisecond_Counter& machineClock,
                                       const QChord_Parts& chords)
    : channels(manager), output(gcm), clock(runClock), counter(machineClock), chordParts(chords) {}

void CHannelPlayerClass::SetChannel(std::int32_t newChannelId, int row) {
    channelId = newChannelId;
    channelRow = row >= 0 ? row : channels.ChannelI(newChannelId);
    store = nullptr;
    activeEvents.clear();
    patchChangesKnown = false;
    tempoChanged = false;
    Set_Next(-1);
    Sounding = true;
    if (!Channel_Is_There())
        return;
    store = &channels.Store(channelRow);
    store->Clear_Mods();
    OutputMidiChannel = channels.Channels[static_cast<std::size_t>(channelRow)].OutputChannel;
}

bool CHannelPlayerClass::Channel_Is_There() const {
    return channelRow >= 0 && channelRow < GlobalChannelsManager::CHANNEL_ROWS &&
           channels.Is_Live_Row(channelRow) &&
           channels.Channels[static_cast<std::size_t>(channelRow)].ChannelID == channelId;
}

void CHannelPlayerClass::InitChannel_MidiData(double startTime) {
    playFrom = Moment_At(startTime);
    Set_Next(First_At(playFrom));
}

std::int32_t CHannelPlayerClass::First_At(std::int64_t moment) const {
    constexpr double HALF_A_MOMENT = 0.5;
    return store == nullptr
               ? -1
               : store->First_Event_At((static_cast<double>(moment) - HALF_A_MOMENT) / Song_Moment::A_BEAT -
                                       TimeOffset);
}

bool CHannelPlayerClass::Is_Heard(const ChannelClass::Event_View& event) const {
    if (event.Kind == EV_NOTE) // a file keeps the note of no length
        return (event.Note->Length > 0.0 || (event.Note->Length == 0.0 && output.Is_Captured())) &&
               event.Note->Vol > 0;
    if (event.Kind != EV_QCHORD)
        return event.Kind == EV_PATCH;
    if (event.QChord->Length <= 0.0 || event.QChord->ChordVol == 0)
        return false;
    QChordClass chord(chordParts);
    chord.Set_Stored_Chord(*event.QChord, event.StartTime);
    return !chord.Shown_Notes().empty() &&
           QChordClass::Step_Sounds(chord.Next_Step_Time(), event.StartTime + event.QChord->Length);
}

void CHannelPlayerClass::Set_Next(std::int32_t eventI) {
    NextEventI = -1;
    for (; eventI >= 0; eventI = store->Get_NextEventI(eventI)) {
        const auto event = store->ReadEvent(eventI);
        if (!event || !Is_Heard(*event))
            continue;
        NextEventI = eventI;
        nextEventId = event->EventID;
        nextStart = event->StartTime;
        return;
    }
}

void CHannelPlayerClass::SetTimePos(double time) {
    Drop_If_Gone();
    Go_On_From(Moment_At(time));
}

void CHannelPlayerClass::Go_On_From(std::int64_t moment) {
    End_All();
    playFrom = moment;
    Set_Next(First_At(moment));
    patchMissed = muted;
    if (store == nullptr || !Sounding)
        return;
    if (const std::int32_t patchRow = muted ? -1 : Patch_Before(moment); patchRow >= 0)
        output.GCM_SetChannelPatch(channelRow, patchRow);
    Resume_Chords();
}

std::int32_t CHannelPlayerClass::Patch_Before(std::int64_t moment) {
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
        std::partition_point(patchChanges.begin(), patchChanges.end(), [&](const Patch_Change& change) {
            return Moment_Of(change.startTime) < moment;
        });
    return behind == patchChanges.begin() ? -1 : std::prev(behind)->patchRow;
}

void CHannelPlayerClass::PlayNextEvent(double time) {
    Take_Changes();
    const std::int64_t now = Moment_At(time);
    while (Next_Moment().at <= now)
        Play_Next_Moment();
    Played_Until(now);
}

void CHannelPlayerClass::Drop_If_Gone() {
    if (store == nullptr || Channel_Is_There())
        return;
    End_All();
    store = nullptr;
    Set_Next(-1);
    if (renderer != nullptr)
        renderer->Render_DropChannel(channelRow);
}

bool CHannelPlayerClass::Slot_Changed() const {
    return channels.Channels[static_cast<std::size_t>(channelRow)].OutputChannel != OutputMidiChannel;
}

std::vector<std::int32_t> CHannelPlayerClass::Chords_In_Ms() const {
    std::vector<std::int32_t> found;
    for (auto eventI = store->FirstEvent(); eventI >= 0; eventI = store->Get_NextEventI(eventI)) {
        const auto event = store->ReadEvent(eventI);
        if (event && event->Kind == EV_QCHORD && QChordClass::Steps_In_Ms(*event->QChord))
            found.push_back(event->EventID);
    }
    return found;
}

void CHannelPlayerClass::Take_Changes() {
    Drop_If_Gone();
    if (store == nullptr)
        return;
    // A sort of the store moves events between rows without logging anything.
    if (NextEventI >= 0 && store->GetEvent_ID(NextEventI) != nextEventId)
        Set_Next(store->GetEvent_I(nextEventId));
    if (!store->Mods_Pending() && !tempoChanged && !Slot_Changed())
        return;
    bool seek = Slot_Changed();
    std::vector<std::int32_t> renewed; // events that end and sound anew from here
    if (std::exchange(tempoChanged, false))
        renewed = Chords_In_Ms();
    for (const ChannelClass::Mod& mod : store->Get_Mods())
        seek = Take_Change(mod, renewed) || seek;
    for (const std::int32_t eventId : renewed)
        Mark_Ended(eventId);
    OutputMidiChannel = channels.Channels[static_cast<std::size_t>(channelRow)].OutputChannel;
    patchChangesKnown = false;
    if (seek) {
        Go_On_From(playFrom);
    } else {
        End_Marked();
        Set_Next(First_At(playFrom));
        Resume_Chords();
    }
    if (renderer != nullptr && Sounding && seek)
        renderer->Render_UpdateChannel(channelRow);
    else if (renderer != nullptr && Sounding)
        renderer->Render_UpdateEvents(channelRow, renewed);
    store->Clear_Mods();
}

bool CHannelPlayerClass::Take_Change(const ChannelClass::Mod& mod, std::vector<std::int32_t>& renewed) {
    switch (mod.Code) {
    case ChannelClass::MOD_DELETED:
    case ChannelClass::MOD_START_TIME:
    case ChannelClass::MOD_ADDED:
        return true;
    case ChannelClass::MOD_LENGTH:
        Change_Length(mod.ID);
        return false;
    case ChannelClass::MOD_VOLUME:
        Change_Volume(mod.ID);
        return false;
    case ChannelClass::MOD_NOTE:
    case ChannelClass::MOD_PROPERTIES:
        renewed.push_back(mod.ID);
        return false;
    default:
        return false;
    }
}

Song_Moment CHannelPlayerClass::Next_Moment() const noexcept {
    // With the player library on, only the channel on show is walked, for its notes to be seen.
    if (renderer != nullptr && !output.Views(channelRow))
        return {Song_Moment::NEVER, true};
    const Song_Moment start{NextEventI < 0 ? Song_Moment::NEVER : Moment_Of(nextStart), true};
    if (activeEvents.empty())
        return start;
    const ActiveEventRow& first = activeEvents.front();
    const Song_Moment active{Moment_Of(first.nextTime), first.next.isStart};
    return start < active ? start : active;
}

void CHannelPlayerClass::Play_Next_Moment() {
    const Song_Moment moment = Next_Moment();
    if (moment.at == Song_Moment::NEVER)
        return;
    if (activeEvents.empty() || Moment_Of(activeEvents.front().nextTime) != moment.at)
        Start_Next_Event();
    else if (activeEvents.front().isStep)
        Step_First_Chord();
    else
        End_First_Row();
}

void CHannelPlayerClass::Start_Next_Event() {
    const auto event = store->ReadEvent(NextEventI);
    if (event && Sounding) {
        if (event->Kind == EV_QCHORD)
            Start_Chord(*event);
        else if (event->Kind == EV_NOTE && !muted)
            Start_Note(*event);
        else if (event->Kind == EV_PATCH && muted)
            patchMissed = true;
        else if (event->Kind == EV_PATCH && renderer == nullptr)
            output.GCM_SetChannelPatch(channelRow, event->DataRef);
    }
    Set_Next(store->Get_NextEventI(NextEventI));
}

void CHannelPlayerClass::UnMuteChannel() {
    muted = false;
    // The player library sends what its own lists have passed.
    if (!std::exchange(patchMissed, false) || store == nullptr || !Sounding || renderer != nullptr)
        return;
    if (const std::int32_t patchRow = Patch_Before(playFrom); patchRow >= 0)
        output.GCM_SetChannelPatch(channelRow, patchRow);
}

} // namespace tonvex
