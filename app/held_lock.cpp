#include "app/held_lock.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tonvex {

namespace fs = std::filesystem;

std::optional<Held_Lock> Held_Lock::Try(const fs::path& file, bool& heldByOther) {
    heldByOther = false;
    const int opened = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (opened < 0)
        return std::nullopt;
    Held_Lock lock(opened);
    if (::flock(opened, LOCK_EX | LOCK_NB) != 0) {
        heldByOther = errno == EWOULDBLOCK;
        return std::nullopt;
    }
    // Whoever clears leftovers away may have removed the file between the two calls: a lock on a file
    // that is gone protects nothing.
    struct stat info {};
    if (::fstat(opened, &info) != 0 || info.st_nlink == 0)
        return std::nullopt;
    return lock;
}

Held_Lock::~Held_Lock() {
    if (fd >= 0)
        ::close(fd);
}

fs::path Instance_Lock_File() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code ignored;
    if (runtime != nullptr && fs::path(runtime).is_absolute() && fs::is_directory(runtime, ignored))
        return fs::path(runtime) / "Tonvex2EXE";
    fs::path temporary = fs::temp_directory_path(ignored);
    if (temporary.empty())
        temporary = "/tmp";
    return temporary / ("Tonvex2EXE-" + std::to_string(::getuid()));
}

} // namespace tonvex
