#pragma once

#include "base/byte_cursor.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tonvex {

/// One chunk: code, size of data, data, and a zero byte when data is of odd size.
inline std::string Riff_Chunk(const std::string& code, const std::string& data) {
    Byte_Writer writer;
    writer.Write_Text(code);
    writer.Write_U32(static_cast<std::uint32_t>(data.size()));
    writer.Write_Text(data);
    if (data.size() % 2 != 0)
        writer.Write_U8(0);
    return {writer.Bytes().begin(), writer.Bytes().end()};
}

/// A "RIFF" or "LIST" of a form type around whole chunks.
inline std::string Riff_List(const std::string& code, const std::string& type, const std::string& content) {
    return Riff_Chunk(code, type + content);
}

struct Preset_Header {
    std::string name;
    int program;
    int bank;
};

/// Preset records of 38 bytes, with the closing one.
inline std::string Preset_Records(const std::vector<Preset_Header>& presets) {
    std::string records;
    const auto add = [&](const Preset_Header& preset) {
        Byte_Writer writer;
        std::string name = preset.name.substr(0, 20);
        name.resize(20, '\0');
        writer.Write_Text(name);
        writer.Write_U16(static_cast<std::uint16_t>(preset.program));
        writer.Write_U16(static_cast<std::uint16_t>(preset.bank));
        writer.Write_Text(std::string(14, '\0'));
        records.append(writer.Bytes().begin(), writer.Bytes().end());
    };
    for (const Preset_Header& preset : presets)
        add(preset);
    add({"EOP", 0, 0});
    return records;
}

/// A soundfont of a title and preset headers alone: enough to be listed, not to sound.
inline std::string Silent_Font(const std::string& title, const std::string& presetRecords) {
    return Riff_List("RIFF", "sfbk",
                     Riff_List("LIST", "INFO", Riff_Chunk("INAM", title)) +
                         Riff_List("LIST", "pdta", Riff_Chunk("phdr", presetRecords)));
}

inline std::vector<std::uint8_t> Bytes_Of(const std::string& text) {
    return {text.begin(), text.end()};
}

} // namespace tonvex
