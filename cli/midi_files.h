#pragma once

#include "cli/cli_outcome.h"
#include "cli/cli_session.h"

#include <filesystem>
#include <string>

namespace tonvex {

struct Midi_Call {
    std::string song; ///< to read
    std::filesystem::path out;
    bool splitDrums = false; ///< Export_Midi: a track for each drum
};

/// Writes the song as a Standard MIDI File.
Cli_Outcome Export_Midi(const Cli_Options& options, const Midi_Call& call);
/// Writes a Standard MIDI File as a project file.
Cli_Outcome Import_Midi(const Cli_Options& options, const Midi_Call& call);

} // namespace tonvex
