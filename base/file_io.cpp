#include "base/file_io.h"

#include "base/unfinished_file.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

/// Closes a descriptor when it goes out of scope.
class Descriptor {
public:
    explicit Descriptor(int opened) noexcept : fd(opened) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const noexcept { return fd; }
    bool Close() noexcept {
        const int closing = fd;
        fd = -1;
        return closing < 0 || ::close(closing) == 0;
    }

private:
    int fd;
};

bool Write_All(int fd, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

std::optional<std::vector<std::uint8_t>> Read_File(const fs::path& path, std::size_t maxBytes) {
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info {};
    if (file.Get() < 0 || ::fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode) ||
        static_cast<std::size_t>(info.st_size) > maxBytes)
        return std::nullopt;
    // Into a place of its size and one byte, which tells the end; a file that grows meanwhile grows this too.
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(info.st_size) + 1);
    for (std::size_t used = 0;;) {
        const ssize_t got = ::read(file.Get(), bytes.data() + used, bytes.size() - used);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 || used + static_cast<std::size_t>(got) > maxBytes)
            return std::nullopt;
        used += static_cast<std::size_t>(got);
        if (got == 0) {
            bytes.resize(used);
            return bytes;
        }
        if (used == bytes.size())
            bytes.resize(2 * used);
    }
}

void Survive_File_Limits() noexcept {
    (void)std::signal(SIGXFSZ, SIG_IGN);
}

bool Write_File(const fs::path& path, std::span<const std::uint8_t> bytes) {
    Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (file.Get() < 0)
        return false;
    if (Write_All(file.Get(), bytes) && file.Close())
        return true;
    ::unlink(path.c_str());
    return false;
}

bool Replace_File(const fs::path& path, std::span<const std::uint8_t> bytes, std::string& error) {
    Unfinished_File file;
    bool written = file.Begin(path, error);
    if (written && !Write_All(file.Handle(), bytes)) {
        error = std::strerror(errno);
        written = false;
    }
    if (written && file.Keep(error))
        return true;
    error = path.string() + ": " + error;
    return false;
}

} // namespace tonvex
