#pragma once

#include "app/session_temp_folder.h"
#include "project/recovery_copy.h"

#include <cstddef>
#include <filesystem>
#include <vector>

namespace tonvex {

/// Moves the recovery copy in a session's folder to where the next start looks, so that it outlives the
/// session, which goes on to its orderly end. False when it stays where it is.
bool Leave_Song(const std::filesystem::path& base, const std::filesystem::path& folder);

/// The songs that sessions without an orderly end left behind, the newest first. Nobody else sees them while
/// this lives; what is not discarded is found again by the next start. Interface thread.
class Left_Songs {
public:
    /// base: the folder in which sessions have theirs.
    explicit Left_Songs(const std::filesystem::path& base);

    std::size_t Count() const noexcept { return songs.size(); }
    const Recovery_Find& Find(std::size_t i) const { return songs[i].find; }
    std::filesystem::path Song_File(std::size_t i) const;
    /// The song goes with all that its session left.
    void Discard(std::size_t i);
    /// What sessions left that holds no song: undo steps and the like.
    void Clear_The_Rest();

private:
    struct Left_Song {
        Session_Temp_Folder folder;
        Recovery_Find find;
    };
    std::vector<Left_Song> songs;
    std::vector<Session_Temp_Folder> rest;
};

} // namespace tonvex
