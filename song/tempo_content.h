#pragma once

#include "base/byte_cursor.h"
#include "song/event_data.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tonvex {

struct TempoChange {
    Flag16 InUse = 0;
    double BeatN = 0.0;     ///< position in beats
    std::int16_t Tempo = 0; ///< beats per minute from there on
    std::int32_t ID = 0;
    bool operator==(const TempoChange&) const = default;
};

/// The tempo list as plain rows, free ones too: what project files and undo steps carry. A value.
struct Tempo_Content {
    std::vector<TempoChange> Rows;
    std::int32_t NextID = FIRST_ID;
    bool operator==(const Tempo_Content&) const = default;

    /// IDs of live rows from FIRST_ID on, NextID behind them.
    void Renumber();
};

inline constexpr std::size_t TEMPO_ROW_BYTES = 16;

TempoChange Read_Tempo_Row(Byte_Cursor& cursor);
void Write_Tempo_Row(Byte_Writer& writer, const TempoChange& change);

/// The section of a project file. The writer numbers the changes anew in the file alone.
void Write_Tempo_V1(Byte_Writer& writer, const Tempo_Content& tempo);
/// Numbered anew. False when the section is cut off.
bool Read_Tempo_V1(Byte_Cursor& cursor, Tempo_Content& tempo);

} // namespace tonvex
