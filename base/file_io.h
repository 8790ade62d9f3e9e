#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tonvex {

/// The whole file; nothing when it is missing, not a regular file, unreadable or longer than maxBytes.
std::optional<std::vector<std::uint8_t>> Read_File(const std::filesystem::path& path,
                                                   std::size_t maxBytes = std::size_t{1} << 31);

/// For the start of a program: a file that outgrows the limit set for files then fails to be written, as one
/// on a full disk does, instead of ending the program.
void Survive_File_Limits() noexcept;

/// Makes or empties the file and writes the bytes. False, with the file gone, when they cannot all be
/// written. For files that nobody else looks at: others see half of it.
bool Write_File(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);

/// Replaces path in one step: the bytes go into a file beside it, are flushed to the disk, then renamed
/// over it. A link is followed, an existing file's permissions are kept. On failure the old file stands
/// untouched, nothing is left behind, the result is false and error says what went wrong.
bool Replace_File(const std::filesystem::path& path, std::span<const std::uint8_t> bytes, std::string& error);

} // namespace tonvex
