#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace tonvex {

/// The last frames of a signal, read between frames. Only the constructor allocates.
class Swept_Line {
public:
    /// frames: the longest delay that will be read.
    explicit Swept_Line(std::size_t frames);

    void Clear() noexcept;
    /// The next count frames, each after a delay of its own of 2 frames and up and at least its place in the
    /// block and 2 more; along a cubic through the four around (Catmull and Rom).
    void Read(const float* delays, float* to, std::size_t count) const noexcept;
    void Write(const float* values, std::size_t count) noexcept;

private:
    static constexpr std::size_t AROUND = 4;
    /// The first frames stand behind the last once more, so that four in a row need no turn.
    std::vector<float> buffer;
    std::size_t mask;
    std::size_t position = 0;
};

} // namespace tonvex
