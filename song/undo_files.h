#pragma once

#include "base/byte_cursor.h"
#include "song/channel_content.h"
#include "song/map_content.h"
#include "song/tempo_content.h"

namespace tonvex {

// Parts of the song as undo files carry them: every row as it stands, free ones too, with links and IDs;
// nothing is sorted or numbered anew. The readers give false, and a content of no use, when the bytes are not
// whole.

void UNDO_SaveData_To_File(Byte_Writer& writer, const Channel_Content& content);
bool UNDO_LoadData_From_File(Byte_Cursor& cursor, Channel_Content& content);

void UNDO_SaveData_To_File(Byte_Writer& writer, const Map_Content& map);
bool UNDO_LoadData_From_File(Byte_Cursor& cursor, Map_Content& map);

/// The next ID is not in the file: a number once given stays used.
void UNDO_SaveToFile(Byte_Writer& writer, const Tempo_Content& tempo);
bool UNDO_LoadFromFile(Byte_Cursor& cursor, Tempo_Content& tempo);

} // namespace tonvex
