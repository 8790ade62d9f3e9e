#include "base/file_io.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <random>
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

/// What error reports: the system's words for errno and the file.
std::string System_Error(const fs::path& path) {
    return path.string() + ": " + std::strerror(errno);
}

/// A new file beside target. Its permissions are the process's usual ones, given by the system: asking for
/// the mask would change it for a moment, under another thread's hands. Its descriptor, -1 with errno set.
int Create_Beside(const fs::path& target, fs::path& created) {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        created =
            target.parent_path() / (".tonvex-" + target.filename().string() + "-" + std::to_string(random()));
        const int opened = ::open(created.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (opened >= 0 || errno != EEXIST)
            return opened;
    }
    return -1;
}

} // namespace

std::optional<std::vector<std::uint8_t>> Read_File(const fs::path& path, std::size_t maxBytes) {
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info {};
    if (file.Get() < 0 || ::fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode) ||
        static_cast<std::size_t>(info.st_size) > maxBytes)
        return std::nullopt;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(info.st_size));
    std::array<std::uint8_t, 65536> block{};
    for (;;) {
        const ssize_t got = ::read(file.Get(), block.data(), block.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            return bytes;
        bytes.insert(bytes.end(), block.begin(), block.begin() + got);
        if (bytes.size() > maxBytes)
            return std::nullopt;
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
    std::error_code failed;
    fs::path target = fs::weakly_canonical(path, failed);
    if (failed)
        target = path;
    fs::path fresh;
    Descriptor file(Create_Beside(target, fresh));
    if (file.Get() < 0) {
        error = System_Error(target);
        return false;
    }
    struct stat old {};
    const bool replaces = ::stat(target.c_str(), &old) == 0;
    const bool written =
        Write_All(file.Get(), bytes) && (!replaces || ::fchmod(file.Get(), old.st_mode & 07777U) == 0) &&
        ::fsync(file.Get()) == 0 && file.Close() && ::rename(fresh.c_str(), target.c_str()) == 0;
    if (!written) {
        error = System_Error(target);
        ::unlink(fresh.c_str());
        return false;
    }
    Descriptor folder(::open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.Get() >= 0)
        (void)::fsync(folder.Get());
    return true;
}

} // namespace tonvex
