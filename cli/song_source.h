#pragma once

#include "cli/cli_session.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tonvex {

/// What a new song has when a call names "-" for a song.
enum class New_Song { Empty, With_One_Channel };

/// Puts the song of a file into the tool's session: a MIDI file by its content or its ending, else a project
/// file; "-" is a new song.
Cli_Outcome Open_Song(Cli_Session& tool, const std::string& song, New_Song newSong);
/// The song of a MIDI file.
Cli_Outcome Import_Song(Cli_Session& tool, const std::string& file);
/// What the program told the user last, as the outcome of work on file.
Cli_Outcome Told_Failure(const Cli_Session& tool, const std::string& file);
/// The fonts that the call names, for whatever fonts the song does; without any nothing changes.
Cli_Outcome Use_Named_Fonts(Cli_Session& tool, const Cli_Options& options);
/// The song as a project file would hold it.
Cli_Outcome Song_Bytes(const Cli_Session& tool, std::vector<std::uint8_t>& bytes);
/// Writes a project file. It is complete or, after a failure, as it was.
Cli_Outcome Save_Song(Cli_Session& tool, const std::filesystem::path& out);

} // namespace tonvex
