#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace tonvex {

/// From the window system's event time to Millisecond_Counter time, so that an event handled late, behind
/// a long repaint, is stamped with the moment at which it arrived.
/// Event times are ms and wrap at 32 bits; 0 means unknown. Interface thread.
class Event_Clock {
public:
    static constexpr std::int64_t OLDEST_NS = 500'000'000; ///< no stamp is older than this

    /// The moment of an event that is handled at nowNs: not after nowNs, not before nowNs - OLDEST_NS.
    std::int64_t Moment_Of(std::uint64_t eventMs, std::int64_t nowNs);

private:
    static constexpr std::int64_t WINDOW_NS = 30'000'000'000;

    std::optional<bool> sameClock; ///< the window system reads the clock that we read
    std::uint32_t lastEventMs = 0;
    std::int64_t unwrappedMs = 0;
    // With another clock: the least delay between event time and handling, of this span and the last.
    std::int64_t windowStartNs = 0;
    std::int64_t leastNow = std::numeric_limits<std::int64_t>::max();
    std::int64_t leastBefore = std::numeric_limits<std::int64_t>::max();
};

} // namespace tonvex
