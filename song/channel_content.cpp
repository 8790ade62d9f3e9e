#include "song/channel_content.h"

#include "song/event_rows.h"
#include "song/file_rows.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tonvex {

namespace {

constexpr std::size_t EVENT_ROW_BYTES_MS = 19;

/// Later in time, among equals of a higher row.
bool Is_Later(const std::vector<ChannelEvent>& events, std::int32_t i, std::int32_t than) {
    const double time = events[static_cast<std::size_t>(i)].StartTime;
    const double other = events[static_cast<std::size_t>(than)].StartTime;
    return time > other || (time == other && i > than);
}

/// Every payload row is some event's.
bool No_Row_Is_Spare(const Channel_Content& content) {
    const Event_Tables& tables = content.Tables;
    std::array<std::vector<bool>, EV_AUDIO + 1> used;
    used[EV_NOTE].resize(tables.Notes.size());
    used[EV_QCHORD].resize(tables.QChords.size());
    used[EV_NAMED].resize(tables.NamedEvents.size());
    used[EV_MC].resize(tables.MCEvents.size());
    used[EV_AUDIO].resize(tables.AudioEvents.size());
    for (const ChannelEvent& event : content.Events)
        if (event.Kind != EV_PATCH)
            used[event.Kind][static_cast<std::size_t>(event.DataRef)] = true;
    return std::all_of(used.begin(), used.end(), [](const auto& rows) {
        return std::find(rows.begin(), rows.end(), false) == rows.end();
    });
}

bool Is_Linked_In_Time(const Channel_Content& content) {
    const auto count = std::ssize(content.Events);
    std::ptrdiff_t seen = 0;
    std::int32_t before = -1;
    for (std::int32_t i = content.FirstEventI; i != -1;
         i = content.Events[static_cast<std::size_t>(i)].NextI) {
        if (i < 0 || i >= count || (before != -1 && !Is_Later(content.Events, i, before)))
            return false;
        before = i;
        ++seen;
    }
    return seen == count;
}

void Link_In_Time(Channel_Content& content) {
    std::vector<ChannelEvent>& events = content.Events;
    std::vector<std::int32_t> order(events.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = static_cast<std::int32_t>(i);
    const auto earlier = [&events](std::int32_t a, std::int32_t b) { return Is_Later(events, b, a); };
    if (!std::is_sorted(order.begin(), order.end(), earlier))
        std::sort(order.begin(), order.end(), earlier);
    std::int32_t* link = &content.FirstEventI;
    for (const std::int32_t i : order) {
        *link = i;
        link = &events[static_cast<std::size_t>(i)].NextI;
    }
    *link = -1;
}

/// The row that no link leads to, as far as the links lead to all others: the sum of all rows less that of
/// all links. Whether they do is for Is_Linked_In_Time to say.
std::int32_t Head_Of_Links(const std::vector<ChannelEvent>& events) {
    std::int64_t head = 0;
    for (std::int64_t row = 0; row < std::ssize(events); ++row) {
        const std::int32_t next = events[static_cast<std::size_t>(row)].NextI;
        head += row - (next == -1 ? 0 : next);
    }
    return head >= 0 && head < std::ssize(events) ? static_cast<std::int32_t>(head) : -1;
}

template <typename Row, typename Writer>
void Write_Rows(Byte_Writer& writer, const std::vector<Row>& rows, Writer writeRow) {
    writer.Write_I32(static_cast<std::int32_t>(rows.size()));
    for (const Row& row : rows)
        writeRow(writer, row);
}

template <typename Row, typename Reader>
bool Read_Table(Byte_Cursor& cursor, std::size_t rowBytes, std::vector<Row>& rows, Reader readRow) {
    return Read_Rows(cursor, cursor.Read_I32(), rowBytes, rows, readRow);
}

void Read_Behind_Time(Byte_Cursor& cursor, ChannelEvent& event) {
    event.Kind = static_cast<Event_Kind>(cursor.Read_U8());
    event.DataRef = cursor.Read_I32();
    event.InUse = cursor.Read_U16();
    event.NextI = cursor.Read_I32();
}

ChannelEvent Read_Event_Row_Ms(Byte_Cursor& cursor, double msPerBeat) {
    ChannelEvent event;
    event.ID = cursor.Read_I32();
    event.StartTime = cursor.Read_I32() / msPerBeat;
    Read_Behind_Time(cursor, event);
    return event;
}

/// Sizes of the rows that have two forms.
struct Row_Bytes {
    std::size_t event;
    std::size_t chord;
    std::size_t note;
};

template <typename Event_Reader, typename Chord_Reader, typename Note_Reader>
bool Read_Block(Byte_Cursor& cursor, Channel_Content& content, const Row_Bytes& bytes, Event_Reader readEvent,
                Chord_Reader readChord, Note_Reader readNote) {
    const std::int64_t lastEventN = cursor.Read_I32();
    content = Channel_Content{};
    content.ChannelNumber = cursor.Read_I32();
    if (lastEventN == -1)
        return cursor.Ok();
    Event_Tables& tables = content.Tables;
    if (!Read_Rows(cursor, lastEventN + 1, bytes.event, content.Events, readEvent))
        return false;
    (void)cursor.Read_I32(); // NextID: the numbers are given anew
    const bool whole = Read_Table(cursor, bytes.chord, tables.QChords, readChord) &&
                       Read_Table(cursor, bytes.note, tables.Notes, readNote) &&
                       Read_Table(cursor, NAMED_ROW_BYTES, tables.NamedEvents, Read_Named_Row) &&
                       Read_Table(cursor, MC_ROW_BYTES, tables.MCEvents, Read_MC_Row) &&
                       Read_Table(cursor, AUDIO_ROW_BYTES, tables.AudioEvents, Read_Audio_Row);
    if (!whole)
        return false;
    content.FirstEventI = Head_Of_Links(content.Events);
    content.Settle();
    content.Renumber();
    return true;
}

} // namespace

bool Channel_Content::Is_Settled() const {
    const bool dense = std::all_of(Events.begin(), Events.end(), [this](const ChannelEvent& event) {
        return Is_On(event.InUse) && Tables.Holds(event.Kind, event.DataRef) &&
               event.StartTime == Start_In_Song(event.StartTime);
    });
    return dense && No_Row_Is_Spare(*this) && Is_Linked_In_Time(*this);
}

void Channel_Content::Settle() {
    Tables.Bring_Into_Range();
    if (Is_Settled())
        return;
    std::erase_if(Events, [this](const ChannelEvent& event) {
        return !Is_On(event.InUse) || !Tables.Holds(event.Kind, event.DataRef);
    });
    std::vector<Event_Tables::Use> uses;
    uses.reserve(Events.size());
    for (ChannelEvent& event : Events) {
        event.StartTime = Start_In_Song(event.StartTime);
        uses.push_back({.kind = event.Kind, .dataRef = &event.DataRef});
    }
    Tables.Compact(uses);
    Link_In_Time(*this);
}

void Channel_Content::Renumber() {
    NextID = FIRST_ID;
    for (ChannelEvent& event : Events)
        event.ID = NextID++;
}

ChannelEvent Read_Event_Row(Byte_Cursor& block) {
    Byte_Cursor cursor(block.Read_Bytes(EVENT_ROW_BYTES)); // one look at the end for all fields
    ChannelEvent event;
    event.ID = cursor.Read_I32();
    event.StartTime = cursor.Read_Double();
    Read_Behind_Time(cursor, event);
    return event;
}

void Write_Event_Row(Byte_Writer& writer, const ChannelEvent& event) {
    Byte_Row<EVENT_ROW_BYTES> row;
    row.Write_I32(event.ID);
    row.Write_Double(event.StartTime);
    row.Write_U8(event.Kind);
    row.Write_I32(event.DataRef);
    row.Write_U16(event.InUse);
    row.Write_I32(event.NextI);
    writer.Write_Bytes(row.Bytes());
}

void Write_Channel_V2(Byte_Writer& writer, const Channel_Content& content) {
    writer.Write_I32(static_cast<std::int32_t>(content.Events.size()) - 1);
    writer.Write_I32(content.ChannelNumber);
    if (content.Events.empty())
        return;
    std::int32_t fileId = FIRST_ID;
    for (ChannelEvent event : content.Events) {
        event.ID = fileId++;
        Write_Event_Row(writer, event);
    }
    writer.Write_I32(fileId);
    Write_Rows(writer, content.Tables.QChords, Write_QChord_Row);
    Write_Rows(writer, content.Tables.Notes, Write_Note_Row);
    Write_Rows(writer, content.Tables.NamedEvents, Write_Named_Row);
    Write_Rows(writer, content.Tables.MCEvents, Write_MC_Row);
    Write_Rows(writer, content.Tables.AudioEvents, Write_Audio_Row);
}

bool Read_Channel_V2(Byte_Cursor& cursor, Channel_Content& content) {
    return Read_Block(cursor, content, {EVENT_ROW_BYTES, QCHORD_ROW_BYTES, NOTE_ROW_BYTES}, Read_Event_Row,
                      Read_QChord_Row, Read_Note_Row);
}

bool Read_Channel_V1(Byte_Cursor& cursor, Channel_Content& content, double msPerBeat) {
    return Read_Block(
        cursor, content, {EVENT_ROW_BYTES_MS, QCHORD_ROW_BYTES_MS, NOTE_ROW_BYTES_MS},
        [=](Byte_Cursor& from) { return Read_Event_Row_Ms(from, msPerBeat); },
        [=](Byte_Cursor& from) { return Read_QChord_Row_Ms(from, msPerBeat); },
        [=](Byte_Cursor& from) { return Read_Note_Row_Ms(from, msPerBeat); });
}

} // namespace tonvex
