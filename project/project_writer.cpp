#include "project/project_writer.h"

#include "project/project_layout.h"
#include "project/project_sections.h"

#include <algorithm>
#include <limits>

namespace tonvex {

namespace {

constexpr std::size_t MOST_FILE_BYTES = std::numeric_limits<std::int32_t>::max();
/// Everything but the channels' events is about this long in an ordinary song.
constexpr std::size_t USUAL_BYTES_WITHOUT_EVENTS = 100'000;

std::size_t Expected_Bytes(const Song_Snapshot& song) {
    constexpr std::size_t EVENT_AND_NOTE = 33;
    std::size_t bytes = USUAL_BYTES_WITHOUT_EVENTS;
    for (const auto& content : song.Contents)
        if (content)
            bytes += content->Events.size() * EVENT_AND_NOTE;
    return bytes;
}

} // namespace

std::optional<std::vector<std::uint8_t>> Write_Project(const Song_Snapshot& song) {
    Byte_Writer writer;
    writer.Reserve(Expected_Bytes(song));
    Byte_Writer table;
    const auto sections = Section_Writers();
    writer.Write_Text(std::string(PROJECT_MAGIC));
    writer.Write_Text(std::string(PROJECT_VERSION));
    writer.Write_I32(static_cast<std::int32_t>(sections.size()) - 1);
    const std::vector<std::uint8_t> room(SECTION_TABLE_BYTES);
    writer.Write_Bytes(room);
    for (const Section_Writer& section : sections) {
        table.Write_U16(static_cast<std::uint16_t>(section.name.size()));
        table.Write_Text(std::string(section.name));
        table.Write_I32(static_cast<std::int32_t>(writer.Bytes().size() + FIRST_POSITION));
        table.Write_I32(section.version);
        section.write(writer, song);
        if (writer.Bytes().size() > MOST_FILE_BYTES)
            return std::nullopt;
    }
    std::vector<std::uint8_t> bytes = writer.Take();
    std::copy(table.Bytes().begin(), table.Bytes().end(),
              bytes.begin() + static_cast<std::ptrdiff_t>(SECTION_TABLE_OFFSET));
    return bytes;
}

} // namespace tonvex
