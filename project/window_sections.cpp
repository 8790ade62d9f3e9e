#include "project/project_sections.h"

// What the editors and the music creator keep in a song. They write and read it themselves.

namespace tonvex {

void Write_EventsEditor_Setup(Byte_Writer& writer, const Song_Snapshot& song) {
    song.EditorSetup.Settings_Save(writer);
}

bool Read_EventsEditor_Setup_V2(Byte_Cursor& cursor, Project_Reading& reading) {
    return reading.song.EditorSetup.Settings_Load(cursor, 2);
}

void Write_MusicCreator_Data(Byte_Writer& writer, const Song_Snapshot& song) {
    song.MusicCreator.MC_SaveData(writer);
}

bool Read_MusicCreator_Data_V3(Byte_Cursor& cursor, Project_Reading& reading) {
    return reading.song.MusicCreator.MC_LoadData_V3(cursor);
}

} // namespace tonvex
