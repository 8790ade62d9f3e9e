#include "engine/render_module.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>
#include <vector>

namespace tonvex {

namespace {

/// The thread answers within a fraction of a millisecond; messages run only when it is held up.
constexpr int WAITS_BEFORE_MESSAGES_RUN = 100;
constexpr std::chrono::microseconds WAIT{100};

std::uint16_t Note_Extra(const ChannelClass::Event_View& event, std::span<const std::int32_t> renewed) {
    std::uint32_t extra = static_cast<std::uint32_t>(event.EventID) & CueRow::TAG;
    if (event.Kind == EV_QCHORD)
        extra |= CueRow::YIELDS;
    if (std::find(renewed.begin(), renewed.end(), event.EventID) != renewed.end())
        extra |= CueRow::RENEWED;
    return static_cast<std::uint16_t>(extra);
}

} // namespace

RenderModule::RenderModule(GlobalChannelsManager& channelTable, GCM_Midi& gcmMidi, CueEngine& cueEngine,
                           Run_Loop& runLoop, const QChord_Parts& partsOfChords)
    : channels(channelTable), gcm(gcmMidi), engine(cueEngine), loop(runLoop), chordParts(partsOfChords) {
    listOfRow.fill(NO_LIST);
}

bool RenderModule::Render_Start(int excludeRow) {
    std::vector<Render_MidiEventColClass> lists;
    std::int32_t maxRows = 0;
    listOfRow.fill(NO_LIST);
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!channels.Is_Live_Row(row) || Is_On(channels.Channels[static_cast<std::size_t>(row)].IsAudio))
            continue;
        listOfRow[static_cast<std::size_t>(row)] = static_cast<std::int32_t>(lists.size());
        lists.push_back(row == excludeRow ? Render_EmptyChannel(row) : Render_Channel(row));
        maxRows = std::max(maxRows, lists.back().TotalEvents());
    }
    if (!engine.Init_Buffers(static_cast<std::int32_t>(lists.size()) - 1, maxRows)) {
        listOfRow.fill(NO_LIST);
        return false;
    }
    for (std::size_t i = 0; i < lists.size(); ++i)
        lists[i].CopyDataToDll(engine, static_cast<std::int32_t>(i));
    return true;
}

Render_MidiEventColClass RenderModule::Render_EmptyChannel(int channelRow) const {
    Render_MidiEventColClass list;
    list.AddEvent(0, 0.0, CueRow::LIST_MARKER, static_cast<std::uint16_t>(channelRow));
    return list;
}

Render_MidiEventColClass RenderModule::Render_Channel(int channelRow) {
    return Render(channelRow, true);
}

Render_MidiEventColClass RenderModule::Render(int channelRow, bool sendPatches,
                                              std::span<const std::int32_t> renewed) {
    Render_MidiEventColClass list = Render_EmptyChannel(channelRow);
    if (channelRow < 0 || channelRow >= GlobalChannelsManager::CHANNEL_ROWS ||
        !channels.Is_Live_Row(channelRow))
        return list;
    const GlobalChannel& channel = channels.Channels[static_cast<std::size_t>(channelRow)];
    if (Is_On(channel.IsAudio) || channel.OutputChannel >= OUTPUT_SLOTS)
        return list;
    const auto slot = static_cast<std::int16_t>(channel.OutputChannel);
    const ChannelClass& store = channels.Store(channelRow);
    for (auto eventI = store.FirstEvent(); eventI >= 0; eventI = store.Get_NextEventI(eventI)) {
        const auto event = store.ReadEvent(eventI);
        if (!event)
            continue;
        const std::int32_t before = list.TotalEvents();
        if (event->Kind == EV_NOTE) {
            Add_Note(list, slot, *event);
        } else if (event->Kind == EV_QCHORD) {
            Add_Chord(list, slot, *event);
        } else if (event->Kind == EV_PATCH) {
            if (sendPatches)
                gcm.GCM_SetChannelPatch(channelRow, event->DataRef);
            Add_Patch(list, slot, *event);
        }
        list.Set_Note_Extra(list.TotalEvents() - before, Note_Extra(*event, renewed));
    }
    return list;
}

void RenderModule::Add_Note(Render_MidiEventColClass& list, std::int16_t slot,
                            const ChannelClass::Event_View& event) const {
    // A volume of 0 would make the row an off.
    if (event.Note->Length <= 0.0 || event.Note->Vol == 0)
        return;
    list.AddEvent(slot, event.StartTime, event.Note->Note, event.Note->Vol);
    list.AddEvent(slot, event.StartTime + event.Note->Length, event.Note->Note, 0);
}

void RenderModule::Add_Chord(Render_MidiEventColClass& list, std::int16_t slot,
                             const ChannelClass::Event_View& event) const {
    if (event.QChord->ChordVol == 0)
        return;
    QChordClass chord(chordParts);
    chord.Set_Stored_Chord(*event.QChord, event.StartTime);
    std::int32_t count = 0;
    chord.Render_GetEvents(list, slot, event.QChord->ChordVol, true, QChordClass::STOP, count);
}

void RenderModule::Add_Patch(Render_MidiEventColClass& list, std::int16_t slot,
                             const ChannelClass::Event_View& event) const {
    const std::span<const PatchRow> table = slot == DRUM_SLOT
                                                ? std::span<const PatchRow>(channels.Global_DrumPatches)
                                                : std::span<const PatchRow>(channels.Global_Patches);
    if (event.DataRef < 0 || static_cast<std::size_t>(event.DataRef) >= table.size())
        return;
    const PatchRow& patch = table[static_cast<std::size_t>(event.DataRef)];
    const int program = std::clamp<int>(patch.Patch, 0, 127);
    list.AddEvent(slot, event.StartTime, CueRow::PATCH_CHANGE,
                  static_cast<std::uint16_t>(program + 256 * patch.Bank),
                  static_cast<std::uint16_t>(patch.Font));
}

std::int32_t RenderModule::List_Of(int channelRow) const {
    return channelRow < 0 || channelRow >= GlobalChannelsManager::CHANNEL_ROWS
               ? NO_LIST
               : listOfRow[static_cast<std::size_t>(channelRow)];
}

// Patches are not sent at once here: the channel sounds, and its player has set the one that holds.
void RenderModule::Render_UpdateChannel(int channelRow) {
    if (const std::int32_t list = List_Of(channelRow); list != NO_LIST)
        Render(channelRow, false).CopyDataToDll_ModdedChannel(engine, list);
}

void RenderModule::Render_UpdateEvents(int channelRow, std::span<const std::int32_t> renewed) {
    if (const std::int32_t list = List_Of(channelRow); list != NO_LIST)
        Render(channelRow, false, renewed).CopyDataToDll_ModdedChannel(engine, list, true);
}

void RenderModule::Render_DropChannel(int channelRow) {
    if (const std::int32_t list = List_Of(channelRow); list != NO_LIST)
        Render_EmptyChannel(channelRow).CopyDataToDll_ModdedChannel(engine, list);
}

void RenderModule::Render_StopPlayer() {
    engine.Player_Stop();
    for (int waits = 0; !engine.Player_IsPaused(); ++waits) {
        if (waits < WAITS_BEFORE_MESSAGES_RUN)
            std::this_thread::sleep_for(WAIT);
        else
            loop.Let_Messages_Run();
    }
}

} // namespace tonvex
