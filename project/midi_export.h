#pragma once

#include "engine/transport_parts.h"
#include "platform/midi_ports.h"
#include "platform/sound_door.h"
#include "project/export_buffers.h"
#include "project/midi_format.h"
#include "project/work_outcome.h"

#include <chrono>
#include <filesystem>

namespace tonvex {

struct Midi_Export_Options {
    /// A track for each drum in place of one for the drum channel.
    bool ExportDrumsSplit = false;
    /// Stands behind the author's name; a date that is none (as this one) stays away.
    std::chrono::year_month_day date{};
};

/// Writes the whole song as a Standard MIDI File: format 1, 192 ticks a beat, a track of tempos, one of
/// texts, then one for each MIDI channel in use. What is written is what a listener would hear: the channel
/// players play the song without real time on a road of their own, which sounds nothing and leaves the
/// program's output, its maps and its mutes as they are. Beyond that, every note gets an end of its own, and
/// a note of no length is kept, so that a reader finds the notes as they are stored. Interface thread; not
/// while the song runs.
class Midi_Export {
public:
    /// The doors are not opened. All outlive the object.
    Midi_Export(const Transport_Parts& song, Sound_Door& sound, Midi_Ports_Door& ports);

    /// Replaces the file at path in one step. Audio channels are told about, then left out.
    Work_Outcome Export(const std::filesystem::path& path, const Midi_Export_Options& options);

    /// The file's bytes.
    midi_format::Bytes File_Bytes(const Export_Buffers& buffers, const Midi_Export_Options& options) const;
    /// Plays the song from its start until nothing is left to sound. False when the user stopped it.
    bool Render_To_Buffers(Export_Buffers& buffers, Work_Progress& progress) const;

private:
    bool Has_Audio() const;
    std::vector<double> Map_Moments(const Export_Buffers& buffers) const;
    midi_format::Bytes Tempo_Track() const;
    midi_format::Bytes Text_Track(const Midi_Export_Options& options) const;

    const Transport_Parts song;
    Sound_Door& sound;
    Midi_Ports_Door& ports;
};

} // namespace tonvex
