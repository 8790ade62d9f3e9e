#include "project/project_sections.h"

#include <algorithm>
#include <limits>

// Values of the song as a whole, marks and tempo changes.

namespace tonvex {

namespace {

constexpr std::int32_t HIGHEST_TOOL_VALUE = 5;

} // namespace

void Write_GlobalVariables(Byte_Writer& writer, const Song_Snapshot& song) {
    const Project_State& state = song.State;
    writer.Write_I32(state.TransportOption);
    writer.Write_I32(state.ToolValueA);
    writer.Write_I32(state.ToolValueB);
    writer.Write_I32(state.ReservedLong);
    writer.Write_I32(state.ProjectTempo);
    writer.Write_I32(state.MetronomeNoteA);
    writer.Write_I32(state.MetronomeNoteB);
    writer.Write_I16(state.EvEdViewA);
    writer.Write_I16(state.EvEdViewB);
    writer.Write_I32(state.EvEdViewC);
    writer.Write_I32(state.EvEdViewD);
    writer.Write_U16(state.EvEdViewBeats);
    writer.Write_I32(state.HubValue1400);
    Write_Counted_Text(writer, state.ProjectTitle);
    Write_Counted_Text(writer, state.ProjectAuthor);
    Write_Counted_Text(writer, state.ProjectComments);
    writer.Write_I32(state.KeyboardSetupN);
    writer.Write_I32(state.ProjectID);
    writer.Write_I32(state.InstallationID);
    writer.Write_I32(state.NextAudioFileN);
}

bool Read_GlobalVariables_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    Project_State& state = reading.song.State;
    state.TransportOption = cursor.Read_I32();
    state.ToolValueA = std::clamp(cursor.Read_I32(), 0, HIGHEST_TOOL_VALUE);
    state.ToolValueB = std::clamp(cursor.Read_I32(), 0, HIGHEST_TOOL_VALUE);
    state.ReservedLong = cursor.Read_I32();
    // A song's tempo is what a tempo change can be.
    state.ProjectTempo =
        std::clamp<std::int32_t>(cursor.Read_I32(), 1, std::numeric_limits<std::int16_t>::max());
    state.MetronomeNoteA = cursor.Read_I32();
    state.MetronomeNoteB = cursor.Read_I32();
    state.EvEdViewA = cursor.Read_I16();
    state.EvEdViewB = cursor.Read_I16();
    state.EvEdViewC = cursor.Read_I32();
    state.EvEdViewD = cursor.Read_I32();
    state.EvEdViewBeats = cursor.Read_U16();
    state.HubValue1400 = cursor.Read_I32();
    state.ProjectTitle = Read_Counted_Text(cursor);
    state.ProjectAuthor = Read_Counted_Text(cursor);
    state.ProjectComments = Read_Counted_Text(cursor);
    return cursor.Ok();
}

// Each version went on where the one before ended.

bool Read_GlobalVariables_V2(Byte_Cursor& cursor, Project_Reading& reading) {
    Read_GlobalVariables_V1(cursor, reading);
    reading.song.State.KeyboardSetupN = cursor.Read_I32();
    return cursor.Ok();
}

bool Read_GlobalVariables_V3(Byte_Cursor& cursor, Project_Reading& reading) {
    Read_GlobalVariables_V2(cursor, reading);
    Project_State& state = reading.song.State;
    state.ProjectID = cursor.Read_I32();
    state.InstallationID = cursor.Read_I32();
    state.NextAudioFileN = cursor.Read_I32();
    return cursor.Ok();
}

void Write_Marks_Array(Byte_Writer& writer, const Song_Snapshot& song) {
    for (const Mark& mark : song.Marks) {
        writer.Write_U16(mark.InUse);
        writer.Write_Double(mark.MarkStart);
        writer.Write_Double(mark.MarkEnd);
        Write_Counted_Text(writer, mark.MarkName);
        writer.Write_I32(mark.MarkColor);
    }
    writer.Write_I32(song.MarkCount);
}

bool Read_Marks_Array_V3(Byte_Cursor& cursor, Project_Reading& reading) {
    for (Mark& mark : reading.song.Marks) {
        mark.InUse = cursor.Read_U16();
        mark.MarkStart = cursor.Read_Double();
        mark.MarkEnd = cursor.Read_Double();
        mark.MarkName = Read_Counted_Text(cursor);
        mark.MarkColor = cursor.Read_I32();
    }
    reading.song.MarkCount = cursor.Read_I32();
    return cursor.Ok();
}

void Write_TempoList_Data(Byte_Writer& writer, const Song_Snapshot& song) {
    Write_Tempo_V1(writer, song.Tempo);
}

bool Read_TempoList_Data_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    return Read_Tempo_V1(cursor, reading.song.Tempo);
}

} // namespace tonvex
