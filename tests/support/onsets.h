#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tonvex::test {

/// Frames at which a click of the click font begins in interleaved stereo: silence before, at least gap
/// frames of it, then a sample above threshold.
inline std::vector<std::int64_t> Onsets(std::span<const float> stereo, float threshold = 0.01F,
                                        std::int64_t gap = 32) {
    std::vector<std::int64_t> found;
    std::int64_t quiet = gap;
    for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
        if (stereo[i] <= threshold && stereo[i] >= -threshold) {
            ++quiet;
            continue;
        }
        if (quiet >= gap)
            found.push_back(static_cast<std::int64_t>(i / 2));
        quiet = 0;
    }
    return found;
}

} // namespace tonvex::test
