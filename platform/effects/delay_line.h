#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <vector>

namespace tonvex {

/// The last frames of a signal. Read before Write within a frame: a delay of 1 is the frame before.
/// Only the constructor allocates; clearing costs nothing.
class Delay_Line {
public:
    /// frames: the longest delay that will be read.
    explicit Delay_Line(std::size_t frames) : buffer(std::bit_ceil(frames + 1)), mask(buffer.size() - 1) {}

    void Clear() noexcept { filled = 0; }
    void Write(float value) noexcept {
        buffer[position & mask] = value;
        ++position;
        filled = std::min(filled + 1, buffer.size());
    }
    /// What was written delay frames ago, 1 and up; silence from before Clear.
    float Read(std::size_t delay) const noexcept {
        return delay > filled ? 0.0F : buffer[(position - delay) & mask];
    }
    /// Between frames, along a cubic through the four around (Catmull and Rom); delay 2 and up.
    float Read_Between(float delay) const noexcept {
        const auto whole = static_cast<std::size_t>(delay);
        const float t = delay - static_cast<float>(whole);
        const float a = Read(whole - 1);
        const float b = Read(whole);
        const float c = Read(whole + 1);
        const float d = Read(whole + 2);
        return b +
               0.5F * t * (c - a + t * (2.0F * a - 5.0F * b + 4.0F * c - d + t * (3.0F * (b - c) + d - a)));
    }

private:
    std::vector<float> buffer;
    std::size_t mask;
    std::size_t position = 0;
    std::size_t filled = 0;
};

} // namespace tonvex
