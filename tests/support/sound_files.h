#pragma once

#include <filesystem>
#include <vector>

namespace tonvex::test {

/// A sound file as decoded; rate 0 when it could not be.
struct Sound_File {
    int rate = 0;
    int channels = 0;
    std::vector<float> stereo; ///< interleaved
    std::size_t Frames() const { return stereo.size() / 2; }
};

/// WMA by the media library, all else by the sound file library.
Sound_File Read_Sound(const std::filesystem::path& path);

} // namespace tonvex::test
