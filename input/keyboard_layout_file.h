#pragma once

#include "song/event_data.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tonvex {

enum Key_Kind : std::uint8_t { KEY_NOTE = 0, KEY_QCHORD = 1, KEY_MC = 5, KEY_RESERVED = 255 };

struct KeyMapEntry {
    std::int16_t Enabled = 0; ///< -1 the key does something
    std::int16_t Target = 0;  ///< row in the table of its kind
    std::uint8_t Kind = KEY_NOTE;
    bool operator==(const KeyMapEntry&) const = default;
};

inline constexpr std::size_t LAYOUT_ROWS = 256;
inline constexpr std::size_t LAYOUT_FILE_BYTES = 73222;

/// The bytes of the chords' names as a file had them. A name that was not changed is written with its old
/// padding, so that reading and writing a file gives the same bytes.
using Chord_Name_Fields = std::array<std::array<std::uint8_t, 10>, LAYOUT_ROWS>;

/// The rows of the key tables that files hold: computer keys by scan code.
struct Key_Tables {
    std::array<KeyMapEntry, LAYOUT_ROWS> map;
    std::array<NoteData, LAYOUT_ROWS> notes;
    std::array<QChordData, LAYOUT_ROWS> chords;
    std::array<MCEventData, LAYOUT_ROWS> styles;
    Chord_Name_Fields nameFields{};
};

enum class Layout_Read {
    Replaced,   ///< the rows are those of the file
    Kept,       ///< a version that holds no rows: the rows stay
    Not_Layout, ///< the first four bytes are another file's
    Broken      ///< too short
};

/// Reads a keyboard layout of version "02", or "01", which has no style rows, no finger picking and its
/// lengths in milliseconds at currentTempo (beats per minute; a tempo not above 0 counts as 1). What a
/// version does not hold stays in tables. Unless the result is Replaced, tables stay as they were. Values are
/// taken as they stand. Bytes behind the rows are passed over.
Layout_Read Read_Layout(std::span<const std::uint8_t> bytes, double currentTempo, Key_Tables& tables);

/// A file of version "02", LAYOUT_FILE_BYTES long.
std::vector<std::uint8_t> Write_Layout(const Key_Tables& tables);

} // namespace tonvex
