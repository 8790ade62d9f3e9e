#pragma once

#include "engine/cue_row.h"
#include "engine/song_moment.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tonvex {

/// One list as the player library keeps it: in order of time, each off tied to its on. Made once, on the
/// thread that hands the rows over, then never changed, so threads share it freely.
///
/// An off belongs to the oldest open note of its number on its channel that stands before it in the rows as
/// they were handed over; one that belongs to none is left out. At equal moments offs come first, all else
/// keeps its order; an off that would not come behind its own on is moved there.
class Cue_List {
public:
    enum class Kind : std::uint8_t { Off, On, Patch };
    struct Item {
        std::int64_t at;   ///< as Moment_At gives it
        std::int32_t note; ///< On and Off: index of Notes
        std::int32_t font; ///< Patch
        Kind kind;
        std::uint8_t slot;
        std::uint8_t a;          ///< note or program
        std::uint8_t b;          ///< velocity as stored, or bank
        std::uint16_t extra = 0; ///< On: as in CueRow
    };
    struct Note {
        std::int64_t at;
        std::int64_t endAt; ///< NEVER when no off belongs to it
        std::uint8_t slot;
        std::uint8_t number;
        std::uint16_t tag; ///< as in CueRow
    };
    static constexpr std::int64_t NEVER = Song_Moment::NEVER;
    static constexpr int NO_ROW = -1;

    /// Copies the rows; those that are no note, patch or marker, or lie outside 0 to 31, are left out.
    static std::shared_ptr<const Cue_List> Make(std::span<const CueRow> rows);

    int Row() const noexcept { return row; } ///< of the channel table, by the marker; NO_ROW without one
    std::span<const Item> Items() const noexcept { return items; }
    std::span<const Note> Notes() const noexcept { return notes; }
    /// Index of the first item at or behind the moment.
    std::size_t First_At(std::int64_t at) const noexcept;
    /// A note of the same number and tag that begins at the same moment, is not renewed and that taken does
    /// not name yet; -1 for none.
    std::int32_t Find_Same(const Note& note, std::span<const std::uint8_t> taken) const noexcept;

private:
    int row = NO_ROW;
    std::vector<Item> items;
    std::vector<Note> notes;
};

} // namespace tonvex
