#include "tools/song_builder.h"

#include <algorithm>
#include <memory>

namespace tonvex {

namespace {

std::size_t Index(int row) {
    return static_cast<std::size_t>(row);
}

} // namespace

Song_Builder::Song_Builder(const NotesStuff& theNotes, const std::string& title, int tempo)
    : notes(theNotes) {
    song.State.ProjectTitle = title;
    song.State.ProjectTempo = tempo;
    Add_Mark(0.0, "Start", Mark::WHITE);
}

int Song_Builder::Add_Channel(const Builder_Channel& wanted) {
    const int row = static_cast<int>(contents.size());
    GlobalChannel& channel = song.Channels[Index(row)];
    channel.ChannelID = FIRST_ID + row;
    channel.ChannelName = wanted.name;
    channel.Volume = wanted.volume;
    channel.Pan = wanted.pan;
    channel.OutputChannel = wanted.slot;
    channel.PatchI = wanted.program;
    channel.PatchByte0 = wanted.program;
    channel.Style = wanted.style;
    channel.InUse = FLAG_ON;
    // An undrawn pan map follows the channel.
    for (MapPoint& point : song.SlotPans[wanted.slot].Points)
        point.Value = wanted.pan;
    contents.emplace_back().ChannelNumber = channel.ChannelID;
    return row;
}

void Song_Builder::Add_Note(int row, double start, double length, int note, int velocity) {
    Channel_Content& content = contents[Index(row)];
    content.Events.push_back(
        {0, start, EV_NOTE, static_cast<std::int32_t>(content.Tables.Notes.size()), FLAG_ON, -1});
    content.Tables.Notes.push_back(
        {static_cast<std::uint8_t>(note), static_cast<std::uint8_t>(velocity), length});
}

QChordData Song_Builder::Chord(int root, int type, int octave, double length, int velocity) const {
    QChordData chord;
    chord.VariableOctave = To_Flag(octave == 0);
    notes.FillChordData(chord, root, type, octave, true);
    chord.Length = length;
    chord.ChordVol = static_cast<std::uint8_t>(velocity);
    return chord;
}

void Song_Builder::Add_Chord(int row, double start, const QChordData& chord) {
    Channel_Content& content = contents[Index(row)];
    content.Events.push_back(
        {0, start, EV_QCHORD, static_cast<std::int32_t>(content.Tables.QChords.size()), FLAG_ON, -1});
    content.Tables.QChords.push_back(chord);
}

void Song_Builder::Add_Mark(double start, const std::string& name, std::int32_t colour) {
    song.Marks[Index(song.MarkCount++)] = {FLAG_ON, start, start, name, colour};
}

void Song_Builder::Add_Tempo(double beat, int tempo) {
    song.Tempo.Rows.push_back({FLAG_ON, beat, static_cast<std::int16_t>(tempo), 0});
    song.Tempo.Renumber();
}

void Song_Builder::Set_Effect(int slot, Effect_Kind kind, std::span<const float> values) {
    Effect_Values all = Neutral_Values(kind);
    std::copy(values.begin(), values.end(), all.begin());
    song.Effects.Set_Values(slot, kind, all);
    song.Effects.Set_On(slot, kind, true);
}

void Song_Builder::Draw_Volume(int slot, int first, int last,
                               std::span<const std::pair<double, int>> points) {
    Map_Content& map = song.SlotVolumes[Index(slot)];
    map.Points[0].Value = static_cast<std::int16_t>(first);
    map.Points[1].Value = static_cast<std::int16_t>(last);
    for (const auto& [beat, value] : points)
        map.Points.push_back({FLAG_ON, 0, static_cast<std::int16_t>(value), -1, -1, beat});
    map.Settle();
    map.Renumber();
}

void Song_Builder::Tell(const std::string& author, const std::string& comments) {
    song.State.ProjectAuthor = author;
    song.State.ProjectComments = comments;
}

Song_Snapshot Song_Builder::Take() {
    for (std::size_t row = 0; row < contents.size(); ++row) {
        contents[row].Settle();
        contents[row].Renumber();
        if (!contents[row].Events.empty())
            song.Contents[row] = std::make_shared<const Channel_Content>(std::move(contents[row]));
    }
    Follow_Channels(song.ChannelsList, song.Channels);
    return std::move(song);
}

} // namespace tonvex
