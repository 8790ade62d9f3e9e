#pragma once

#include <filesystem>
#include <optional>
#include <utility>

namespace tonvex {

/// An advisory lock on a file, held as long as the object lives; the system drops it when the process ends,
/// however it ends. Any one thread.
class Held_Lock {
public:
    /// Makes the file when it is missing. Nothing when another holder has it (heldByOther is then true) or it
    /// cannot be opened.
    static std::optional<Held_Lock> Try(const std::filesystem::path& file, bool& heldByOther);

    Held_Lock(Held_Lock&& other) noexcept : fd(std::exchange(other.fd, -1)) {}
    Held_Lock& operator=(Held_Lock&& other) noexcept {
        std::swap(fd, other.fd);
        return *this;
    }
    Held_Lock(const Held_Lock&) = delete;
    Held_Lock& operator=(const Held_Lock&) = delete;
    ~Held_Lock();

private:
    explicit Held_Lock(int lockedFd) noexcept : fd(lockedFd) {}
    int fd;
};

/// Where the windowed program holds its lock, so that a second start ends itself: "Tonvex2EXE" in
/// XDG_RUNTIME_DIR, else in the folder for temporary files with the user's number behind the name. The
/// name also marks a running program for outside tools.
std::filesystem::path Instance_Lock_File();

} // namespace tonvex
