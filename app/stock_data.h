#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace tonvex {

/// What Copy_Stock_Files did.
struct Stock_Result {
    std::size_t copied = 0;          ///< files that were not there
    std::size_t updated = 0;         ///< files as an earlier version shipped them, replaced by this version's
    std::size_t kept = 0;            ///< files that the user changed
    std::vector<std::string> errors; ///< one line a file that could not be read or written
};

/// A folder that ships with the program and the user's folder that its files go to.
using Stock_Folder = std::pair<std::filesystem::path, std::filesystem::path>;

/// Brings the files that ship (all below each first folder) into the user's folders. A missing file is
/// copied; a file that still is what some version of the program put there is replaced when the shipped
/// one differs; any other file is the user's own and stays. What was put there is remembered, by a hash of
/// the content, in manifest. A missing shipped folder has no files. Interface thread.
Stock_Result Copy_Stock_Files(const std::vector<Stock_Folder>& folders,
                              const std::filesystem::path& manifest);

} // namespace tonvex
