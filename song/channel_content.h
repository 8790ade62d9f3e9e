#pragma once

#include "base/byte_cursor.h"
#include "song/event_data.h"
#include "song/event_tables.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tonvex {

/// A row of a channel's event table.
struct ChannelEvent {
    std::int32_t ID = 0;
    double StartTime = 0.0; ///< beats
    Event_Kind Kind = EV_NOTE;
    std::int32_t DataRef = -1; ///< row of the kind's table; for EV_PATCH the row of the patch table
    Flag16 InUse = FLAG_OFF;
    std::int32_t NextI = -1; ///< row of the event that follows in time; -1 at the last
    bool operator==(const ChannelEvent&) const = default;
};

/// What one channel holds, as plain rows: what project files and undo steps carry. A value; any thread may
/// work on its own copy. What is being recorded is not in it.
struct Channel_Content {
    std::int32_t ChannelNumber = 0; ///< ChannelID of the owning row
    std::int32_t NextID = FIRST_ID;
    std::int32_t FirstEventI = -1;    ///< head of the time list, -1 without events
    std::vector<ChannelEvent> Events; ///< in order of arrival, free rows too
    Event_Tables Tables;

    /// Rows and payloads are dense, and the links are in order of time, among equals of rows.
    bool Is_Settled() const;
    /// Makes it so: free rows go, as do events without a payload; times that no song has are brought into it;
    /// unused payloads go; the links are made anew. IDs and the order of rows stay. n log n, linear when
    /// the events are in order already.
    void Settle();
    /// IDs from FIRST_ID on in order of rows, NextID behind them.
    void Renumber();
    bool operator==(const Channel_Content&) const = default;
};

inline constexpr std::size_t EVENT_ROW_BYTES = 23;

ChannelEvent Read_Event_Row(Byte_Cursor& cursor);
void Write_Event_Row(Byte_Writer& writer, const ChannelEvent& event);

/// A channel's block of a project file. The writer numbers the events anew in the file alone; content is
/// settled.
void Write_Channel_V2(Byte_Writer& writer, const Channel_Content& content);
/// Settled and numbered anew. False when the block is cut off or one of its counts is none; content is then
/// of no use.
bool Read_Channel_V2(Byte_Cursor& cursor, Channel_Content& content);
/// The older block, of which events, notes and chords tell times in ms; they become beats by msPerBeat, above
/// 0. The same for the rest.
bool Read_Channel_V1(Byte_Cursor& cursor, Channel_Content& content, double msPerBeat);

} // namespace tonvex
