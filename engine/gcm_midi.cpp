#include "engine/gcm_midi.h"

#include <algorithm>
#include <span>

namespace tonvex {

namespace {

/// The velocity of a note off that no key or event gave.
constexpr int RELEASE_VELOCITY = 100;

bool Is_Note(int note) {
    return note >= 0 && note < 128;
}

std::size_t Index(int value) {
    return static_cast<std::size_t>(value);
}

} // namespace

GCM_Midi::GCM_Midi(midiapi& outputApi, GlobalChannelsManager& channelTable, Transport_State& state)
    : output(outputApi), channels(channelTable), transport(state) {
    lastPatch.fill(UNKNOWN);
    lastPan.fill(UNKNOWN);
    lastVolume.fill(UNKNOWN);
}

int GCM_Midi::Slot_Of(int channelRow) const {
    if (channelRow != GlobalChannelsManager::PRACTICE_ROW && !channels.Is_Live_Row(channelRow))
        return -1;
    const GlobalChannel& row = channels.Channels[Index(channelRow)];
    return Is_On(row.IsAudio) || row.OutputChannel >= OUTPUT_SLOTS ? -1 : row.OutputChannel;
}

void GCM_Midi::GCM_NoteOn(int channelRow, int note, int velocity, bool live, std::int64_t dueNs) {
    if (!Is_Note(note) || Dropped(live))
        return;
    if (live)
        Count_Live(note, 1);
    const int slot = Slot_Of(channelRow);
    if (slot >= 0)
        output.Midi_NoteOn(slot, note, velocity, dueNs);
}

void GCM_Midi::GCM_NoteOff(int channelRow, int note, int velocity, bool live, std::int64_t dueNs) {
    if (!Is_Note(note) || Dropped(live))
        return;
    if (live)
        Count_Live(note, -1);
    const int slot = Slot_Of(channelRow);
    if (slot >= 0 && !(live && Stored_Takes_Over(slot, note)))
        output.Midi_NoteOff(slot, note, velocity, dueNs);
}

bool GCM_Midi::Stored_Takes_Over(int slot, int note) const {
    return slotNoteCount[Index(slot)][Index(note)] > 0 ||
           (transport.EngineRunning && engineTakesOver && engineTakesOver(slot, note));
}

void GCM_Midi::GCM_LiveRelease(int note) {
    if (Is_Note(note))
        Count_Live(note, -1);
}

void GCM_Midi::Count_Live(int note, int change) {
    std::int32_t& presses = transport.LiveNotes[Index(note)];
    presses = std::max(presses + change, 0);
    if (transport.EngineRunning && onLiveNotes)
        onLiveNotes(transport.LiveNotes);
}

void GCM_Midi::GCM_PlayNoteOn(int channelRow, int note, int velocity, bool live, std::int64_t dueNs) {
    const int slot = Slot_Of(channelRow);
    if (slot < 0 || !Is_Note(note))
        return;
    Show_Note(channelRow, note);
    if (Dropped(live))
        return;
    std::int32_t& count = ChannelNoteCount[Index(channelRow)][Index(note)];
    std::uint8_t& heldOn = noteSlot[Index(channelRow)][Index(note)];
    if (count > 0 && heldOn != slot) {
        // The row was moved to another slot while the note sounded: what it holds goes along.
        std::int32_t& left = slotNoteCount[Index(heldOn)][Index(note)];
        left -= count;
        if (left == 0)
            output.Midi_NoteOff(heldOn, note, RELEASE_VELOCITY, dueNs);
        slotNoteCount[Index(slot)][Index(note)] += count;
    }
    heldOn = static_cast<std::uint8_t>(slot);
    ++count;
    ++slotNoteCount[Index(slot)][Index(note)];
    output.Midi_NoteOn(slot, note, velocity, dueNs);
}

void GCM_Midi::GCM_PlayNoteOff(int channelRow, int note, int velocity, bool live, std::int64_t dueNs) {
    if (!Is_Note(note))
        return;
    Hide_Note(channelRow, note);
    // No test of the row: a channel deleted while it sounds still gets its notes ended.
    if (Note_Count(channelRow, note) == 0 || Dropped(live))
        return;
    --ChannelNoteCount[Index(channelRow)][Index(note)];
    const int slot = noteSlot[Index(channelRow)][Index(note)];
    const bool held = slot == transport.LiveSlot && transport.LiveNotes[Index(note)] > 0;
    // In a file every note has its own end, so that whoever reads it finds the notes as they are stored.
    if ((--slotNoteCount[Index(slot)][Index(note)] == 0 && !held) || output.MidiCaptureOn())
        output.Midi_NoteOff(slot, note, velocity, dueNs);
}

void GCM_Midi::View_Channel(int channelRow) {
    if (channelRow == ViewChannelRow)
        return;
    for (int note = 0; note < static_cast<int>(NOTES); ++note)
        for (std::int32_t shown = shownNotes[Index(note)]; shown > 0; --shown)
            Hide_Note(ViewChannelRow, note);
    shownNotes.fill(0);
    ViewChannelRow = channelRow;
}

void GCM_Midi::Show_Note(int channelRow, int note) {
    if (!Views(channelRow))
        return;
    ++shownNotes[Index(note)];
    viewer->On_Note_Shown(note);
}

void GCM_Midi::Hide_Note(int channelRow, int note) {
    if (!Views(channelRow) || shownNotes[Index(note)] == 0)
        return;
    --shownNotes[Index(note)];
    viewer->On_Note_Hidden(note);
}

void GCM_Midi::Send_Patch(int slot, int patchRow) {
    const bool drums = slot == DRUM_SLOT;
    const std::span<const PatchRow> table = drums ? std::span<const PatchRow>(channels.Global_DrumPatches)
                                                  : std::span<const PatchRow>(channels.Global_Patches);
    if (patchRow < 0 || Index(patchRow) >= table.size())
        return;
    const PatchRow& patch = table[Index(patchRow)];
    lastPatch[Index(slot)] = patchRow;
    output.Midi_SetPatch(slot, patch.Patch, patch.Bank, patch.Font);
}

void GCM_Midi::Send_Pan(int slot, int value) {
    lastPan[Index(slot)] = value;
    output.Midi_SetPan(slot, value);
}

void GCM_Midi::Send_Volume(int slot, int value) {
    lastVolume[Index(slot)] = value;
    output.Midi_SetVolume(slot, value);
}

void GCM_Midi::Send_What_Differs(int slot, int pan, int volume) {
    const int panNow = lastPan[Index(slot)];
    if (panNow != UNKNOWN && panNow != pan)
        Send_Pan(slot, pan);
    if (lastVolume[Index(slot)] != volume)
        Send_Volume(slot, volume);
}

void GCM_Midi::GCM_SendAllVolumes() {
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
        Send_Volume(slot, channels.Maps.Slot_Map(Map_Kind::Volume, slot).Play_GetValue_At_TimePos(0.0));
}

void GCM_Midi::GCM_ResetMaps() {
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot) {
        const int volume = channels.Maps.Slot_Map(Map_Kind::Volume, slot).Play_GetValue_At_TimePos(0.0);
        Send_What_Differs(slot, channels.Maps.Slot_Map(Map_Kind::Pan, slot).Play_GetValue_At_TimePos(0.0),
                          std::max(volume, RESET_VOLUME_FLOOR));
    }
}

