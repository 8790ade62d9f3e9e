#pragma once

#include "cli/cli_outcome.h"

#include <filesystem>
#include <string>

namespace tonvex {

/// Title and presets of a soundfont as JSON in text.
Cli_Outcome List_Font(const std::filesystem::path& file, std::string& text);
/// The output and input devices found on this machine as JSON in text.
Cli_Outcome List_Devices(std::string& text);

} // namespace tonvex
