#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

namespace tonvex {

/// A recovery copy: in a session's folder a song file, "recovery.tvx", and beside it a note, "recovery.txt",
/// that tells whose copy it is. Any one thread.
struct Recovery_Note {
    std::filesystem::path songPath; ///< the song's own file; empty when it has none yet
    std::string title = "Untitled";
    bool operator==(const Recovery_Note&) const = default;
};

std::filesystem::path Recovery_Song_File(const std::filesystem::path& folder);

/// Both in one step each, and each time a copy stands there, it is a whole one: the song goes first, since a
/// song without a note can still be recovered. False with error; the copy before stands then.
bool Write_Recovery_Copy(const std::filesystem::path& folder, std::span<const std::uint8_t> song,
                         const Recovery_Note& note, std::string& error);

/// A copy as it is found.
struct Recovery_Find {
    Recovery_Note note; ///< as new when it is missing or cannot be read
    std::chrono::system_clock::time_point writtenAt;
};
/// Nothing when there is no song in the folder.
std::optional<Recovery_Find> Find_Recovery_Copy(const std::filesystem::path& folder);

/// To another folder of the same disk. False when it stays.
bool Move_Recovery_Copy(const std::filesystem::path& from, const std::filesystem::path& to);

/// Song and note.
void Remove_Recovery_Copy(const std::filesystem::path& folder);

} // namespace tonvex
