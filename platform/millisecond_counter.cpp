#include "platform/millisecond_counter.h"

#include <ctime>

namespace tonvex {

std::int64_t Monotonic_Counter::Now_Ns() const noexcept {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

} // namespace tonvex
