#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <vector>

namespace tonvex {

/// The last frames of a signal. Read before Write: a delay of 1 is the frame before.
/// Only the constructor allocates; clearing costs nothing.
class Delay_Line {
public:
    /// frames: the longest delay that will be read.
    explicit Delay_Line(std::size_t frames) : buffer(std::bit_ceil(frames + 1)), mask(buffer.size() - 1) {}

    void Clear() noexcept { filled = 0; }
    /// What was written delay frames before each of the next count frames; silence from before Clear. delay
    /// is at least count.
    void Read(std::size_t delay, float* to, std::size_t count) const noexcept {
        const std::size_t silent = std::min(delay > filled ? delay - filled : 0, count);
        std::fill_n(to, silent, 0.0F);
        const std::size_t from = (position - delay + silent) & mask;
        const std::size_t whole = std::min(count - silent, buffer.size() - from);
        std::copy_n(buffer.data() + from, whole, to + silent);
        std::copy_n(buffer.data(), count - silent - whole, to + silent + whole);
    }
    /// count frames, at most as many as the longest delay.
    void Write(const float* values, std::size_t count) noexcept {
        const std::size_t at = position & mask;
        const std::size_t whole = std::min(count, buffer.size() - at);
        std::copy_n(values, whole, buffer.data() + at);
        std::copy_n(values + whole, count - whole, buffer.data());
        position += count;
        filled = std::min(filled + count, buffer.size());
    }

private:
    std::vector<float> buffer;
    std::size_t mask;
    std::size_t position = 0;
    std::size_t filled = 0;
};

} // namespace tonvex
