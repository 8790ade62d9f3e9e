#pragma once

#include "cli/cli_outcome.h"
#include "cli/cli_session.h"

#include <string>

namespace tonvex {

/// Puts the song in a file in the place of the new project of an open session: a MIDI file by its content or
/// its ending, else a project file. "-" leaves the new project.
Cli_Outcome Open_Song(Cli_Session& cli, const std::string& song);

/// What the program told the user last, as the outcome of work on file.
Cli_Outcome Told_Failure(const Cli_Session& cli, const std::string& file);

} // namespace tonvex
