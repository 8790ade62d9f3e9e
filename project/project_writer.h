#pragma once

#include "project/song_snapshot.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tonvex {

/// The bytes of a project file: header, table of sections, sections. Channels that are not settled are
/// settled in copies, so that any snapshot can be written, by any thread. Nothing when the file would be
/// longer than its positions can tell (2^31 - 1 bytes).
std::optional<std::vector<std::uint8_t>> Write_Project(const Song_Snapshot& song);

} // namespace tonvex
