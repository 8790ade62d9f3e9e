#include "project/project_reader.h"

#include "base/byte_cursor.h"
#include "project/project_layout.h"
#include "project/project_sections.h"

#include <charconv>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace tonvex {

namespace {

constexpr int HIGHEST_VERSION = 1;

struct Section_Place {
    std::int32_t position = 0; ///< counts from 1
    std::int32_t version = 0;
};

std::string_view Characters(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The number that the version's digits spell; nothing when they spell none.
std::optional<int> Version_Number(std::string_view digits) {
    int version = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), version);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return version;
}

/// Places of the sections by the readers' numbers of their names; of rows with one name the first counts.
/// False when the table does not stand in the file.
bool Read_Table(Byte_Cursor& cursor, std::span<const Section_Reader> readers,
                std::vector<std::optional<Section_Place>>& places) {
    const std::int64_t lastSectionI = cursor.Read_I32();
    if (lastSectionI < -1)
        return false;
    // A row takes bytes, so the cursor ends this however many are claimed.
    for (std::int64_t row = 0; row <= lastSectionI && cursor.Ok(); ++row) {
        const std::string_view name = Characters(cursor.Read_Bytes(cursor.Read_U16()));
        const std::int32_t position = cursor.Read_I32();
        const std::int32_t version = cursor.Read_I32();
        for (std::size_t i = 0; i < readers.size(); ++i)
            if (readers[i].name == name && !places[i])
                places[i] = Section_Place{position, version};
    }
    return cursor.Ok();
}

} // namespace

bool Has_An_ID_Each(const Song_Snapshot& song) {
    std::set<std::int32_t> ids;
    for (int row = 0; row < Song_Snapshot::ROWS; ++row)
        if (song.Is_Live_Row(row) &&
            !ids.insert(song.Channels[static_cast<std::size_t>(row)].ChannelID).second)
            return false;
    return true;
}

Read_Outcome Read_Project(std::span<const std::uint8_t> bytes, Song_Snapshot& song) {
    Byte_Cursor cursor(bytes);
    if (Characters(cursor.Read_Bytes(PROJECT_MAGIC.size())) != PROJECT_MAGIC)
        return Read_Outcome::Not_A_Project;
    const auto version = Version_Number(Characters(cursor.Read_Bytes(PROJECT_VERSION.size())));
    if (!version)
        return Read_Outcome::Broken;
    if (*version > HIGHEST_VERSION)
        return Read_Outcome::Version_Not_Supported;
    const auto readers = Section_Readers();
    std::vector<std::optional<Section_Place>> places(readers.size());
    if (!Read_Table(cursor, readers, places))
        return Read_Outcome::Broken;
    Project_Reading reading;
    for (std::size_t first = 0; first < readers.size();) {
        std::size_t end = first;
        const Section_Reader* reader = nullptr;
        for (; end < readers.size() && readers[end].name == readers[first].name; ++end)
            if (places[first] && readers[end].version == places[first]->version)
                reader = &readers[end];
        const std::optional<Section_Place> place = places[first];
        first = end;
        if (!place)
            continue;
        if (reader == nullptr)
            return Read_Outcome::Newer_Section;
        if (place->position < static_cast<std::int32_t>(FIRST_POSITION))
            return Read_Outcome::Broken;
        Byte_Cursor section(bytes);
        section.Seek(static_cast<std::size_t>(place->position) - FIRST_POSITION);
        if (!reader->read(section, reading) || !section.Ok())
            return Read_Outcome::Broken;
    }
    if (!Has_An_ID_Each(reading.song))
        return Read_Outcome::Broken;
    song = std::move(reading.song);
    return Read_Outcome::Whole;
}

} // namespace tonvex
