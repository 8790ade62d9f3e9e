#pragma once

#include <array>
#include <cstdint>

namespace tonvex {

/// Which frame of the running stream belongs to a moment of the Millisecond_Counter.
///
/// A callback is now and then late but never early, so the stream's true position shows in the least
/// late callbacks. The mapping follows the least lateness of the last four seconds: single late callbacks
/// leave it untouched, and a message posted before its callback is never behind it. When every callback
/// of a tenth of a second is late by more than 10 ms the stream has stalled, and the mapping starts anew
/// from there.
/// Audio thread alone. Neither allocates nor locks.
class Clock_Mapping {
public:
    /// sampleRate in frames a second, above 0. Forgets everything observed.
    void Start(double sampleRate) noexcept;
    /// The callback that renders from frame on began at nowNs. Calls in order of time.
    void Observe(std::int64_t nowNs, std::int64_t frame) noexcept;
    /// Frame belongs to ns exactly, from now on; for streams that are driven by a simulated counter.
    void Fix(std::int64_t ns, std::int64_t frame) noexcept;
    /// Frame whose callback is (was, will be) called at ns, cut to a whole frame; before the first
    /// observation frame 0.
    std::int64_t Frame_At(std::int64_t ns) const noexcept;

private:
    static constexpr std::int64_t BUCKET_NS = 100'000'000;
    static constexpr std::size_t BUCKETS = 40;
    static constexpr double STALL_NS = 10e6;
    static constexpr double NONE = 1e300;

    void Close_Bucket(std::int64_t nowNs) noexcept;
    void Anchor() noexcept;

    double framesPerNs = 44100.0 / 1e9;
    std::int64_t originNs = 0; ///< of the first observation; offsets are counted from it
    bool started = false;
    double offsetNs = 0.0; ///< least lateness in use: moment of frame 0, from originNs
    std::array<double, BUCKETS> least{};
    std::size_t current = 0;
    std::int64_t bucketEndNs = 0;
};

} // namespace tonvex
