#pragma once

#include "project/song_snapshot.h"

#include <cstdint>
#include <span>

namespace tonvex {

enum class Read_Outcome {
    Whole,
    Not_A_Project,         ///< neither this major version's magic nor the earlier one's
    Version_Not_Supported, ///< a file version above this program's
    Newer_Section,         ///< a section has a version that this program does not know
    Broken                 ///< cut off, or says what cannot be
};

/// The song in the bytes of a project file. song is of use only when the outcome is Whole. Sections may stand
/// anywhere in the file; those that are missing leave what a Song_Snapshot has as made. Any thread; memory
/// within a small multiple of the bytes.
Read_Outcome Read_Project(std::span<const std::uint8_t> bytes, Song_Snapshot& song);
/// No two live channels have one ID; a file without that is Broken.
bool Has_An_ID_Each(const Song_Snapshot& song);

} // namespace tonvex
