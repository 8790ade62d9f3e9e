#include "cli/wave_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sndfile.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tonvex {

namespace fs = std::filesystem;

struct Wave_File::File {
    fs::path target;
    fs::path unfinished; ///< beside it; empty once it has its name
    SNDFILE* sound = nullptr;
    int handle = -1;
    bool failed = false;

    ~File() {
        if (sound != nullptr)
            sf_close(sound);
        if (handle >= 0)
            close(handle);
        std::error_code ignored;
        if (!unfinished.empty())
            fs::remove(unfinished, ignored);
    }
};

Wave_File::Wave_File() = default;
Wave_File::~Wave_File() = default;

bool Wave_File::Open(const fs::path& path, int sampleRate, std::string& error) {
    auto opened = std::make_unique<File>();
    std::error_code ignored;
    opened->target = fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored) : path;
    std::string name = (opened->target.parent_path() / ".tonvex-wav-XXXXXX").string();
    opened->handle = mkstemp(name.data());
    if (opened->handle < 0) {
        error = std::strerror(errno);
        return false;
    }
    opened->unfinished = name;
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    opened->sound = sf_open_fd(opened->handle, SFM_WRITE, &info, SF_FALSE);
    if (opened->sound == nullptr) {
        error = sf_strerror(nullptr);
        return false;
    }
    sf_command(opened->sound, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    file = std::move(opened);
    return true;
}

void Wave_File::Write(std::span<const float> stereo) {
    if (!file)
        return;
    const auto skipped = std::min(static_cast<std::size_t>(framesToSkip), stereo.size() / 2);
    framesToSkip -= static_cast<int>(skipped);
    const auto rest = stereo.subspan(skipped * 2);
    const auto frames = static_cast<sf_count_t>(rest.size() / 2);
    if (sf_writef_float(file->sound, rest.data(), frames) != frames)
        file->failed = true;
}

bool Wave_File::Keep(std::string& error) {
    if (!file)
        return false;
    const bool closed = sf_close(file->sound) == 0;
    file->sound = nullptr;
    if (file->failed || !closed || fsync(file->handle) != 0) {
        error = "the sound could not be written; is the disk full?";
        file.reset();
        return false;
    }
    struct stat existing {};
    const mode_t mask = umask(0);
    umask(mask);
    const mode_t mode =
        stat(file->target.c_str(), &existing) == 0 ? (existing.st_mode & 07777U) : (0666U & ~mask);
    std::error_code problem;
    if (fchmod(file->handle, mode) == 0)
        fs::rename(file->unfinished, file->target, problem);
    else
        problem = std::error_code(errno, std::generic_category());
    if (problem)
        error = problem.message();
    else
        file->unfinished.clear();
    file.reset();
    return !problem;
}

} // namespace tonvex
