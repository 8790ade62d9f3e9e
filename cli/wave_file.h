#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace tonvex {

/// A stereo WAV file of 16 bits that comes to its name only when it is whole. One thread.
class Wave_File {
public:
    Wave_File();
    /// A file that was not kept goes.
    ~Wave_File();
    Wave_File(const Wave_File&) = delete;
    Wave_File& operator=(const Wave_File&) = delete;

    /// Begins a file beside path. False with a reason in error.
    bool Open(const std::filesystem::path& path, int sampleRate, std::string& error);
    /// The first frames given are left out.
    void Skip(int frames) noexcept { framesToSkip = frames; }
    /// Interleaved, 1.0 is full scale; louder samples are cut.
    void Write(std::span<const float> stereo);
    /// Puts the file under its name. False with a reason in error; nothing is left behind then.
    bool Keep(std::string& error);

private:
    struct File;
    std::unique_ptr<File> file;
    int framesToSkip = 0;
};

} // namespace tonvex
