#pragma once

#include "base/byte_cursor.h"
#include "song/event_data.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tonvex {

/// A row of a map.
struct MapPoint {
    Flag16 InUse = FLAG_OFF;
    std::int32_t ID = 0;
    std::int16_t Value = 0;  ///< 0 to 127
    std::int32_t PrevI = -1; ///< row of the point before, -1 at the first
    std::int32_t NextI = -1; ///< row of the point after, -1 at the last
    double TimePos = 0.0;    ///< beats; -1: the end of the song, wherever that is
    bool operator==(const MapPoint&) const = default;
};

/// A map as plain rows: what project files and undo steps carry. A value. Rows are dense: row 0 is the
/// point at beat 0, row 1 that at the song's end.
struct Map_Content {
    std::vector<MapPoint> Points;
    std::int32_t NextID = FIRST_ID;
    bool operator==(const Map_Content&) const = default;

    /// What came from a file as a map can hold it: free rows go, values and times are brought into their
    /// ranges, the fixed points stand where they belong, and links that do not lead through all points in
    /// order of time are made anew. False, and as a new map has it, when the two fixed points are not there.
    bool Settle();
    /// IDs from FIRST_ID on in order of rows, NextID behind them.
    void Renumber();
};

inline constexpr std::size_t MAP_ROW_BYTES = 24;

MapPoint Read_Map_Row(Byte_Cursor& cursor);
void Write_Map_Row(Byte_Writer& writer, const MapPoint& point);

/// A map's block of a project file. The writer numbers the points anew in the file alone.
void Write_Map_V2(Byte_Writer& writer, const Map_Content& map);
/// Settled and numbered anew. False when the block is cut off or is no map.
bool Read_Map_V2(Byte_Cursor& cursor, Map_Content& map);
/// The older block, with times in ms: those from 1 on become beats by msPerBeat, above 0.
bool Read_Map_V1(Byte_Cursor& cursor, Map_Content& map, double msPerBeat);

} // namespace tonvex
