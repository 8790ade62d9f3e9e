#pragma once

#include "cli/cli_session.h"

#include <string>

namespace tonvex {

/// What the tool prints of a project file, one JSON document each. text is empty after a failure.
Cli_Outcome Print_Song(const Cli_Options& options, const std::string& song, std::string& text);
/// The lists that a play of the song hands to the player library.
Cli_Outcome Print_Notes(const Cli_Options& options, const std::string& song, std::string& text);

} // namespace tonvex
