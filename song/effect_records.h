#pragma once

#include "base/byte_cursor.h"
#include "platform/effects/effect_settings.h"
#include "song/event_data.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonvex {

/// The name under which files know an effect, such as "GUID_DSFX_STANDARD_ECHO".
const char* Effect_Name(Effect_Kind kind) noexcept;
std::optional<Effect_Kind> Effect_Of_Name(std::string_view name) noexcept;

/// Bytes of an effect's record: 16 for the reverb, 28 chorus, 28 flanger, 20 echo, 20 distortion. Its
/// parameters in their order, 4 bytes each, little-endian: an IEEE single, or a signed integer for whole
/// ones.
std::size_t Effect_Record_Size(Effect_Kind kind) noexcept;
/// The values are brought into their ranges first.
std::vector<std::uint8_t> Effect_Record(Effect_Kind kind, const Effect_Values& values);
/// Reads Effect_Record_Size bytes; values out of range are brought into it. The neutral values when the
/// cursor fails.
Effect_Values Read_Effect_Record(Effect_Kind kind, Byte_Cursor& cursor) noexcept;
/// The record as lower-case hex digits, and back; nothing when the text is no record of that kind.
std::string Effect_Record_Text(Effect_Kind kind, const Effect_Values& values);
std::optional<Effect_Values> Effect_Of_Text(Effect_Kind kind, std::string_view text);

/// The effects of all outputs. Rows 0 to 31 are the output slots, rows from 32 on the audio outputs from 0
/// on. Interface thread. Rows outside the table are the caller's fault.
class Song_Effects {
public:
    static constexpr int SLOTS = 32;
    static constexpr int ROWS = 131;

    const Effect_Settings& Row(int row) const { return rows[static_cast<std::size_t>(row)]; }
    bool Is_On(int row, Effect_Kind kind) const { return Row(row).Is_On(kind); }
    void Set_On(int row, Effect_Kind kind, bool on);
    /// Brought into their ranges.
    void Set_Values(int row, Effect_Kind kind, const Effect_Values& values);
    void Set_Row(int row, const Effect_Settings& settings);
    /// All off, all neutral.
    void Clear() { rows.fill(Effect_Settings()); }

private:
    std::array<Effect_Settings, ROWS> rows;
};

} // namespace tonvex
