#pragma once

#include "cli/cli_session.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tonvex {

/// What is wrong with a file of any kind that the program reads, told by its content, then by its ending;
/// "ok" when nothing is.
std::string Check_File(const Cli_Options& options, const std::filesystem::path& file);

/// One line a file. The outcome has failed, without a text, when any file is bad.
Cli_Outcome Check_Files(const Cli_Options& options, const std::vector<std::filesystem::path>& files,
                        std::string& lines);

} // namespace tonvex
