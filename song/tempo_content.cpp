#include "song/tempo_content.h"

#include "song/file_rows.h"

namespace tonvex {

void Tempo_Content::Renumber() {
    NextID = FIRST_ID;
    for (TempoChange& change : Rows)
        if (Is_On(change.InUse))
            change.ID = NextID++;
}

TempoChange Read_Tempo_Row(Byte_Cursor& cursor) {
    TempoChange change;
    change.InUse = cursor.Read_U16();
    change.BeatN = cursor.Read_Double();
    change.Tempo = cursor.Read_I16();
    change.ID = cursor.Read_I32();
    return change;
}

void Write_Tempo_Row(Byte_Writer& writer, const TempoChange& change) {
    writer.Write_U16(change.InUse);
    writer.Write_Double(change.BeatN);
    writer.Write_I16(change.Tempo);
    writer.Write_I32(change.ID);
}

void Write_Tempo_V1(Byte_Writer& writer, const Tempo_Content& tempo) {
    Tempo_Content numbered = tempo;
    numbered.Renumber();
    writer.Write_I32(static_cast<std::int32_t>(numbered.Rows.size()) - 1);
    for (const TempoChange& change : numbered.Rows)
        Write_Tempo_Row(writer, change);
    writer.Write_I32(numbered.NextID);
}

bool Read_Tempo_V1(Byte_Cursor& cursor, Tempo_Content& tempo) {
    const std::int64_t lastRow = cursor.Read_I32();
    tempo = Tempo_Content{};
    if (!Read_Rows(cursor, lastRow + 1, TEMPO_ROW_BYTES, tempo.Rows, Read_Tempo_Row))
        return false;
    (void)cursor.Read_I32(); // NextID: the numbers are given anew
    tempo.Renumber();
    return cursor.Ok();
}

} // namespace tonvex
