#pragma once

#include "base/byte_cursor.h"

#include <array>
#include <cstdint>
#include <vector>

namespace tonvex {

/// What a song keeps of its events editor. A value; what has no meaning yet is carried along as it came.
struct EventsEditor_Setup {
    static constexpr std::int32_t SECTION_VERSION = 2; ///< what Settings_Save writes

    std::int32_t AlignDiv = 4; ///< divisions of a beat that edits snap to
    double AlignStep = 0.5;    ///< beats
    std::array<std::uint8_t, 40> Reserved{};
    std::array<std::vector<std::uint8_t>, 2> ReservedTexts; ///< at most 65535 bytes each

    /// Appends the section: 56 bytes while the reserved texts are empty.
    void Settings_Save(Byte_Writer& writer) const;
    /// Reads a section of version 1 (of which AlignDiv and AlignStep count) or 2. False when it is not whole,
    /// and nothing has changed. The values stand as they came (a step that is no number is a new song's): who
    /// divides by one looks first.
    bool Settings_Load(Byte_Cursor& cursor, std::int32_t version = SECTION_VERSION);

    bool operator==(const EventsEditor_Setup&) const = default;
};

} // namespace tonvex
