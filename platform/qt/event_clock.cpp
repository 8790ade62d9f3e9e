#include "platform/qt/event_clock.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr std::int64_t NS_PER_MS = 1'000'000;
/// An event is never handled this late; a first difference within it means that both read one clock.
constexpr std::int32_t PLAUSIBLE_DELAY_MS = 5000;
/// Coarse clocks lag by a tick.
constexpr std::int32_t TICK_MS = 10;

std::int32_t Difference(std::uint32_t a, std::uint32_t b) {
    return static_cast<std::int32_t>(a - b);
}

} // namespace

std::int64_t Event_Clock::Moment_Of(std::uint64_t eventMs, std::int64_t nowNs) {
    if (eventMs == 0)
        return nowNs;
    const auto event = static_cast<std::uint32_t>(eventMs);
    const std::int32_t ageMs = Difference(static_cast<std::uint32_t>(nowNs / NS_PER_MS), event);
    const bool plausible = ageMs >= -TICK_MS && ageMs <= PLAUSIBLE_DELAY_MS;
    if (!sameClock) {
        sameClock = plausible;
        lastEventMs = event;
        windowStartNs = nowNs;
    }
    std::int64_t moment = nowNs;
    if (*sameClock) {
        // An implausible time from a known clock (an event that another program made) tells nothing.
        if (plausible)
            moment = (nowNs / NS_PER_MS - ageMs) * NS_PER_MS + NS_PER_MS / 2;
    } else {
        unwrappedMs += Difference(event, lastEventMs);
        lastEventMs = event;
        if (nowNs - windowStartNs > WINDOW_NS) {
            leastBefore = leastNow;
            leastNow = std::numeric_limits<std::int64_t>::max();
            windowStartNs = nowNs;
        }
        leastNow = std::min(leastNow, nowNs - unwrappedMs * NS_PER_MS);
        moment = unwrappedMs * NS_PER_MS + std::min(leastNow, leastBefore);
    }
    return std::clamp(moment, nowNs - OLDEST_NS, nowNs);
}

} // namespace tonvex
