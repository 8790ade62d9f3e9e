#pragma once

#include <cstdint>

namespace tonvex {

/// A place in the song in billionths of a beat: there, a start and a length whose sum misses the next start
/// by a rounding error still meet it.
struct Song_Moment {
    static constexpr std::int64_t NEVER = INT64_MAX;
    static constexpr double A_BEAT = 1.0e9;

    std::int64_t at;
    bool isStart; ///< what happens there sounds something; else it ends something, and comes first
    bool operator<(const Song_Moment& other) const noexcept {
        return at < other.at || (at == other.at && !isStart && other.isStart);
    }
};

/// beats beyond any song are cut.
std::int64_t Moment_At(double beats) noexcept;

} // namespace tonvex
