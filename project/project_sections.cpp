#include "project/project_sections.h"

#include "base/text_codec.h"
#include "project/older_sections.h"

namespace tonvex {

namespace {

constexpr Section_Writer WRITERS[] = {
    {"Global_Channels_Array", 3, Write_Global_Channels_Array},
    {"Channel_Class_Data", 2, Write_Channel_Class_Data},
    {"Channels_List_Data", 1, Write_Channels_List_Data},
    {"Marks_Array", 3, Write_Marks_Array},
    {"GlobalVariables", 3, Write_GlobalVariables},
    {"PanVol_Data", 2, Write_PanVol_Data},
    {"FX_Data", 2, Write_FX_Data},
    {"EventsEditor_Setup", 2, Write_EventsEditor_Setup},
    {"MusicCreator_Data", 3, Write_MusicCreator_Data},
    {"TempoList_Data", 1, Write_TempoList_Data},
    {"SFList_Data", 1, Write_SFList_Data},
};

// GlobalVariables first: older versions of the others need its tempo.
constexpr Section_Reader READERS[] = {
    {"GlobalVariables", 1, Read_GlobalVariables_V1},
    {"GlobalVariables", 2, Read_GlobalVariables_V2},
    {"GlobalVariables", 3, Read_GlobalVariables_V3},
    {"Global_Channels_Array", 1, Read_Global_Channels_Array_V1},
    {"Global_Channels_Array", 2, Read_Global_Channels_Array_V2},
    {"Global_Channels_Array", 3, Read_Global_Channels_Array_V3},
    {"PanVol_Data", 1, Read_PanVol_Data_V1},
    {"PanVol_Data", 2, Read_PanVol_Data_V2},
    {"Channel_Class_Data", 1, Read_Channel_Class_Data_V1},
    {"Channel_Class_Data", 2, Read_Channel_Class_Data_V2},
    {"Channels_List_Data", 1, Read_Channels_List_Data_V1},
    {"Marks_Array", 1, Read_Marks_Array_V1},
    {"Marks_Array", 2, Read_Marks_Array_V2},
    {"Marks_Array", 3, Read_Marks_Array_V3},
    {"FX_Data", 1, Read_FX_Data_V1},
    {"FX_Data", 2, Read_FX_Data_V2},
    {"EventsEditor_Setup", 1, Read_EventsEditor_Setup_V1},
    {"EventsEditor_Setup", 2, Read_EventsEditor_Setup_V2},
    {"MusicCreator_Data", 1, Read_MusicCreator_Data_V1},
    {"MusicCreator_Data", 2, Read_MusicCreator_Data_V2},
    {"MusicCreator_Data", 3, Read_MusicCreator_Data_V3},
    {"TempoList_Data", 1, Read_TempoList_Data_V1},
    {"SFList_Data", 1, Read_SFList_Data_V1},
};

std::string_view Characters(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

std::span<const Section_Writer> Section_Writers() {
    return WRITERS;
}

std::span<const Section_Reader> Section_Readers() {
    return READERS;
}

void Write_Counted_Text(Byte_Writer& writer, std::string_view utf8) {
    const std::string bytes = Text_To_File_Cut(utf8, MOST_TEXT_BYTES);
    writer.Write_U16(static_cast<std::uint16_t>(bytes.size()));
    writer.Write_Text(bytes);
}

std::string Read_Counted_Text(Byte_Cursor& cursor) {
    return Text_From_File(Characters(cursor.Read_Bytes(cursor.Read_U16())));
}

std::string Read_Fixed_Text(Byte_Cursor& cursor, std::size_t size) {
    return Text_From_Fixed_Field(Characters(cursor.Read_Bytes(size)));
}

} // namespace tonvex
