#include "platform/effects/swept_line.h"

#include <algorithm>
#include <bit>

namespace tonvex {

Swept_Line::Swept_Line(std::size_t frames)
    : buffer(std::bit_ceil(frames + AROUND) + AROUND - 1), mask(buffer.size() - AROUND) {}

void Swept_Line::Clear() noexcept {
    std::fill(buffer.begin(), buffer.end(), 0.0F);
}

void Swept_Line::Read(const float* delays, float* to, std::size_t count) const noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        const auto whole = static_cast<int>(delays[i]);
        const float t = delays[i] - static_cast<float>(whole);
        const float* const oldest = &buffer[(position + i - static_cast<std::size_t>(whole) - 2) & mask];
        const float a = oldest[3];
        const float b = oldest[2];
        const float c = oldest[1];
        const float d = oldest[0];
        to[i] =
            b + 0.5F * t * (c - a + t * (2.0F * a - 5.0F * b + 4.0F * c - d + t * (3.0F * (b - c) + d - a)));
    }
}

void Swept_Line::Write(const float* values, std::size_t count) noexcept {
    for (std::size_t i = 0; i < count; ++i)
        buffer[(position + i) & mask] = values[i];
    position += count;
    std::copy_n(buffer.begin(), AROUND - 1, buffer.end() - (AROUND - 1));
}

} // namespace tonvex
