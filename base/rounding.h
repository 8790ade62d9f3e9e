#pragma once

#include <cmath>
#include <cstdint>

namespace tonvex {

/// Nearest integer, exact halves to the even neighbour: 0.5 gives 0, 1.5 gives 2.
/// The rule of every conversion from beats, milliseconds or factors unless its place says otherwise.
/// Values outside the 64-bit range and NaN give 0. One machine instruction, as long as nobody changes the
/// processor's rounding mode, and nobody does.
inline std::int64_t RoundHalfEven(double value) noexcept {
    return value > -9.2e18 && value < 9.2e18 ? std::llrint(value) : 0;
}

/// Nearest integer, exact halves upward: 0.5 gives 1, -0.5 gives 0. The rule of editor grids.
/// Values outside the 64-bit range and NaN give 0.
inline std::int64_t RoundHalfUp(double value) noexcept {
    if (!(value > -9.2e18 && value < 9.2e18))
        return 0;
    return static_cast<std::int64_t>(std::floor(value + 0.5));
}

} // namespace tonvex
