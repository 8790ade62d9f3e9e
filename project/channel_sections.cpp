#include "base/text_codec.h"
#include "project/project_sections.h"

#include <algorithm>
#include <utility>

// The channel table, the channels' events and the list that shows them.

namespace tonvex {

namespace {

constexpr std::size_t CHANNEL_NAME_BYTES = 50;

void Write_Channel_Row(Byte_Writer& writer, const GlobalChannel& channel) {
    writer.Write_I32(channel.ChannelID);
    writer.Write_Text(Fixed_Field(channel.ChannelName, CHANNEL_NAME_BYTES));
    writer.Write_U8(channel.Volume);
    writer.Write_I16(channel.PatchI);
    writer.Write_U8(channel.Pan);
    Write_Counted_Text(writer, channel.SoundfontSet);
    writer.Write_U8(channel.OutputChannel);
    writer.Write_U16(channel.Mute);
    writer.Write_U16(channel.Solo);
    writer.Write_U16(channel.IsAudio);
    writer.Write_U16(channel.AudioOutput);
    writer.Write_U16(channel.ReservedA);
    writer.Write_U8(channel.PatchByte0);
    writer.Write_U8(channel.PatchByte1);
    writer.Write_U8(channel.Style);
    writer.Write_U16(channel.InUse);
    writer.Write_U16(channel.StyleFlagA);
    writer.Write_U16(channel.StyleFlagB);
    for (const std::string& text : channel.StyleStrings)
        Write_Counted_Text(writer, text);
    for (const std::int16_t value : channel.StyleInts)
        writer.Write_I16(value);
    for (const std::int32_t value : channel.StyleCustomInts)
        writer.Write_I32(value);
}

void Read_Channel_Row(Byte_Cursor& cursor, GlobalChannel& channel) {
    channel.ChannelID = cursor.Read_I32();
    channel.ChannelName = Read_Fixed_Text(cursor, CHANNEL_NAME_BYTES);
    channel.Volume = cursor.Read_U8();
    channel.PatchI = cursor.Read_I16();
    channel.Pan = cursor.Read_U8();
    channel.SoundfontSet = Read_Counted_Text(cursor);
    channel.OutputChannel = cursor.Read_U8();
    channel.Mute = cursor.Read_U16();
    channel.Solo = cursor.Read_U16();
    channel.IsAudio = cursor.Read_U16();
    channel.AudioOutput = cursor.Read_U16();
    channel.ReservedA = cursor.Read_U16();
    channel.PatchByte0 = cursor.Read_U8();
    channel.PatchByte1 = cursor.Read_U8();
    channel.Style = cursor.Read_U8();
    channel.InUse = cursor.Read_U16();
    channel.StyleFlagA = cursor.Read_U16();
    channel.StyleFlagB = cursor.Read_U16();
    for (std::string& text : channel.StyleStrings)
        text = Read_Counted_Text(cursor);
    for (std::int16_t& value : channel.StyleInts)
        value = cursor.Read_I16();
    for (std::int32_t& value : channel.StyleCustomInts)
        value = cursor.Read_I32();
}

/// The live row of that ID, -1 when there is none.
int Row_Of(const Song_Snapshot& song, std::int32_t channelId) {
    for (int row = 0; row < Song_Snapshot::ROWS; ++row)
        if (song.Is_Live_Row(row) && song.Channels[static_cast<std::size_t>(row)].ChannelID == channelId)
            return row;
    return -1;
}

} // namespace

void Write_Global_Channels_Array(Byte_Writer& writer, const Song_Snapshot& song) {
    std::int32_t live = 0;
    for (int row = 0; row < std::ssize(song.Channels); ++row) {
        Write_Channel_Row(writer, song.Channels[static_cast<std::size_t>(row)]);
        live += song.Is_Live_Row(row) ? 1 : 0;
    }
    writer.Write_I32(live);
}

bool Read_Global_Channels_Array_V3(Byte_Cursor& cursor, Project_Reading& reading) {
    for (GlobalChannel& channel : reading.song.Channels)
        Read_Channel_Row(cursor, channel);
    reading.channelCount = cursor.Read_I32();
    return cursor.Ok() && reading.channelCount >= 0;
}

void Write_Channel_Class_Data(Byte_Writer& writer, const Song_Snapshot& song) {
    for (int row = 0; row < Song_Snapshot::ROWS; ++row) {
        if (!song.Is_Live_Row(row))
            continue;
        const auto i = static_cast<std::size_t>(row);
        if (song.Contents[i] && song.Contents[i]->ChannelNumber == song.Channels[i].ChannelID &&
            song.Contents[i]->Is_Settled()) {
            Write_Channel_V2(writer, *song.Contents[i]);
            continue;
        }
        Channel_Content content = song.Contents[i] ? *song.Contents[i] : Channel_Content{};
        content.ChannelNumber = song.Channels[i].ChannelID;
        content.Settle();
        Write_Channel_V2(writer, content);
    }
}

bool Read_Channel_Class_Data_V2(Byte_Cursor& cursor, Project_Reading& reading) {
    return Read_Channel_Blocks(cursor, reading, Read_Channel_V2);
}

bool Read_Channel_Blocks(Byte_Cursor& cursor, Project_Reading& reading,
                         const std::function<bool(Byte_Cursor&, Channel_Content&)>& readBlock) {
    for (std::int32_t block = 0; block < reading.channelCount; ++block) {
        Channel_Content content;
        if (!readBlock(cursor, content))
            return false;
        const int row = Row_Of(reading.song, content.ChannelNumber);
        if (row != -1)
            reading.song.Contents[static_cast<std::size_t>(row)] =
                std::make_shared<const Channel_Content>(std::move(content));
    }
    return true;
}

void Write_Channels_List_Data(Byte_Writer& writer, const Song_Snapshot& song) {
    for (const Channels_List_Row& row : song.ChannelsList) {
        writer.Write_U16(row.InUse);
        writer.Write_I32(row.ChannelID);
        writer.Write_Text(Fixed_Field(row.ChannelName, CHANNEL_NAME_BYTES));
        writer.Write_Bytes(row.ViewBytes);
        writer.Write_I32(row.ViewLong);
    }
}

bool Read_Channels_List_Data_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    for (Channels_List_Row& row : reading.song.ChannelsList) {
        row.InUse = cursor.Read_U16();
        row.ChannelID = cursor.Read_I32();
        row.ChannelName = Read_Fixed_Text(cursor, CHANNEL_NAME_BYTES);
        const auto view = cursor.Read_Bytes(row.ViewBytes.size());
        std::copy(view.begin(), view.end(), row.ViewBytes.begin());
        row.ViewLong = cursor.Read_I32();
    }
    return cursor.Ok();
}

} // namespace tonvex
