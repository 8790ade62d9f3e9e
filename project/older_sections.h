#pragma once

#include "base/byte_cursor.h"
#include "project/project_sections.h"

namespace tonvex {

/// Section versions that this program no longer writes. They told times in ms, which become beats by the
/// song's tempo, so GlobalVariables is read before them. A song that is saved again has today's versions.

/// Rows of 65 bytes, without audio channels.
bool Read_Global_Channels_Array_V1(Byte_Cursor& cursor, Project_Reading& reading);
/// Rows of 69 bytes. Neither has soundfonts or styles: a melodic sound is the patch of its number.
bool Read_Global_Channels_Array_V2(Byte_Cursor& cursor, Project_Reading& reading);
/// The maps of the output slots alone.
bool Read_PanVol_Data_V1(Byte_Cursor& cursor, Project_Reading& reading);
bool Read_Channel_Class_Data_V1(Byte_Cursor& cursor, Project_Reading& reading);
/// Without colours: marks are white.
bool Read_Marks_Array_V1(Byte_Cursor& cursor, Project_Reading& reading);
bool Read_Marks_Array_V2(Byte_Cursor& cursor, Project_Reading& reading);
/// The effects of the output slots alone.
bool Read_FX_Data_V1(Byte_Cursor& cursor, Project_Reading& reading);
bool Read_EventsEditor_Setup_V1(Byte_Cursor& cursor, Project_Reading& reading);
bool Read_MusicCreator_Data_V1(Byte_Cursor& cursor, Project_Reading& reading);
bool Read_MusicCreator_Data_V2(Byte_Cursor& cursor, Project_Reading& reading);

} // namespace tonvex
