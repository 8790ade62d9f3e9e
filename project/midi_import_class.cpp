#include "project/midi_import_class.h"

#include "base/file_io.h"
#include "base/rounding.h"
#include "base/text_codec.h"
#include "project/midi_file_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <exception>
#include <limits>
#include <utility>

namespace tonvex {

namespace {

constexpr const char* LOAD_ERROR = "Error loading Midi file";
constexpr std::int32_t FILE_TEMPO = 120; ///< of a file that sets none
constexpr std::uint8_t PLAIN_VOLUME = 100;
constexpr int NO_SLOT = -1;
constexpr std::size_t LONGEST_COMMENTS = 65535; ///< bytes that a project file has room for
constexpr std::size_t LONGEST_FILE = std::size_t{1} << 30;

std::size_t Index(int value) {
    return static_cast<std::size_t>(value);
}

std::string Percent(int percent) {
    return "Loading " + std::to_string(percent) + " %";
}

std::int32_t Tempo_Of(const Midi_Tempo& event) {
    const std::int64_t tempo = RoundHalfEven(midi_format::TEMPO_UNITS / std::max(event.microseconds, 1));
    return static_cast<std::int32_t>(std::min<std::int64_t>(tempo, std::numeric_limits<std::int16_t>::max()));
}

/// For each MIDI channel the slots of its voices. Every channel's own slot is taken before any further one.
std::vector<std::vector<int>> Share_Slots(const std::vector<Midi_Channel>& midiChannels) {
    std::array<bool, GlobalChannelsManager::SLOTS> taken{};
    taken[midi_format::DRUM_CHANNEL] = true;
    for (std::size_t channel = 0; channel < midiChannels.size(); ++channel)
        taken[channel] = taken[channel] || !midiChannels[channel].voices.empty();
    std::vector<std::vector<int>> slots(midiChannels.size());
    for (std::size_t channel = 0; channel < midiChannels.size(); ++channel) {
        for (std::size_t voice = 0; voice < midiChannels[channel].voices.size(); ++voice) {
            auto* const free = std::find(taken.begin(), taken.end(), false);
            if (voice == 0) {
                slots[channel].push_back(static_cast<int>(channel));
            } else if (channel == midi_format::DRUM_CHANNEL || free == taken.end()) {
                slots[channel].push_back(NO_SLOT);
            } else {
                *free = true;
                slots[channel].push_back(static_cast<int>(free - taken.begin()));
            }
        }
    }
    return slots;
}

/// A file's volumes are written for players that leave much room above; here a map that nobody touched is as
/// loud as a song bears. So the loudest volume of the file becomes that of an untouched map, the others
/// follow in proportion. A file that stays below, such as one of our own, is left as it is.
void Level_Volumes(std::vector<Midi_Channel>& midiChannels) {
    int loudest = 0;
    for (const Midi_Channel& midi : midiChannels) {
        if (midi.voices.empty())
            continue;
        loudest = std::max(loudest, midi.volume);
        for (const Midi_Step& step : midi.volumeSteps)
            loudest = std::max(loudest, step.value);
    }
    if (loudest <= PanVol_Class::NEW_VALUE)
        return;
    const auto level = [loudest](int value) {
        const double levelled = double{PanVol_Class::NEW_VALUE} * value / loudest;
        return std::max(static_cast<int>(RoundHalfUp(levelled)), std::min(value, 1));
    };
    for (Midi_Channel& midi : midiChannels) {
        midi.volume = level(midi.volume);
        for (Midi_Step& step : midi.volumeSteps)
            step.value = level(step.value);
    }
}

const Midi_Track* Track_Of(const Midi_File_Data& data, std::uint32_t order) {
    const auto behind =
        std::partition_point(data.tracks.begin(), data.tracks.end(),
                             [order](const Midi_Track& track) { return track.firstOrder <= order; });
    return behind == data.tracks.begin() ? nullptr : &*std::prev(behind);
}

bool Names_Its_Channel(const Midi_Track& track) {
    return std::has_single_bit(track.noteChannels);
}

} // namespace

MidiImport_Class::MidiImport_Class(Midi_Import_Parts importParts) : parts(std::move(importParts)) {}

Work_Outcome MidiImport_Class::ImportMidi(const std::filesystem::path& path) {
    const auto bytes = Read_File(path, LONGEST_FILE);
    return bytes ? Import_Bytes(*bytes) : Fail("Can't open file: " + path.string());
}

Work_Outcome MidiImport_Class::Import_Bytes(std::span<const std::uint8_t> bytes) {
    if (parts.channels.Play_Is_Active())
        return Work_Outcome::Failed;
    try {
        const auto progress = parts.dialogs.Begin_Work("Import Midi File");
        return Import(bytes, *progress);
    } catch (const std::exception&) { // there is no room for the song
        parts.Reset();
        return Fail(LOAD_ERROR);
    }
}

Work_Outcome MidiImport_Class::Fail(const std::string& text) {
    parts.dialogs.Show_Message(Box_Kind::Critical, text);
    return Work_Outcome::Failed;
}

Work_Outcome MidiImport_Class::Import(std::span<const std::uint8_t> bytes, Work_Progress& progress) {
    constexpr int HEADER_READ = 10;
    constexpr int TRACKS_READ = 30;
    constexpr int PAIRING = 35;
    constexpr int PAIRED = 95;
    constexpr int WHOLE = 100;
    Midi_File_Reader reader(bytes);
    switch (reader.Read_Header()) {
    case Midi_File_Reader::Header::Bad:
        return Fail(LOAD_ERROR);
    case Midi_File_Reader::Header::Time_Format:
        return Fail("Time format not supported");
    case Midi_File_Reader::Header::Good:
        break;
    }
    if (!progress.Show(Percent(HEADER_READ), HEADER_READ))
        return Work_Outcome::Cancelled;
    Midi_File_Data data;
    if (!reader.Read_Tracks(data)) {
        parts.Reset();
        return Fail(LOAD_ERROR);
    }
    if (!progress.Show(Percent(TRACKS_READ), TRACKS_READ))
        return Work_Outcome::Cancelled;
    std::vector<Midi_Channel> midiChannels;
    for (int channel = 0; channel < midi_format::CHANNELS; ++channel) {
        const int percent = PAIRING + channel * (PAIRED - PAIRING) / midi_format::CHANNELS;
        if (!progress.Show(Percent(percent), percent))
            return Work_Outcome::Cancelled;
        midiChannels.push_back(Midi_Channel_Reader(data, channel).Read());
    }
    Level_Volumes(midiChannels);
    Put_In_Place(data, midiChannels);
    (void)progress.Show(Percent(WHOLE), WHOLE);
    return Work_Outcome::Done;
}

void MidiImport_Class::Put_In_Place(const Midi_File_Data& data,
                                    const std::vector<Midi_Channel>& midiChannels) {
    parts.Reset();
    const bool hasNotes = std::any_of(midiChannels.begin(), midiChannels.end(),
                                      [](const Midi_Channel& midi) { return !midi.voices.empty(); });
    if (hasNotes) // else the channel of a new project stays
        parts.channels.Clear();
    const auto slots = Share_Slots(midiChannels);
    for (std::size_t channel = 0; channel < midiChannels.size(); ++channel)
        Add_Channels(data, static_cast<int>(channel), midiChannels[channel], slots[channel]);
    Set_Texts(data);
    Set_Tempo(data);
    parts.Song_Replaced();
    parts.project.Modified = true;
}

void MidiImport_Class::Set_Tempo(const Midi_File_Data& data) {
    std::vector<Midi_Tempo> events = data.TempoEvents;
    std::stable_sort(events.begin(), events.end(),
                     [](const Midi_Tempo& a, const Midi_Tempo& b) { return a.Tick < b.Tick; });
    std::int32_t first = FILE_TEMPO;
    for (std::size_t i = 0; i < events.size(); ++i) {
        if (i + 1 < events.size() && events[i + 1].Tick == events[i].Tick)
            continue; // the last of one moment holds
        if (events[i].Tick == 0)
            first = Tempo_Of(events[i]);
        else
            parts.tempoChanges.AddTempoChange(events[i].Tick * data.BeatsPerTick,
                                              static_cast<std::int16_t>(Tempo_Of(events[i])));
    }
    parts.hub.Message(nullptr, HUB_SET_TEMPO, first);
}

void MidiImport_Class::Set_Texts(const Midi_File_Data& data) {
    std::string comments;
    for (const std::string& text : data.texts)
        comments += (comments.empty() ? "" : "\r\n") + text;
    parts.project.ProjectComments = Text_From_File(Text_To_File_Cut(comments, LONGEST_COMMENTS));
    if (!data.tracks.empty() && !Names_Its_Channel(data.tracks.front()) && !data.tracks.front().name.empty())
        parts.project.ProjectTitle = data.tracks.front().name;
}

void MidiImport_Class::Add_Channels(const Midi_File_Data& data, int midiChannel, const Midi_Channel& midi,
                                    const std::vector<int>& slots) {
    if (midi.voices.empty())
        return;
    const Midi_Track* track = Track_Of(data, midi.firstNoteOrder);
    const bool named = track != nullptr && Names_Its_Channel(*track) && !track->name.empty();
    const std::string name = named ? track->name : "Channel " + std::to_string(midiChannel);
    const bool isDrums = midiChannel == midi_format::DRUM_CHANNEL;
    const int home = parts.channels.ChannelI(Add_Voice(name, slots.front(), midi, 0));
    if (home < 0)
        return;
    ChannelClass& store = parts.channels.Store(home);
    std::int16_t patchRow = Patch_Row(midi.voices.front().patch, isDrums);
    for (const auto& change : midi.patchChanges) {
        if (change.voice != 0 && slots[change.voice] != NO_SLOT)
            continue;
        const std::int16_t changed = Patch_Row(midi.voices[change.voice].patch, isDrums);
        if (changed != std::exchange(patchRow, changed))
            store.AddNewEvent(change.beat, PatchData{changed}, true);
    }
    for (std::size_t voice = 0; voice < midi.voices.size(); ++voice) {
        if (voice != 0 && slots[voice] != NO_SLOT) {
            (void)Add_Voice(name, slots[voice], midi, voice);
            continue;
        }
        for (const Midi_Voice::Note& note : midi.voices[voice].notes)
            store.AddNewEvent(note.startBeat, note.data, true);
    }
    store.ReSort_StartTime();
}

/// A channel on the slot, as the voice sounds, with its notes unless it is the first, which may have others
/// too.
std::int32_t MidiImport_Class::Add_Voice(const std::string& name, int slot, const Midi_Channel& midi,
                                         std::size_t voice) {
    const std::int32_t channelId = parts.channels.New_ChannelID();
    const int row = parts.channels.Add_Channel(channelId, false, slot, name);
    if (row < 0)
        return channelId;
    parts.channels.Set_Patch(channelId,
                             Patch_Row(midi.voices[voice].patch, slot == midi_format::DRUM_CHANNEL));
    parts.channels.Set_Volume(channelId, PLAIN_VOLUME);
    parts.channels.Set_Pan(channelId, static_cast<std::uint8_t>(midi.pan));
    Draw_Map(Map_Kind::Volume, slot, midi.volume, midi.volumeSteps);
    Draw_Map(Map_Kind::Pan, slot, midi.pan, midi.panSteps);
    if (voice == 0)
        return channelId;
    ChannelClass& store = parts.channels.Store(row);
    for (const Midi_Voice::Note& note : midi.voices[voice].notes)
        store.AddNewEvent(note.startBeat, note.data, true);
    store.ReSort_StartTime();
    return channelId;
}

/// The row with bank and program, else that of the program alone.
std::int16_t MidiImport_Class::Patch_Row(const Midi_Patch& patch, bool isDrums) const {
    const GlobalChannelsManager& channels = parts.channels;
    const auto row_of = [&patch](std::span<const PatchRow> rows, int bank) {
        const auto found = std::find_if(rows.begin(), rows.end(), [&](const PatchRow& row) {
            return row.Patch == patch.program && row.Bank == bank;
        });
        return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
    };
    const std::span<const PatchRow> rows =
        isDrums ? std::span<const PatchRow>(channels.Global_DrumPatches).first(Index(channels.DrumPatchCount))
                : std::span<const PatchRow>(channels.Global_Patches).first(Index(channels.PatchCount));
    int row = row_of(rows, patch.bank);
    if (row < 0)
        row = row_of(rows, 0);
    if (row < 0) // the melodic table begins with the programs; a kit that is not there is the standard one
        row = isDrums ? 0 : patch.program;
    return static_cast<std::int16_t>(row);
}

void MidiImport_Class::Draw_Map(Map_Kind kind, int slot, int start, const std::vector<Midi_Step>& steps) {
    PanVol_Class& map = parts.channels.Maps.Slot_Map(kind, slot);
    map.Set_Fixed_Points(start);
    int value = start;
    for (const Midi_Step& step : steps) {
        // A step is two points at one time.
        std::int32_t id = 0;
        map.Add_Point(step.beat, value, id);
        map.Add_Point(step.beat, step.value, id);
        value = step.value;
    }
    map.Set_Point_Val(map.Get_LastPoint_ID(), value);
}

} // namespace tonvex
