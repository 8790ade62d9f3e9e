#pragma once

#include "song/project_state.h"

#include <cstdint>
#include <span>

namespace tonvex {

/// Shown, as a warning, before a file of the first major version is read.
inline constexpr const char* FIRST_VERSION_WARNING =
    "Note that Tonvex 2 save files are not compatible with Tonvex 1.\r\n"
    "If you plan to keep using Tonvex 1, don't overwrite the files \r\n"
    "created with it.";
inline constexpr const char* FIRST_VERSION_NOT_SUPPORTED = "Format Version not supported";
/// Shown, as a warning, after a file of which Notes_Left_Out was told.
inline constexpr const char* FIRST_VERSION_NOTES_LEFT_OUT =
    "The title, author, comments, tempo and metronome of this Tonvex 1 file were taken over.\r\n"
    "Its notes are stored in a form that can't be read any more and were left out.\r\n"
    "The file itself has not been changed.";

enum class First_Version_Outcome {
    Whole,
    Notes_Left_Out, ///< the head was read, and more stands behind it
    Not_This_Version,
    Version_Not_Supported,
    Broken
};

/// True when the bytes are a file of the first major version, whatever its number.
bool Is_First_Version(std::span<const std::uint8_t> bytes);

/// Reads the head of a file of the first major version: title, author, comments, the metronome's volume,
/// tempo and the metronome's note. What those files hold behind it (short messages in a stream of their own)
/// is not known to this program, and no guess is made. Other values of state, and all of them unless the
/// outcome is one of the first two, stay.
First_Version_Outcome Read_First_Version(std::span<const std::uint8_t> bytes, Project_State& state);

} // namespace tonvex
