#pragma once

#include <atomic>
#include <cstdint>

namespace tonvex {

/// The machine's clock, the only one the core reads. Any thread.
class Millisecond_Counter {
public:
    virtual ~Millisecond_Counter() = default;
    /// Nanoseconds since an unknown moment; never goes back.
    virtual std::int64_t Now_Ns() const noexcept = 0;
    /// The same moment in whole milliseconds, cut.
    std::int64_t Now_Ms() const noexcept { return Now_Ns() / 1'000'000; }
};

/// The monotonic clock of the system.
class Monotonic_Counter final : public Millisecond_Counter {
public:
    std::int64_t Now_Ns() const noexcept override;
};

/// A clock that stands until it is moved: runs take no real time and repeat exactly.
class Simulated_Counter final : public Millisecond_Counter {
public:
    std::int64_t Now_Ns() const noexcept override { return nowNs.load(std::memory_order_relaxed); }
    void Advance_Ms(std::int64_t ms) noexcept { Advance_Ns(ms * 1'000'000); }
    void Advance_Ns(std::int64_t ns) noexcept { nowNs.fetch_add(ns, std::memory_order_relaxed); }

private:
    std::atomic<std::int64_t> nowNs{0};
};

} // namespace tonvex
