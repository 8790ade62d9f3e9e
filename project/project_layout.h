#pragma once

#include <cstddef>
#include <string_view>

namespace tonvex {

// The head of a project file, by byte offsets from its start.
inline constexpr std::string_view PROJECT_MAGIC = "TVX2";
inline constexpr std::string_view PROJECT_VERSION = "01"; ///< two digits
inline constexpr std::size_t SECTION_TABLE_OFFSET = 10;   ///< behind magic, version and the last row's number
inline constexpr std::size_t SECTION_TABLE_BYTES = 300;
inline constexpr std::size_t FIRST_SECTION_OFFSET = SECTION_TABLE_OFFSET + SECTION_TABLE_BYTES;

/// Positions in the file count from 1.
inline constexpr std::size_t FIRST_POSITION = 1;

} // namespace tonvex
