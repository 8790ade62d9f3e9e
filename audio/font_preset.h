#pragma once

#include "song/event_data.h"

#include <cstdint>
#include <string>

namespace tonvex {

/// One sound of a soundfont, as its preset headers tell it.
struct Font_Preset {
    std::string PresetName;
    std::uint8_t PresetNumber = 0; ///< program; above 127 no patch can select it
    std::uint8_t PresetBank = 0;   ///< 0 to 127
    Flag16 IsDrums = 0;
    bool operator==(const Font_Preset&) const = default;
};

} // namespace tonvex
