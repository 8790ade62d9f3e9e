#include "app/session_temp_folder.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr const char* PREFIX = "session-";
constexpr const char* LOCK_NAME = "lock";

/// Nothing in it but the lock of a session that is dead.
bool Is_Dead_And_Empty(const fs::path& folder) {
    std::error_code error;
    bool hasLock = false;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        if (at->path().filename() != LOCK_NAME)
            return false;
        hasLock = true;
    }
    return !error && hasLock;
}

std::vector<fs::path> Session_Folders(const fs::path& base) {
    std::error_code error;
    std::vector<fs::path> found;
    for (fs::directory_iterator at(base, error), end; !error && at != end; at.increment(error)) {
        std::error_code ignored;
        if (at->path().filename().string().starts_with(PREFIX) && at->is_directory(ignored) &&
            !at->is_symlink(ignored))
            found.push_back(at->path());
    }
    return found;
}

void Remove_Dead_Folders(const fs::path& base) {
    for (const fs::path& folder : Session_Folders(base)) {
        if (!Is_Dead_And_Empty(folder))
            continue;
        bool heldByOther = false;
        const auto held = Held_Lock::Try(folder / LOCK_NAME, heldByOther);
        // Looked at again under the lock: a session may just have come to life in it.
        if (!held || !Is_Dead_And_Empty(folder))
            continue;
        std::error_code ignored;
        fs::remove(folder / LOCK_NAME, ignored);
        fs::remove(folder, ignored);
    }
}

} // namespace

std::optional<Session_Temp_Folder> Session_Temp_Folder::Make(const fs::path& base) {
    std::error_code error;
    fs::create_directories(base, error);
    if (base.empty() || !fs::is_directory(base, error))
        return std::nullopt;
    Remove_Dead_Folders(base);
    std::random_device random;
    // A name is taken, or cleared away by another session's start, only by rare chance.
    for (int attempt = 0; attempt < 8; ++attempt) {
        const std::uint64_t number = (std::uint64_t{random()} << 32) | random();
        const fs::path own = base / (PREFIX + std::to_string(number));
        if (!fs::create_directory(own, error))
            continue;
        bool heldByOther = false;
        if (auto held = Held_Lock::Try(own / LOCK_NAME, heldByOther))
            return Session_Temp_Folder(own, std::move(*held));
    }
    return std::nullopt;
}

std::vector<Session_Temp_Folder> Session_Temp_Folder::Take_Left(const fs::path& base) {
    std::vector<Session_Temp_Folder> left;
    for (const fs::path& folder : Session_Folders(base)) {
        bool heldByOther = false;
        if (auto held = Held_Lock::Try(folder / LOCK_NAME, heldByOther))
            left.push_back(Session_Temp_Folder(folder, std::move(*held)));
    }
    return left;
}

void Session_Temp_Folder::Remove() {
    std::error_code ignored;
    if (!folder.empty())
        fs::remove_all(folder, ignored);
    folder.clear();
    lock.reset();
}

} // namespace tonvex
