#pragma once

#include "cli/cli_outcome.h"
#include "cli/cli_session.h"

#include <filesystem>
#include <string>

namespace tonvex {

struct Play_Call {
    std::string song;
    double fromBeat = 0.0;
    double speedPercent = 100.0;
    bool onVirtualTime = false;
    std::filesystem::path trace; ///< empty: none
    std::filesystem::path wav;   ///< empty: none
    bool threadEngine = true;    ///< else the polling engine
};

/// Runs the play transport: on simulated time, else on the machine's clock and sound device.
Cli_Outcome Play(const Cli_Options& options, const Play_Call& call);

} // namespace tonvex
