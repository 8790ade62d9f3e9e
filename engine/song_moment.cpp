#include "engine/song_moment.h"

#include "base/rounding.h"

#include <algorithm>

namespace tonvex {

namespace {
constexpr double LAST_BEAT = 9.0e9; ///< beyond any song, and still a moment
} // namespace

std::int64_t Moment_At(double beats) noexcept {
    return RoundHalfEven(std::clamp(beats, -LAST_BEAT, LAST_BEAT) * Song_Moment::A_BEAT);
}

} // namespace tonvex
