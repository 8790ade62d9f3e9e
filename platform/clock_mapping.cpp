#include "platform/clock_mapping.h"

#include <algorithm>
#include <cmath>

namespace tonvex {

void Clock_Mapping::Start(double sampleRate) noexcept {
    framesPerNs = sampleRate / 1e9;
    started = false;
    offsetNs = 0.0;
    least.fill(NONE);
    current = 0;
}

void Clock_Mapping::Fix(std::int64_t ns, std::int64_t frame) noexcept {
    started = true;
    originNs = ns;
    offsetNs = -static_cast<double>(frame) / framesPerNs;
}

void Clock_Mapping::Observe(std::int64_t nowNs, std::int64_t frame) noexcept {
    if (!started) {
        started = true;
        originNs = nowNs;
        bucketEndNs = nowNs + BUCKET_NS;
    } else if (nowNs >= bucketEndNs) {
        Close_Bucket(nowNs);
    }
    const double offset = static_cast<double>(nowNs - originNs) - static_cast<double>(frame) / framesPerNs;
    least[current] = std::min(least[current], offset);
    Anchor();
}

void Clock_Mapping::Close_Bucket(std::int64_t nowNs) noexcept {
    if (least[current] != NONE && least[current] > offsetNs + STALL_NS) {
        const double stalled = least[current];
        least.fill(NONE);
        least[current] = stalled;
    }
    current = (current + 1) % BUCKETS;
    least[current] = NONE;
    bucketEndNs = nowNs + BUCKET_NS;
}

void Clock_Mapping::Anchor() noexcept {
    offsetNs = *std::min_element(least.begin(), least.end());
}

std::int64_t Clock_Mapping::Frame_At(std::int64_t ns) const noexcept {
    if (!started)
        return 0;
    const double frame = (static_cast<double>(ns - originNs) - offsetNs) * framesPerNs;
    return static_cast<std::int64_t>(std::floor(frame));
}

} // namespace tonvex
