#include "song/undo_files.h"

#include "song/event_rows.h"
#include "song/file_rows.h"

#include <algorithm>

namespace tonvex {

namespace {

/// What stands where the length of a channel was last kept: it is to be worked out.
constexpr double UNKNOWN_LENGTH = -1.0;

std::int32_t Last_Row(std::size_t rows) {
    return static_cast<std::int32_t>(rows) - 1;
}

template <typename Row, typename Writer>
void Write_Table(Byte_Writer& writer, const std::vector<Row>& rows, Writer writeRow) {
    writer.Write_I32(static_cast<std::int32_t>(rows.size()));
    writer.Write_I32(Last_Row(rows.size()));
    for (const Row& row : rows)
        writeRow(writer, row);
}

template <typename Row, typename Reader>
bool Read_Table(Byte_Cursor& cursor, std::size_t rowBytes, std::vector<Row>& rows, Reader readRow) {
    const std::int64_t count = cursor.Read_I32();
    return cursor.Read_I32() == count - 1 && Read_Rows(cursor, count, rowBytes, rows, readRow);
}

bool Is_Kind(Event_Kind kind) noexcept {
    return kind == EV_NOTE || kind == EV_QCHORD || (kind >= EV_PATCH && kind <= EV_AUDIO);
}

} // namespace

void UNDO_SaveData_To_File(Byte_Writer& writer, const Channel_Content& content) {
    const auto live = std::count_if(content.Events.begin(), content.Events.end(),
                                    [](const ChannelEvent& event) { return Is_On(event.InUse); });
    writer.Write_I32(static_cast<std::int32_t>(live) - 1);
    writer.Write_I32(content.ChannelNumber);
    writer.Write_Double(UNKNOWN_LENGTH);
    writer.Write_I32(content.FirstEventI);
    writer.Write_I32(Last_Row(content.Events.size()));
    for (const ChannelEvent& event : content.Events)
        Write_Event_Row(writer, event);
    writer.Write_I32(content.NextID);
    Write_Table(writer, content.Tables.QChords, Write_QChord_Row);
    Write_Table(writer, content.Tables.Notes, Write_Note_Row);
    Write_Table(writer, content.Tables.NamedEvents, Write_Named_Row);
    Write_Table(writer, content.Tables.MCEvents, Write_MC_Row);
    Write_Table(writer, content.Tables.AudioEvents, Write_Audio_Row);
}

bool UNDO_LoadData_From_File(Byte_Cursor& cursor, Channel_Content& content) {
    (void)cursor.Read_I32(); // the live rows are counted
    content = Channel_Content{};
    content.ChannelNumber = cursor.Read_I32();
    (void)cursor.Read_Double(); // so is their length
    content.FirstEventI = cursor.Read_I32();
    const std::int64_t lastRow = cursor.Read_I32();
    if (!Read_Rows(cursor, lastRow + 1, EVENT_ROW_BYTES, content.Events, Read_Event_Row))
        return false;
    content.NextID = cursor.Read_I32();
    Event_Tables& tables = content.Tables;
    return std::all_of(content.Events.begin(), content.Events.end(),
                       [](const ChannelEvent& event) { return Is_Kind(event.Kind); }) &&
           Read_Table(cursor, QCHORD_ROW_BYTES, tables.QChords, Read_QChord_Row) &&
           Read_Table(cursor, NOTE_ROW_BYTES, tables.Notes, Read_Note_Row) &&
           Read_Table(cursor, NAMED_ROW_BYTES, tables.NamedEvents, Read_Named_Row) &&
           Read_Table(cursor, MC_ROW_BYTES, tables.MCEvents, Read_MC_Row) &&
           Read_Table(cursor, AUDIO_ROW_BYTES, tables.AudioEvents, Read_Audio_Row) && cursor.Ok() &&
           cursor.Remaining() == 0;
}

void UNDO_SaveData_To_File(Byte_Writer& writer, const Map_Content& map) {
    writer.Write_I32(Last_Row(map.Points.size()));
    for (const MapPoint& point : map.Points)
        Write_Map_Row(writer, point);
    writer.Write_I32(map.NextID);
}

bool UNDO_LoadData_From_File(Byte_Cursor& cursor, Map_Content& map) {
    const std::int64_t lastRow = cursor.Read_I32();
    if (!Read_Rows(cursor, lastRow + 1, MAP_ROW_BYTES, map.Points, Read_Map_Row))
        return false;
    map.NextID = cursor.Read_I32();
    return cursor.Ok() && cursor.Remaining() == 0;
}

void UNDO_SaveToFile(Byte_Writer& writer, const Tempo_Content& tempo) {
    writer.Write_I32(Last_Row(tempo.Rows.size()));
    for (const TempoChange& change : tempo.Rows)
        Write_Tempo_Row(writer, change);
}

bool UNDO_LoadFromFile(Byte_Cursor& cursor, Tempo_Content& tempo) {
    const std::int64_t lastRow = cursor.Read_I32();
    return Read_Rows(cursor, lastRow + 1, TEMPO_ROW_BYTES, tempo.Rows, Read_Tempo_Row) &&
           cursor.Remaining() == 0;
}

} // namespace tonvex
