#include "audio/dls_list_class.h"

#include "audio/patch_tables.h"
#include "audio/riff_parser_class.h"
#include "base/byte_cursor.h"
#include "base/file_io.h"
#include "base/text_codec.h"

#include <algorithm>
#include <string_view>
#include <system_error>

namespace tonvex {

namespace {

constexpr std::size_t LIST_FILE_LIMIT = std::size_t{1} << 20;
constexpr std::size_t TITLE_BYTES = 256; // the format's own limit, its closing zero included

// The "phdr" record of the SoundFont 2 format: name, program, bank, then 14 bytes of no use here.
constexpr std::size_t PRESET_BYTES = 38;
constexpr std::size_t PRESET_NAME_BYTES = 20;
constexpr std::int64_t MAX_PRESETS = 65536; // further presets cannot refer to bags, by 16-bit numbers
constexpr int DRUM_BANK = 128;

bool Exists(const std::filesystem::path& path) {
    std::error_code problem;
    return std::filesystem::is_regular_file(path, problem);
}

std::string_view Up_To_Zero(std::string_view bytes) {
    return bytes.substr(0, bytes.find('\0'));
}

std::string Title_Of(RiffParserClass& parser) {
    std::string bytes;
    parser.ReadData(parser.FindChunk(0, "INAM"), bytes, TITLE_BYTES);
    return Trim(Text_From_File(Up_To_Zero(bytes)));
}

Font_Preset Read_Preset(std::span<const std::uint8_t> record) {
    Byte_Cursor cursor(record);
    const auto name = cursor.Read_Bytes(PRESET_NAME_BYTES);
    Font_Preset preset;
    preset.PresetName = Text_From_File(Up_To_Zero(std::string(name.begin(), name.end())));
    preset.PresetNumber = static_cast<std::uint8_t>(cursor.Read_U16() & 255U);
    const std::uint16_t bank = cursor.Read_U16();
    preset.IsDrums = To_Flag(bank >= DRUM_BANK);
    preset.PresetBank = static_cast<std::uint8_t>(bank & 127U);
    return preset;
}

bool Parse_Opened(RiffParserClass& parser, std::string& title, std::vector<Font_Preset>& presets) {
    parser.ParseFile();
    std::string chunkId;
    std::string listType;
    std::int64_t size = 0;
    std::int64_t position = 0;
    const std::int32_t row = parser.FindChunk(0, "phdr");
    if (!parser.GetChunkInfo(row, chunkId, listType, size, position))
        return false;
    const auto recordSize = static_cast<std::int64_t>(PRESET_BYTES);
    const std::int64_t records = size / recordSize;
    std::vector<std::uint8_t> bytes;
    if (size % recordSize != 0 || records < 2 || records > MAX_PRESETS ||
        !parser.ReadData_BytesArray(row, bytes))
        return false;
    // The last record only closes the table.
    for (std::size_t start = 0; start + 2 * PRESET_BYTES <= bytes.size(); start += PRESET_BYTES)
        presets.push_back(Read_Preset(std::span(bytes).subspan(start, PRESET_BYTES)));
    title = Title_Of(parser);
    return true;
}

} // namespace

DLSListClass::DLSListClass(Sound_Door& soundDoor, midiapi& outputApi, GlobalChannelsManager& channelTable)
    : sound(soundDoor), output(outputApi), channels(channelTable) {}

std::filesystem::path DLSListClass::Get_DefaultList_Path() const {
    return configFolder / "defaultsf2.cfg";
}

std::vector<std::filesystem::path> DLSListClass::Well_Known_Fonts() {
    // The system's own choice first, then the stock font, then the larger ones by the folders of the
    // common distributions.
    return {
        "/usr/share/sounds/sf2/default-GM.sf2",       "/usr/share/sounds/sf2/TimGM6mb.sf2",
        "/usr/share/sounds/sf2/FluidR3_GM.sf2",       "/usr/share/soundfonts/default.sf2",
        "/usr/share/soundfonts/FluidR3_GM.sf2",       "/usr/share/soundfonts/FluidR3_GM2-2.sf2",
        "/usr/local/share/sounds/sf2/default-GM.sf2", "/usr/local/share/soundfonts/default.sf2",
    };
}

bool DLSListClass::Load_DefaultList(bool dontLoadFonts, bool keepCurList) {
    if (!output.UsingSynth()) {
        soundingFonts.clear();
        Fill_Plain_Patches(channels);
        return true;
    }
    DefaultList.clear();
    if (const auto bytes = Read_File(Get_DefaultList_Path(), LIST_FILE_LIMIT)) {
        for (const std::string& line :
             Split_Lines(Text_From_File(std::string(bytes->begin(), bytes->end())))) {
            std::string path = Trim(line);
            if (!path.empty() && Exists(path))
                DefaultList.push_back(std::move(path));
        }
    }
    if (DefaultList.empty()) {
        const auto found = std::find_if(fallbackFonts.begin(), fallbackFonts.end(), Exists);
        if (found != fallbackFonts.end())
            DefaultList.push_back(found->string());
    }
    if (!keepCurList)
        CurList = DefaultList;
    return dontLoadFonts ? !DefaultList.empty() : Load_SF2_List(DefaultList);
}

bool DLSListClass::Save_DefaultList(std::string& error) const {
    std::string text;
    for (const std::string& path : DefaultList) {
        if (path.find_first_of("\r\n") != std::string::npos) {
            error = "A file name with a line break cannot stand in the default list: " + path;
            return false;
        }
        if (!path.empty())
            text += path + "\n";
    }
    Byte_Writer writer;
    writer.Write_Text(text);
    return Replace_File(Get_DefaultList_Path(), writer.Bytes(), error);
}

std::vector<std::string> DLSListClass::CheckFiles_Curlist() const {
    std::vector<std::string> gone;
    std::copy_if(CurList.begin(), CurList.end(), std::back_inserter(gone),
                 [](const std::string& path) { return !path.empty() && !Exists(path); });
    return gone;
}

bool DLSListClass::Load_CurList_Fonts() {
    return Load_SF2_List(CurList);
}

bool DLSListClass::Keep_Or_Load_CurList() {
    return (anyLoaded && loadedList == CurList && output.UsingSynth()) || Load_CurList_Fonts();
}

bool DLSListClass::Load_For_Output() {
    return CurList.empty() ? Load_DefaultList() : Load_CurList_Fonts();
}

bool DLSListClass::Load_SF2_List(const std::vector<std::string>& list) {
    failedFonts.clear();
    loadedList.clear();
    anyLoaded = false;
    soundingFonts.clear();
    if (!output.UsingSynth()) {
        Fill_Plain_Patches(channels);
        return true;
    }
    std::vector<std::filesystem::path> paths;
    std::vector<Loaded_Font> fonts;
    for (const std::string& path : list) {
        if (path.empty())
            continue;
        std::string title;
        Loaded_Font font;
        if (Parse_SF2_File(path, title, font.presets)) {
            paths.emplace_back(path);
            fonts.push_back(std::move(font));
        } else {
            failedFonts.push_back(path);
        }
    }
    const std::vector<std::int32_t> handles = sound.Set_Fonts(paths);
    for (std::size_t i = 0; i < fonts.size(); ++i) {
        fonts[i].handle = i < handles.size() ? handles[i] : 0;
        if (fonts[i].handle > 0)
            soundingFonts.push_back({paths[i], fonts[i].handle});
        else
            failedFonts.push_back(paths[i].string());
    }
    std::erase_if(fonts, [](const Loaded_Font& font) { return font.handle <= 0; });
    Fill_Font_Patches(channels, fonts);
    loadedList = list;
    anyLoaded = !fonts.empty();
    return anyLoaded;
}

std::string DLSListClass::Get_SF2File_Title(const std::filesystem::path& path) {
    RiffParserClass parser;
    if (!parser.OpenFile(path))
        return {};
    parser.ParseFile();
    return Title_Of(parser);
}

bool DLSListClass::Parse_SF2_File(const std::filesystem::path& path, std::string& title,
                                  std::vector<Font_Preset>& presets) {
    title.clear();
    presets.clear();
    RiffParserClass parser;
    return parser.OpenFile(path) && Parse_Opened(parser, title, presets);
}

bool DLSListClass::Parse_SF2_Bytes(std::span<const std::uint8_t> bytes, std::string& title,
                                   std::vector<Font_Preset>& presets) {
    title.clear();
    presets.clear();
    RiffParserClass parser;
    parser.Open_Bytes(bytes);
    return Parse_Opened(parser, title, presets);
}

} // namespace tonvex
