#pragma once

#include "platform/user_dialogs.h"
#include "project/midi_channel_reader.h"
#include "project/midi_file_data.h"
#include "project/work_outcome.h"
#include "song/change_hub.h"
#include "song/global_channels_manager.h"
#include "song/project_state.h"
#include "song/tempo_change_class.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tonvex {

/// What an import works on. All outlive it.
struct Midi_Import_Parts {
    GlobalChannelsManager& channels;
    TempoChangeClass& tempoChanges;
    Project_State& project;
    Change_Hub& hub;
    User_Dialogs& dialogs;
    std::function<void()> Reset;         ///< puts a new project in place of the song
    std::function<void()> Song_Replaced; ///< behind the last change: views and outputs follow
};

/// Turns a Standard MIDI File into a new project: one song channel for each patch of each MIDI channel that
/// has notes. Interface thread.
///
/// The first patch of a MIDI channel keeps the slot of the channel's number; each further one takes the
/// lowest slot that no channel of the file has. With none free, and on the drum channel always, the notes
/// stay where they are and the change becomes an event. Volume and pan (controllers 7, 11 and 10) while the
/// first note begins are where the slot stands, 100 and 64 without any; what follows is drawn into its maps,
/// as the steps that it is. Velocities stay as they are in the file, so a channel's own volume is 100. Bends,
/// pressure and other controllers have no place in a song. Texts, copyrights, lyrics and markers become the
/// comments. A track's name names the channel whose notes are in it, if they are all of one channel; that of
/// a first track of another kind is the title.
class MidiImport_Class {
public:
    explicit MidiImport_Class(Midi_Import_Parts parts);

    /// Done leaves a song that is modified and has no path. Failed: a file that cannot be opened, is no MIDI
    /// file or counts time in another way leaves the song as it was; one that is cut off or broken leaves a
    /// new project. Cancelled leaves the song as it was. While a song runs nothing happens, and it has
    /// failed.
    Work_Outcome ImportMidi(const std::filesystem::path& path);
    /// The same with a file in memory.
    Work_Outcome Import_Bytes(std::span<const std::uint8_t> bytes);

private:
    Work_Outcome Import(std::span<const std::uint8_t> bytes, Work_Progress& progress);
    Work_Outcome Fail(const std::string& text);
    void Put_In_Place(const Midi_File_Data& data, const std::vector<Midi_Channel>& midiChannels);
    void Set_Tempo(const Midi_File_Data& data);
    void Set_Texts(const Midi_File_Data& data);
    void Add_Channels(const Midi_File_Data& data, int midiChannel, const Midi_Channel& midi,
                      const std::vector<int>& slots);
    std::int32_t Add_Voice(const std::string& name, int slot, const Midi_Channel& midi, std::size_t voice);
    std::int16_t Patch_Row(const Midi_Patch& patch, bool isDrums) const;
    void Draw_Map(Map_Kind kind, int slot, int start, const std::vector<Midi_Step>& steps);

    Midi_Import_Parts parts;
};

} // namespace tonvex
