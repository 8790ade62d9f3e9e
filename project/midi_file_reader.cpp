#include "project/midi_file_reader.h"

#include "base/text_codec.h"
#include "engine/short_messages.h"

#include <algorithm>
#include <limits>

namespace tonvex {

namespace {

constexpr std::size_t HEADER_BYTES = 14;
constexpr std::uint32_t SMPTE_BIT = 0x8000;
constexpr std::uint8_t FIRST_STATUS = 0x80;
constexpr std::uint8_t STATUS_PRESSURE = 0xD0;
constexpr std::uint8_t KIND_MASK = 0xF0;
constexpr std::uint8_t CHANNEL_MASK = 0x0F;
constexpr std::size_t LONGEST_NAME = 1000; ///< bytes; what is longer is no name

std::string_view Text_Of(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Text for the comments or a name: without the zeros that some programs end it with.
std::string Clean(const std::string& text) {
    return Trim(Text_From_File(text.substr(0, text.find('\0'))));
}

/// The song in a RIFF of the type RMID; bytes themselves when they are none.
std::span<const std::uint8_t> Unwrap(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t NAME_BYTES = 4;
    Byte_Cursor cursor(bytes);
    const std::string_view riff = Text_Of(cursor.Read_Bytes(NAME_BYTES));
    cursor.Skip(NAME_BYTES);
    if (riff != "RIFF" || Text_Of(cursor.Read_Bytes(NAME_BYTES)) != "RMID")
        return bytes;
    while (cursor.Remaining() > 0) {
        const std::string_view name = Text_Of(cursor.Read_Bytes(NAME_BYTES));
        const std::uint32_t size = cursor.Read_U32();
        if (name == "data") // a file that is cut off ends inside it, and is found out there
            return cursor.Read_Bytes(std::min<std::size_t>(size, cursor.Remaining()));
        cursor.Skip(std::size_t{size} + size % 2);
    }
    return {};
}

} // namespace

Midi_File_Reader::Midi_File_Reader(std::span<const std::uint8_t> bytes) : file(Unwrap(bytes)) {}

Midi_File_Reader::Header Midi_File_Reader::Read_Header() {
    Byte_Cursor cursor(file);
    std::string name;
    std::uint32_t length = 0;
    std::uint32_t format = 0;
    Read_Text(cursor, 4, name);
    Read_Number(cursor, 4, length);
    Read_Number(cursor, 2, format);
    Read_Number(cursor, 2, trackCount);
    Read_Number(cursor, 2, division);
    if (!cursor.Ok() || name != "MThd" || length != midi_format::HEADER_LENGTH || division == 0)
        return Header::Bad;
    return division >= SMPTE_BIT ? Header::Time_Format : Header::Good;
}

bool Midi_File_Reader::Read_Tracks(Midi_File_Data& data) {
    constexpr std::size_t CHUNK_HEADER = 8;
    data.BeatsPerTick = 1.0 / division;
    Byte_Cursor cursor(file);
    cursor.Skip(HEADER_BYTES);
    while (cursor.Remaining() >= CHUNK_HEADER) {
        std::string name;
        std::uint32_t length = 0;
        Read_Text(cursor, 4, name);
        Read_Number(cursor, 4, length);
        const bool isTrack = name == "MTrk";
        const auto chunk = cursor.Read_Bytes(length);
        if (!cursor.Ok() && isTrack)
            return false;
        if (!cursor.Ok()) // what is no track may be cut off: nothing of the song is in it
            break;
        if (isTrack && !Read_Track(Byte_Cursor(chunk), data))
            return false;
    }
    data.Order_Columns();
    return data.tracks.size() >= trackCount;
}

bool Midi_File_Reader::Read_Track(Byte_Cursor cursor, Midi_File_Data& data) {
    Midi_Track& track = data.tracks.emplace_back();
    track.firstOrder = nextOrder;
    lastStatus = 0;
    std::int64_t tick = 0;
    // Some programs leave the end of a track out; it then ends with its last event.
    for (bool isEnd = false; !isEnd && cursor.Remaining() > 0;) {
        std::int64_t delta = 0;
        if (!Get_VariableLength_Value(cursor, delta))
            return false;
        tick += delta;
        if (tick > std::numeric_limits<std::int32_t>::max())
            return false;
        track.endTick = static_cast<std::int32_t>(tick);
        const std::uint8_t status = cursor.Read_U8();
        if (status == midi_format::META) {
            if (!Read_Meta(cursor, track.endTick, data, isEnd))
                return false;
        } else if (status == midi_format::SYSEX || status == midi_format::SYSEX_MORE) {
            std::int64_t length = 0;
            if (!Get_VariableLength_Value(cursor, length))
                return false;
            cursor.Skip(static_cast<std::size_t>(length));
        } else if (!Read_Message(cursor, status, track.endTick, data)) {
            return false;
        }
    }
    return cursor.Ok();
}

bool Midi_File_Reader::Read_Meta(Byte_Cursor& cursor, std::int32_t tick, Midi_File_Data& data, bool& isEnd) {
    constexpr std::int64_t TEMPO_BYTES = 3;
    const std::uint8_t type = cursor.Read_U8();
    std::int64_t length = 0;
    if (!Get_VariableLength_Value(cursor, length))
        return false;
    std::string text;
    std::uint32_t microseconds = 0;
    switch (type) {
    case midi_format::META_END_OF_TRACK:
        isEnd = true;
        break;
    case midi_format::META_TEMPO:
        if (length < TEMPO_BYTES || !Read_Number(cursor, TEMPO_BYTES, microseconds))
            return false;
        data.TempoEvents.push_back({tick, static_cast<std::int32_t>(microseconds)});
        length -= TEMPO_BYTES;
        break;
    case midi_format::META_TRACK_NAME:
        if (data.tracks.back().name.empty() && length <= static_cast<std::int64_t>(LONGEST_NAME)) {
            if (!Read_Text(cursor, static_cast<std::size_t>(length), text))
                return false;
            data.tracks.back().name = Clean(text);
            length = 0;
        }
        break;
    case midi_format::META_TEXT:
    case midi_format::META_COPYRIGHT:
    case midi_format::META_LYRIC:
    case midi_format::META_MARKER:
        if (!Read_Text(cursor, static_cast<std::size_t>(length), text))
            return false;
        if (text = Clean(text); !text.empty())
            data.texts.push_back(std::move(text));
        length = 0;
        break;
    default:
        break;
    }
    cursor.Skip(static_cast<std::size_t>(length));
    return cursor.Ok();
}

bool Midi_File_Reader::Read_Message(Byte_Cursor& cursor, std::uint8_t status, std::int32_t tick,
                                    Midi_File_Data& data) {
    std::uint8_t data1 = status;
    if (status >= FIRST_STATUS) {
        if (status >= midi_format::SYSEX)
            return false;
        lastStatus = status;
        data1 = cursor.Read_U8();
    }
    const std::uint8_t kind = lastStatus & KIND_MASK;
    const bool isShort = kind == STATUS_PROGRAM || kind == STATUS_PRESSURE;
    const std::uint8_t data2 = isShort ? std::uint8_t{0} : cursor.Read_U8();
    if (!cursor.Ok() || lastStatus == 0 || data1 >= FIRST_STATUS || data2 >= FIRST_STATUS)
        return false;
    const int channel = lastStatus & CHANNEL_MASK;
    if (kind == STATUS_NOTE_ON && data2 > 0)
        data.tracks.back().noteChannels |= static_cast<std::uint16_t>(1U << static_cast<unsigned>(channel));
    const std::uint32_t message =
        std::uint32_t{lastStatus} | (std::uint32_t{data1} << 8) | (std::uint32_t{data2} << 16);
    data.Add(channel, {message, tick, nextOrder++});
    return true;
}

/// At most four bytes, as the format has it.
bool Midi_File_Reader::Get_VariableLength_Value(Byte_Cursor& cursor, std::int64_t& value) {
    constexpr int MOST_BYTES = 4;
    constexpr std::int64_t GROUP = 128;
    value = 0;
    for (int count = 0; count < MOST_BYTES; ++count) {
        const std::uint8_t byte = cursor.Read_U8();
        value = value * GROUP + byte % GROUP;
        if (byte < GROUP)
            return cursor.Ok();
    }
    return false;
}

bool Midi_File_Reader::Read_Text(Byte_Cursor& cursor, std::size_t length, std::string& text) {
    text = Text_Of(cursor.Read_Bytes(length));
    return cursor.Ok();
}

bool Midi_File_Reader::Read_Number(Byte_Cursor& cursor, int length, std::uint32_t& value) {
    value = 0;
    for (int i = 0; i < length; ++i)
        value = (value << 8) | cursor.Read_U8();
    return cursor.Ok();
}

} // namespace tonvex
