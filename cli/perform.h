#pragma once

#include "cli/cli_outcome.h"
#include "cli/cli_session.h"

#include <filesystem>
#include <string>

namespace tonvex {

struct Perform_Call {
    std::string song; ///< "-" for a new project
    std::filesystem::path keys;
    std::filesystem::path out;
    std::filesystem::path trace; ///< empty: none
    std::filesystem::path wav;   ///< empty: none
    bool threadEngine = true;    ///< else the polling engine
};

/// Runs the record transport on simulated time with the edges of a script and writes the song, and on
/// request what left for the output and what it sounded like.
Cli_Outcome Perform(const Cli_Options& options, const Perform_Call& call);

} // namespace tonvex
