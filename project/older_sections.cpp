#include "project/older_sections.h"

#include "song/tempo_change_class.h"

#include <memory>
#include <utility>

namespace tonvex {

namespace {

constexpr std::size_t CHANNEL_NAME_BYTES = 50;
constexpr std::uint8_t CONVERTED_STYLE = 4;
constexpr std::uint8_t DRUM_SLOT = 9;
constexpr std::int16_t PROGRAMS = 128;

double Ms_Per_Beat(const Project_Reading& reading) {
    return Beat_Length_Ms(reading.song.State.ProjectTempo);
}

/// Below 1 stand the song's start and the values that are no time.
double Beats_Of_Mark(std::int32_t ms, double msPerBeat) {
    return ms < 1 ? ms : ms / msPerBeat;
}

GlobalChannel Read_Older_Channel(Byte_Cursor& cursor, bool withAudio) {
    GlobalChannel channel;
    channel.ChannelID = cursor.Read_I32();
    channel.ChannelName = Read_Fixed_Text(cursor, CHANNEL_NAME_BYTES);
    channel.Volume = cursor.Read_U8();
    channel.PatchI = cursor.Read_I16();
    channel.Pan = cursor.Read_U8();
    channel.OutputChannel = cursor.Read_U8();
    channel.Mute = cursor.Read_U16();
    channel.Solo = cursor.Read_U16();
    if (withAudio) {
        channel.IsAudio = cursor.Read_U16();
        channel.AudioOutput = cursor.Read_U16();
    }
    channel.InUse = cursor.Read_U16();
    if (channel.OutputChannel == DRUM_SLOT || channel.PatchI < 0 || channel.PatchI >= PROGRAMS)
        channel.PatchI = 0;
    channel.PatchByte0 = static_cast<std::uint8_t>(channel.PatchI);
    channel.Style = CONVERTED_STYLE;
    return channel;
}

bool Read_Older_Channels(Byte_Cursor& cursor, Project_Reading& reading, bool withAudio) {
    for (GlobalChannel& channel : reading.song.Channels)
        channel = Read_Older_Channel(cursor, withAudio);
    reading.channelCount = cursor.Read_I32();
    return cursor.Ok() && reading.channelCount >= 0;
}

bool Read_Older_Marks(Byte_Cursor& cursor, Project_Reading& reading, bool withColour) {
    const double msPerBeat = Ms_Per_Beat(reading);
    for (Mark& mark : reading.song.Marks) {
        mark.InUse = cursor.Read_U16();
        mark.MarkStart = Beats_Of_Mark(cursor.Read_I32(), msPerBeat);
        mark.MarkEnd = Beats_Of_Mark(cursor.Read_I32(), msPerBeat);
        mark.MarkName = Read_Counted_Text(cursor);
        mark.MarkColor = withColour ? cursor.Read_I32() : Mark::WHITE;
    }
    reading.song.MarkCount = cursor.Read_I32();
    return cursor.Ok();
}

} // namespace

bool Read_Global_Channels_Array_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    return Read_Older_Channels(cursor, reading, false);
}

bool Read_Global_Channels_Array_V2(Byte_Cursor& cursor, Project_Reading& reading) {
    return Read_Older_Channels(cursor, reading, true);
}

bool Read_PanVol_Data_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    const double msPerBeat = Ms_Per_Beat(reading);
    Song_Snapshot& song = reading.song;
    for (std::size_t slot = 0; slot < song.SlotVolumes.size(); ++slot)
        if (!Read_Map_V1(cursor, song.SlotVolumes[slot], msPerBeat) ||
            !Read_Map_V1(cursor, song.SlotPans[slot], msPerBeat))
            return false;
    return true;
}

bool Read_Channel_Class_Data_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    const double msPerBeat = Ms_Per_Beat(reading);
    return Read_Channel_Blocks(cursor, reading, [msPerBeat](Byte_Cursor& from, Channel_Content& content) {
        return Read_Channel_V1(from, content, msPerBeat);
    });
}

bool Read_Marks_Array_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    return Read_Older_Marks(cursor, reading, false);
}

bool Read_Marks_Array_V2(Byte_Cursor& cursor, Project_Reading& reading) {
    return Read_Older_Marks(cursor, reading, true);
}

bool Read_FX_Data_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    return Read_Effect_Rows(cursor, reading.song.Effects, Song_Effects::SLOTS);
}

bool Read_EventsEditor_Setup_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    return reading.song.EditorSetup.Settings_Load(cursor, 1);
}

bool Read_MusicCreator_Data_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    return reading.song.MusicCreator.MC_LoadData_V1(cursor, reading.song.Channels, Ms_Per_Beat(reading));
}

bool Read_MusicCreator_Data_V2(Byte_Cursor& cursor, Project_Reading& reading) {
    return reading.song.MusicCreator.MC_LoadData_V2(cursor, reading.song.Channels);
}

} // namespace tonvex
