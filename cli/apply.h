#pragma once

#include "cli/cli_session.h"

#include <filesystem>
#include <string>

namespace tonvex {

struct Apply_Call {
    std::string song;            ///< a project file, or "-" for a new project
    std::filesystem::path edits; ///< change messages, as JSON
    std::filesystem::path out;   ///< a project file
};

/// Sends the edits through the hub and saves the song. A message that is refused with a box ends the run with
/// the box's text, unless its item expects that text; nothing is written then.
Cli_Outcome Apply(const Cli_Options& options, const Apply_Call& call);

} // namespace tonvex
