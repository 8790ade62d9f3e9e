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
    /// The same for the next count frames at once; delay is at least count.
    void Read_Block(std::size_t delay, float* to, std::size_t count) const noexcept {
        const std::size_t silent = std::min(delay > filled ? delay - filled : 0, count);
        std::fill_n(to, silent, 0.0F);
        const std::size_t from = (position - delay + silent) & mask;
        const std::size_t whole = std::min(count - silent, buffer.size() - from);
        std::copy_n(buffer.data() + from, whole, to + silent);
        std::copy_n(buffer.data(), count - silent - whole, to + silent + whole);
    }
    /// count frames, at most as many as the longest delay.
    void Write_Block(const float* values, std::size_t count) noexcept {
        const std::size_t at = position & mask;
        const std::size_t whole = std::min(count, buffer.size() - at);
        std::copy_n(values, whole, buffer.data() + at);
        std::copy_n(values + whole, count - whole, buffer.data());
        position += count;
        filled = std::min(filled + count, buffer.size());
    }
    /// Between frames, along a cubic through the four around (Catmull and Rom); delay 2 and up.
    float Read_Between(float delay) const noexcept {
        const auto whole = static_cast<std::size_t>(delay);
        const float t = delay - static_cast<float>(whole);
        const bool all = whole + 2 <= filled;
        const std::size_t at = position - whole;
        const float a = all ? buffer[(at + 1) & mask] : Read(whole - 1);
        const float b = all ? buffer[at & mask] : Read(whole);
        const float c = all ? buffer[(at - 1) & mask] : Read(whole + 1);
        const float d = all ? buffer[(at - 2) & mask] : Read(whole + 2);
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