void GCM_Midi::GCM_UpdateMaps(double time) {
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
        Send_What_Differs(slot, channels.Maps.Slot_Map(Map_Kind::Pan, slot).Play_GetValue_At_TimePos(time),
                          channels.Maps.Slot_Map(Map_Kind::Volume, slot).Play_GetValue_At_TimePos(time));
}

void GCM_Midi::GCM_SetChannelPatch(int channelRow, int patchRow) {
    const int slot = Slot_Of(channelRow);
    if (slot >= 0)
        Send_Patch(slot, patchRow);
}

void GCM_Midi::GCM_SetChannelPan(int channelRow) {
    const int slot = Slot_Of(channelRow);
    if (slot < 0)
        return;
    const int pan = channels.Channels[Index(channelRow)].Pan;
    if (lastPan[Index(slot)] != pan)
        Send_Pan(slot, pan);
}

void GCM_Midi::GCM_SendAllPatches() {
    lastPan.fill(UNKNOWN);
    std::array<int, OUTPUT_SLOTS> lastRow{};
    lastRow.fill(-1);
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        const int slot = Slot_Of(row);
        if (slot >= 0)
            lastRow[Index(slot)] = row;
    }
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot) {
        if (lastRow[Index(slot)] < 0)
            continue;
        const GlobalChannel& row = channels.Channels[Index(lastRow[Index(slot)])];
        Send_Patch(slot, row.PatchI);
        Send_Pan(slot, row.Pan);
    }
}

void GCM_Midi::GCM_SetChannelEffects(int channelRow) {
    const int slot = Slot_Of(channelRow);
    if (slot >= 0)
        output.Midi_SetEffects(slot, channels.Effects.Row(slot));
}

void GCM_Midi::GCM_SendAllEffects() {
    for (int slot = 0; slot < OUTPUT_SLOTS; ++slot)
        output.Midi_SetEffects(slot, channels.Effects.Row(slot));
}

void GCM_Midi::Clear_Note_Counts() {
    for (auto& row : ChannelNoteCount)
        row.fill(0);
    for (auto& slot : slotNoteCount)
        slot.fill(0);
    shownNotes.fill(0);
}

int GCM_Midi::Note_Count(int channelRow, int note) const {
    if (channelRow < 0 || Index(channelRow) >= ROWS || !Is_Note(note))
        return 0;
    return ChannelNoteCount[Index(channelRow)][Index(note)];
}

bool GCM_Midi::Performer_Holds(int channelRow, int note) const {
    return Is_Note(note) && transport.LiveNotes[Index(note)] > 0 && transport.LiveSlot >= 0 &&
           Slot_Of(channelRow) == transport.LiveSlot;
}

int GCM_Midi::Slot_Patch(int channelRow) const {
    const int slot = Slot_Of(channelRow);
    return slot < 0 ? UNKNOWN : lastPatch[Index(slot)];
}

std::uint32_t GCM_Midi::GCM_PackPatch(std::int16_t patch, std::uint8_t bank, std::uint8_t flag) noexcept {
    const std::uint32_t word = static_cast<std::uint16_t>(patch);
    return (word << 16U) | (static_cast<std::uint32_t>(bank) << 8U) | flag;
}

void GCM_Midi::GCM_UnpackPatch(std::uint32_t packed, std::int16_t& patch, std::uint8_t& bank,
                               std::uint8_t& flag) noexcept {
    patch = static_cast<std::int16_t>(static_cast<std::uint16_t>(packed >> 16U));
    bank = static_cast<std::uint8_t>((packed >> 8U) & 255U);
    flag = static_cast<std::uint8_t>(packed & 255U);
}

} // namespace tonvex
