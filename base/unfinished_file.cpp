#include "base/unfinished_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

void Flush_Folder(const fs::path& folder) {
    const int opened = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened < 0)
        return;
    (void)::fsync(opened);
    (void)::close(opened);
}

/// A new file beside target. Its permissions are the process's usual ones, given by the system: asking for
/// the mask would change it for a moment, under another thread's hands. Its descriptor, -1 with errno set.
int Create_Beside(const fs::path& target, fs::path& created) {
    // The beginning of a name is enough to tell whose it is, and leaves room for the rest.
    constexpr std::size_t SHOWN = 100;
    const std::string shown = target.filename().string();
    // Not within a character: disks that keep names as characters, as those of most sticks, take no half one.
    std::size_t cut = std::min(shown.size(), SHOWN);
    while (cut > 0 && cut < shown.size() && (static_cast<unsigned char>(shown[cut]) & 0xC0U) == 0x80U)
        --cut;
    const std::string name = ".tonvex-" + shown.substr(0, cut) + "-";
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        created = target.parent_path() / (name + std::to_string(random()));
        const int opened = ::open(created.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (opened >= 0 || errno != EEXIST)
            return opened;
    }
    return -1;
}

} // namespace

bool Unfinished_File::Begin(const fs::path& path, std::string& error) {
    Drop();
    std::error_code failed;
    target = fs::weakly_canonical(path, failed);
    if (failed)
        target = path;
    if (fs::is_directory(target, failed)) {
        error = std::strerror(EISDIR);
        return false;
    }
    // The folder's rights alone would let a file be replaced that its owner has locked.
    if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0 && errno != ENOENT) {
        error = std::strerror(errno);
        return false;
    }
    handle = Create_Beside(target, unfinished);
    if (handle >= 0)
        return true;
    error = std::strerror(errno);
    unfinished.clear();
    return false;
}

bool Unfinished_File::Keep(std::string& error) {
    if (handle < 0) {
        error = std::strerror(EBADF);
        return false;
    }
    struct stat old {};
    struct stat made {};
    const bool replaces = ::stat(target.c_str(), &old) == 0;
    // Some network disks refuse every change of permissions, one to what they are too.
    const bool permitted = !replaces || (::fstat(handle, &made) == 0 && made.st_mode == old.st_mode) ||
                           ::fchmod(handle, old.st_mode & 07777U) == 0;
    const bool kept = permitted && ::fsync(handle) == 0 && ::close(std::exchange(handle, -1)) == 0 &&
                      ::rename(unfinished.c_str(), target.c_str()) == 0;
    if (!kept) {
        error = std::strerror(errno);
        Drop();
        return false;
    }
    unfinished.clear();
    Flush_Folder(target.parent_path());
    return true;
}

void Unfinished_File::Drop() noexcept {
    if (handle >= 0)
        (void)::close(std::exchange(handle, -1));
    if (!unfinished.empty())
        (void)::unlink(unfinished.c_str());
    unfinished.clear();
}

} // namespace tonvex
