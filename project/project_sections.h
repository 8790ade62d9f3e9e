#pragma once

#include "base/byte_cursor.h"
#include "project/song_snapshot.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace tonvex {

/// A section in the order of the table and of the file.
struct Section_Writer {
    std::string_view name;
    std::int32_t version; ///< the one that is written
    void (*write)(Byte_Writer& writer, const Song_Snapshot& song);
};

/// What sections tell one another while a file is read, in the fixed order of the readers.
struct Project_Reading {
    Song_Snapshot song;
    std::int32_t channelCount = 0; ///< channel blocks in the file
};

/// One version of a section. False when the section is cut off or says what cannot be.
struct Section_Reader {
    std::string_view name;
    std::int32_t version;
    bool (*read)(Byte_Cursor& cursor, Project_Reading& reading);
};

/// All sections, as they are written.
std::span<const Section_Writer> Section_Writers();
/// All versions that can be read, in the order in which the sections are read; versions of one name stand
/// side by side.
std::span<const Section_Reader> Section_Readers();

// ---- texts ----

inline constexpr std::size_t MOST_TEXT_BYTES = 65535;

/// A 16-bit count and so many bytes, cut at a character's border.
void Write_Counted_Text(Byte_Writer& writer, std::string_view utf8);
std::string Read_Counted_Text(Byte_Cursor& cursor);
std::string Read_Fixed_Text(Byte_Cursor& cursor, std::size_t size);

// ---- the sections, by the file that holds them ----

// channel_sections.cpp
void Write_Global_Channels_Array(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_Global_Channels_Array_V3(Byte_Cursor& cursor, Project_Reading& reading);
void Write_Channel_Class_Data(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_Channel_Class_Data_V2(Byte_Cursor& cursor, Project_Reading& reading);
/// channelCount blocks, each by readBlock, to the rows that they belong to.
bool Read_Channel_Blocks(Byte_Cursor& cursor, Project_Reading& reading,
                         const std::function<bool(Byte_Cursor&, Channel_Content&)>& readBlock);
void Write_Channels_List_Data(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_Channels_List_Data_V1(Byte_Cursor& cursor, Project_Reading& reading);

// sound_sections.cpp
void Write_PanVol_Data(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_PanVol_Data_V2(Byte_Cursor& cursor, Project_Reading& reading);
void Write_FX_Data(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_FX_Data_V2(Byte_Cursor& cursor, Project_Reading& reading);
/// The first rows of the table, and the flags of as many.
bool Read_Effect_Rows(Byte_Cursor& cursor, Song_Effects& effects, int rows);
void Write_SFList_Data(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_SFList_Data_V1(Byte_Cursor& cursor, Project_Reading& reading);

// song_sections.cpp
void Write_GlobalVariables(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_GlobalVariables_V1(Byte_Cursor& cursor, Project_Reading& reading);
bool Read_GlobalVariables_V2(Byte_Cursor& cursor, Project_Reading& reading);
bool Read_GlobalVariables_V3(Byte_Cursor& cursor, Project_Reading& reading);
void Write_Marks_Array(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_Marks_Array_V3(Byte_Cursor& cursor, Project_Reading& reading);
void Write_TempoList_Data(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_TempoList_Data_V1(Byte_Cursor& cursor, Project_Reading& reading);

// window_sections.cpp
void Write_EventsEditor_Setup(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_EventsEditor_Setup_V2(Byte_Cursor& cursor, Project_Reading& reading);
void Write_MusicCreator_Data(Byte_Writer& writer, const Song_Snapshot& song);
bool Read_MusicCreator_Data_V3(Byte_Cursor& cursor, Project_Reading& reading);

} // namespace tonvex
