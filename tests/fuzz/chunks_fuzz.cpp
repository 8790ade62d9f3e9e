// Chunk files and soundfont headers of any bytes: no crash, no read outside, and what is told holds.

#include "audio/dls_list_class.h"
#include "audio/riff_parser_class.h"
#include "fuzz/require.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    tonvex::RiffParserClass parser;
    parser.Open_Bytes(bytes);
    parser.ParseFile();
    const auto& chunks = parser.Chunks();
    std::vector<std::uint8_t> content;
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        const tonvex::RiffChunk& chunk = chunks[i];
        const auto row = static_cast<std::int32_t>(i);
        Require(chunk.Parent < row && chunk.Level <= tonvex::RiffParserClass::MAX_LEVEL);
        Require(chunk.Level == 0 || chunks[static_cast<std::size_t>(chunk.Parent)].Level == chunk.Level - 1);
        Require(chunk.DataPos <= static_cast<std::int64_t>(size));
        if (parser.ReadData_BytesArray(row, content))
            Require(content.size() == static_cast<std::size_t>(chunk.DataSize) && content.size() <= size);
        Require(parser.FindChunk(0, chunk.ChunkID) <= row);
    }

    std::string title;
    std::vector<tonvex::Font_Preset> presets;
    if (tonvex::DLSListClass::Parse_SF2_Bytes(bytes, title, presets))
        Require(!presets.empty() && presets.size() * 38 < size);
    else
        Require(presets.empty() && title.empty());
    for (const tonvex::Font_Preset& preset : presets)
        Require(preset.PresetBank < 128);
    return 0;
}
