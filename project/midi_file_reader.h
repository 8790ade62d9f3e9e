#pragma once

#include "base/byte_cursor.h"
#include "project/midi_file_data.h"

#include <cstdint>
#include <span>
#include <string>

namespace tonvex {

/// Reads the bytes of a Standard MIDI File, plain or in a RIFF of the type RMID. Formats 0, 1 and 2 are read
/// alike: every track begins at tick 0. Memory is bounded by a small multiple of the bytes. Any one thread.
class Midi_File_Reader {
public:
    enum class Header { Good, Bad, Time_Format };

    /// The bytes outlive the reader.
    explicit Midi_File_Reader(std::span<const std::uint8_t> bytes);

    /// Bad: this is no MIDI file. Time_Format: its ticks are no parts of a beat.
    Header Read_Header();
    /// After a good header. False when the file is cut off or broken.
    bool Read_Tracks(Midi_File_Data& data);

private:
    static bool Get_VariableLength_Value(Byte_Cursor& cursor, std::int64_t& value);
    static bool Read_Text(Byte_Cursor& cursor, std::size_t length, std::string& text);
    static bool Read_Number(Byte_Cursor& cursor, int length, std::uint32_t& value);
    bool Read_Track(Byte_Cursor cursor, Midi_File_Data& data);
    static bool Read_Meta(Byte_Cursor& cursor, std::int32_t tick, Midi_File_Data& data, bool& isEnd);
    bool Read_Message(Byte_Cursor& cursor, std::uint8_t status, std::int32_t tick, Midi_File_Data& data);

    std::span<const std::uint8_t> file;
    std::uint32_t trackCount = 0;
    std::uint32_t division = 0; ///< ticks a beat
    std::uint32_t nextOrder = 0;
    std::uint8_t lastStatus = 0; ///< of a channel message; 0 before a track's first
};

} // namespace tonvex
