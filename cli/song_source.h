#pragma once

#include "cli/cli_session.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tonvex {

/// What a new song has when a call names "-" for a song.
enum class New_Song { Empty, With_One_Channel };

/// Puts the song of a project file, or a new one for "-", into the tool's session.
Cli_Outcome Open_Song(Cli_Session& tool, const std::string& song, New_Song newSong);
/// The fonts that the call names, for whatever fonts the song does; without any nothing changes.
Cli_Outcome Use_Named_Fonts(Cli_Session& tool, const Cli_Options& options);
/// The song as a project file would hold it.
Cli_Outcome Song_Bytes(const Cli_Session& tool, std::vector<std::uint8_t>& bytes);
/// Writes a project file. It is complete or, after a failure, as it was.
Cli_Outcome Save_Song(Cli_Session& tool, const std::filesystem::path& out);

} // namespace tonvex
