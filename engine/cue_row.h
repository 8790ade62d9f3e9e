#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace tonvex {

/// One row of a list for the player library, in the layout in which it crosses over: 16 bytes, little-endian,
/// rows contiguous.
struct CueRow {
    /// Values of Data1 beside the notes 0 to 127.
    static constexpr std::uint16_t PATCH_CHANGE = 1000;
    static constexpr std::uint16_t LIST_MARKER = 3000;
    /// Extra of a note on: two bits, and a tag that tells apart what begins alike, the same whenever the
    /// list is made anew.
    static constexpr std::uint16_t YIELDS = 0x8000;  ///< left out while the performer holds the note
    static constexpr std::uint16_t RENEWED = 0x4000; ///< not what sounded of the list that this one replaces
    static constexpr std::uint16_t TAG = 0x3FFF;

    double Time = 0.0;        ///< song position in beats
    std::int16_t Channel = 0; ///< output channel, 0 to 31
    std::uint16_t Data1 = 0;  ///< note 0 to 127, PATCH_CHANGE or LIST_MARKER
    /// Note: velocity, 0 is note off. Patch change: patch + 256 * bank. Marker: the channel's row in the
    /// channel table.
    std::uint16_t Data2 = 0;
    /// Patch change: the synthesizer's font handle, 0 for whichever font has the patch. Note on: see
    /// YIELDS. Else unused.
    std::uint16_t Extra = 0;

    bool operator==(const CueRow&) const = default;
};

static_assert(sizeof(CueRow) == 16 && alignof(CueRow) <= 8);
static_assert(offsetof(CueRow, Time) == 0 && offsetof(CueRow, Channel) == 8);
static_assert(offsetof(CueRow, Data1) == 10 && offsetof(CueRow, Data2) == 12 &&
              offsetof(CueRow, Extra) == 14);
static_assert(std::endian::native == std::endian::little, "rows are handed over as they lie in memory");

} // namespace tonvex
