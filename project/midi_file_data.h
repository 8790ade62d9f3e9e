#pragma once

#include "project/midi_format.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tonvex {

/// One channel message of a file that is being imported.
struct ImportEvent {
    std::uint32_t Message = 0; ///< status in the lowest byte, the data bytes above it
    std::int32_t Tick = 0;
    std::uint32_t Order = 0; ///< place in the file: among equal ticks the message before comes first

    std::uint8_t Status() const noexcept { return static_cast<std::uint8_t>(Message & 0xFF); }
    std::uint8_t Data1() const noexcept { return static_cast<std::uint8_t>((Message >> 8) & 0xFF); }
    std::uint8_t Data2() const noexcept { return static_cast<std::uint8_t>((Message >> 16) & 0xFF); }
};
static_assert(sizeof(ImportEvent) == 12);

struct Midi_Tempo {
    std::int32_t Tick;
    std::int32_t microseconds; ///< a beat
};

struct Midi_Track {
    std::string name;
    std::uint32_t firstOrder = 0; ///< of its first message
    std::int32_t endTick = 0;
    std::uint16_t noteChannels = 0; ///< bit by MIDI channel that has notes here
};

/// What the reader of a MIDI file has found, in columns by MIDI channel.
class Midi_File_Data {
public:
    double BeatsPerTick = 0.0;
    std::vector<Midi_Track> tracks;
    std::vector<Midi_Tempo> TempoEvents; ///< as they stand in the file
    std::vector<std::string> texts;      ///< what goes to the comments, in the order of the file

    /// Where the track of a message ends.
    std::int32_t End_Tick_Of(const ImportEvent& event) const;

    void Add(int channel, const ImportEvent& event) { Column(channel).push_back(event); }
    /// Behind the last Add; Take_Earliest and Remove_Row then cost nothing to speak of.
    void Order_Columns();
    /// The row of the lowest tick in a channel's column, -1 when that is empty.
    std::int32_t Take_Earliest(int channel) const;
    const ImportEvent& Row(int channel, std::int32_t row) const;
    /// Moves the column's last row into row and shortens the column.
    void Remove_Row(int channel, std::int32_t row);
    /// Rows left in a column.
    std::size_t Rows(int channel) const { return ImportEvents[static_cast<std::size_t>(channel)].size(); }

private:
    std::vector<ImportEvent>& Column(int channel) { return ImportEvents[static_cast<std::size_t>(channel)]; }

    /// Once ordered, the earliest row is the last.
    std::array<std::vector<ImportEvent>, midi_format::CHANNELS> ImportEvents;
};

} // namespace tonvex
