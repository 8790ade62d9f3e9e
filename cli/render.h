#pragma once

#include "cli/cli_outcome.h"
#include "cli/cli_session.h"

#include <filesystem>
#include <string>

namespace tonvex {

struct Render_Call {
    std::string song;
    std::filesystem::path out; ///< its ending picks the kind of file
    int rate = 0;              ///< frames a second; 0: the kind's usual one
    int quality = 0;           ///< in the kind's unit; 0: the kind's usual one
    double tailSeconds = 8.0;  ///< longest release behind the song's end
};

/// Mixes a song down. text: its length, peak and loudness.
Cli_Outcome Render(const Cli_Options& options, const Render_Call& call, std::string& text);

} // namespace tonvex
