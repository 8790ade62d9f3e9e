#include "project/midi_export.h"

#include "base/file_io.h"
#include "base/rounding.h"
#include "base/text_codec.h"
#include "engine/channel_players.h"
#include "project/map_moments.h"
#include "project/midi_drum_split.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <string_view>

namespace tonvex {

namespace {

using midi_format::Bytes;

constexpr const char* STATUS = "Exporting to midi ";
constexpr const char* NO_COMMENTS = "Created with Tonvex";
constexpr std::array<std::uint8_t, 4> FORMAT_1_HEADER = {0, 1, 0, 0}; ///< the last is the track count
constexpr std::size_t TRACK_COUNT_AT = 11;
constexpr int WHOLE_PERCENT = 100;

std::string Percent(int percent) {
    return STATUS + std::to_string(percent) + " %";
}

/// A text as it is written: on one line, cut to what one byte of length can tell.
std::string Text_Bytes(const std::string& text) {
    std::string line;
    for (const std::string& part : Split_Lines(text))
        line += (line.empty() ? "" : " ") + part;
    return Text_To_File_Cut(line, midi_format::MAX_TEXT_BYTES);
}

void Append_Tempo(Bytes& track, std::int64_t delta, std::int32_t tempo) {
    const std::int64_t value = RoundHalfEven(midi_format::TEMPO_UNITS / std::max(tempo, 1));
    midi_format::Append_Delta(track, delta);
    track.insert(track.end(), {midi_format::META, midi_format::META_TEMPO, 3});
    midi_format::Append_Number(
        track, static_cast<std::uint32_t>(std::min<std::int64_t>(value, midi_format::MAX_TEMPO_VALUE)), 3);
}

std::string Two_Digits(unsigned number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string Day_Text(std::chrono::year_month_day day) {
    return "- " + Two_Digits(static_cast<unsigned>(day.month())) + "/" +
           Two_Digits(static_cast<unsigned>(day.day())) + "/" + std::to_string(static_cast<int>(day.year()));
}

} // namespace

Midi_Export::Midi_Export(const Transport_Parts& parts, Sound_Door& soundDoor, Midi_Ports_Door& portsDoor)
    : song(parts), sound(soundDoor), ports(portsDoor) {}

bool Midi_Export::Has_Audio() const {
    return std::any_of(song.channels.Channels.begin(),
                       song.channels.Channels.begin() + GlobalChannelsManager::CHANNEL_ROWS,
                       [](const auto& row) { return Is_On(row.InUse) && Is_On(row.IsAudio); });
}

Work_Outcome Midi_Export::Export(const std::filesystem::path& path, const Midi_Export_Options& options) {
    if (Has_Audio())
        song.dialogs.Show_Message(Box_Kind::Information,
                                  "Audio channels are not supported by midi files and\r\nwon't be saved.");
    const auto progress = song.dialogs.Begin_Work("Export to midi file");
    Export_Buffers buffers(song.channels);
    if (!progress->Show(Percent(0), 0) || !Render_To_Buffers(buffers, *progress))
        return Work_Outcome::Cancelled;
    const auto fits = [](const Bytes& column) {
        return column.size() <= std::numeric_limits<std::int32_t>::max();
    };
    std::string error;
    if (!std::all_of(buffers.ExportBuffer.begin(), buffers.ExportBuffer.end(), fits) ||
        !Replace_File(path, File_Bytes(buffers, options), error)) {
        song.dialogs.Show_Message(Box_Kind::Critical, "Error exporting file");
        return Work_Outcome::Failed;
    }
    (void)progress->Show(Percent(WHOLE_PERCENT), WHOLE_PERCENT);
    return Work_Outcome::Done;
}

std::vector<double> Midi_Export::Map_Moments(const Export_Buffers& buffers) const {
    std::vector<double> moments;
    for (int slot = 0; slot < GlobalChannelsManager::SLOTS; ++slot) {
        if (!buffers.Is_Used(slot))
            continue;
        for (const Map_Kind kind : {Map_Kind::Volume, Map_Kind::Pan})
            Add_Map_Moments(song.channels.Maps.Slot_Map(kind, slot), song.project.SongLength, moments);
    }
    std::sort(moments.begin(), moments.end());
    moments.erase(std::unique(moments.begin(), moments.end()), moments.end());
    return moments;
}

bool Midi_Export::Render_To_Buffers(Export_Buffers& buffers, Work_Progress& progress) const {
    Simulated_Counter counter;
    midiapi road(sound, ports, song.dialogs, counter, song.channels);
    road.Set_Capture(&buffers);
    Transport_State state;
    GCM_Midi gcm(road, song.channels, state);
    const Transport_Parts parts{song.channels, song.tempoChanges, song.project,     road,
                                gcm,           song.input,        song.layout,      song.hub,
                                state,         song.options,      song.loop,        counter,
                                song.dialogs,  song.observers,    song.fingerpicks, song.cue,
                                song.render};
    VGetTickCount clock(counter, song.tempoChanges, song.project);
    clock.UseTempoMap = true;
    clock.SetTime(0.0);
    Channel_Players players(parts, clock);
    players.Make(-1);
    gcm.GCM_SendAllPatches();
    gcm.GCM_SendAllVolumes();
    players.Start_At(0.0);

    const std::vector<double> mapMoments = Map_Moments(buffers);
    auto mapMoment = mapMoments.begin();
    const double length = std::max(song.channels.Longest_Channel_Beats(), 1.0);
    int shown = 0;
    for (auto at = players.Next_At(); at != Song_Moment::NEVER; at = players.Next_At()) {
        for (; mapMoment != mapMoments.end() && Moment_At(*mapMoment) <= at; ++mapMoment) {
            buffers.Set_Position(*mapMoment);
            gcm.GCM_UpdateMaps(*mapMoment);
        }
        const double beat = static_cast<double>(at) / Song_Moment::A_BEAT;
        buffers.Set_Position(beat);
        players.Step(beat);
        const int percent = static_cast<int>(std::min(beat / length, 1.0) * (WHOLE_PERCENT - 1));
        if (percent == shown)
            continue;
        shown = percent;
        if (!progress.Show(Percent(percent), percent))
            return false;
    }
    return true;
}

Bytes Midi_Export::File_Bytes(const Export_Buffers& buffers, const Midi_Export_Options& options) const {
    constexpr std::string_view name = "MThd";
    Bytes file(name.begin(), name.end());
    midi_format::Append_Number(file, midi_format::HEADER_LENGTH, 4);
    file.insert(file.end(), FORMAT_1_HEADER.begin(), FORMAT_1_HEADER.end());
    midi_format::Append_Number(file, Export_Buffers::TICKS_A_BEAT, 2);
    const auto add_track = [&file](const Bytes& events) {
        midi_format::Append_Track(file, events);
        ++file[TRACK_COUNT_AT];
    };
    add_track(Tempo_Track());
    add_track(Text_Track(options));
    for (int channel = 0; channel < midi_format::CHANNELS; ++channel) {
        const int row = buffers.First_Row_Of(channel);
        if (row < 0 || buffers.ExportBufferLen(channel) == 0)
            continue;
        const Bytes& column = buffers.ExportBuffer[static_cast<std::size_t>(channel)];
        const std::string& channelName = song.channels.Channels[static_cast<std::size_t>(row)].ChannelName;
        const auto add_named = [&add_track](const std::string& trackName, const Bytes& events) {
            Bytes track;
            midi_format::Append_Delta(track, 0);
            midi_format::Append_Meta(track, midi_format::META_TRACK_NAME, Text_Bytes(trackName));
            track.insert(track.end(), events.begin(), events.end());
            add_track(track);
        };
        if (channel != midi_format::DRUM_CHANNEL || !options.ExportDrumsSplit) {
            add_named(channelName, column);
            continue;
        }
        for (const Drum_Track& drum : Split_Drums(column))
            add_named(drum.note == Drum_Track::THE_REST ? channelName
                                                        : channelName + " " + std::to_string(drum.note),
                      drum.events);
    }
    return file;
}

Bytes Midi_Export::Tempo_Track() const {
    Bytes track;
    Append_Tempo(track, 0, song.project.ProjectTempo);
    std::int64_t lastTick = 0;
    for (const TempoChange& change : song.tempoChanges.In_Time_Order()) {
        // Distances between whole ticks, so that no rounding adds up and the tempo stays with its notes.
        const std::int64_t tick = std::max(Export_Buffers::Tick_At(change.BeatN), lastTick);
        if (tick > midi_format::LAST_TICK) // readers count no further, and no note of the song is there
            break;
        Append_Tempo(track, tick - lastTick, change.Tempo);
        lastTick = tick;
    }
    return track;
}

Bytes Midi_Export::Text_Track(const Midi_Export_Options& options) const {
    const Project_State& project = song.project;
    const std::string title = project.ProjectTitle.empty() ? "" : project.ProjectTitle + " - ";
    Bytes track;
    midi_format::Append_Delta(track, 0);
    midi_format::Append_Meta(
        track, midi_format::META_TEXT,
        Text_Bytes(title + (project.ProjectComments.empty() ? NO_COMMENTS : project.ProjectComments)));
    if (!project.ProjectAuthor.empty()) {
        const std::string day = options.date.ok() ? Day_Text(options.date) : "";
        midi_format::Append_Delta(track, 0);
        midi_format::Append_Meta(track, midi_format::META_COPYRIGHT, Text_Bytes(project.ProjectAuthor + day));
    }
    return track;
}

} // namespace tonvex
