#pragma once

#include "base/byte_cursor.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tonvex {

using Bytes = std::vector<std::uint8_t>;

/// A section as it stands in a project file.
struct Section_Bytes {
    std::string name;
    std::int32_t version = 0;
    Bytes bytes;
};

/// A project file of these sections and no others, one behind the other.
inline Bytes Project_Of(const std::vector<Section_Bytes>& sections) {
    Byte_Writer writer;
    writer.Write_Text("TVX201");
    writer.Write_I32(static_cast<std::int32_t>(sections.size()) - 1);
    std::size_t position = 311;
    for (const Section_Bytes& section : sections) {
        writer.Write_U16(static_cast<std::uint16_t>(section.name.size()));
        writer.Write_Text(section.name);
        writer.Write_I32(static_cast<std::int32_t>(position));
        writer.Write_I32(section.version);
        position += section.bytes.size();
    }
    Bytes bytes = writer.Take();
    bytes.resize(310);
    for (const Section_Bytes& section : sections)
        bytes.insert(bytes.end(), section.bytes.begin(), section.bytes.end());
    return bytes;
}

/// The sections of a whole file, which stand in the table's order.
inline std::vector<Section_Bytes> Sections_Of(const Bytes& file) {
    Byte_Cursor cursor(file);
    cursor.Seek(6);
    std::vector<Section_Bytes> sections(static_cast<std::size_t>(cursor.Read_I32() + 1));
    std::vector<std::size_t> starts;
    for (Section_Bytes& section : sections) {
        const auto name = cursor.Read_Bytes(cursor.Read_U16());
        section.name.assign(name.begin(), name.end());
        starts.push_back(static_cast<std::size_t>(cursor.Read_I32()) - 1);
        section.version = cursor.Read_I32();
    }
    starts.push_back(file.size());
    for (std::size_t i = 0; i < sections.size(); ++i)
        sections[i].bytes.assign(file.begin() + static_cast<std::ptrdiff_t>(starts[i]),
                                 file.begin() + static_cast<std::ptrdiff_t>(starts[i + 1]));
    return sections;
}

} // namespace tonvex
