#pragma once

#include "app/held_lock.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace tonvex {

/// A session's own folder below the folder `temp`, so that two sessions never share a file. A lock in it is
/// held while the session lives: a folder whose lock is free was left behind by a session that did not end
/// in order, and what it holds can be recovered, so it stays until somebody asks for it. Interface thread.
class Session_Temp_Folder {
public:
    /// Makes base when it is missing and a folder of its own in it; dead folders with nothing in them are
    /// removed. Nothing when no folder could be made.
    static std::optional<Session_Temp_Folder> Make(const std::filesystem::path& base);

    /// The folders of dead sessions, whatever they hold, their locks held from now on: nobody else takes
    /// them. Those that are not removed stay for the next one who asks.
    static std::vector<Session_Temp_Folder> Take_Left(const std::filesystem::path& base);

    Session_Temp_Folder(Session_Temp_Folder&&) noexcept = default;
    Session_Temp_Folder& operator=(Session_Temp_Folder&&) noexcept = default;

    const std::filesystem::path& Path() const noexcept { return folder; }
    /// Removes the folder with all it holds and gives the lock back: the session ended in order, or what it
    /// left behind is wanted no more.
    void Remove();

private:
    Session_Temp_Folder(std::filesystem::path own, Held_Lock held)
        : folder(std::move(own)), lock(std::move(held)) {}

    std::filesystem::path folder;
    std::optional<Held_Lock> lock;
};

} // namespace tonvex
