#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace tonvex {

/// The newest of a row of values, from one thread to another. What is written before the reader comes is
/// replaced, so that nothing fills up and the last value always arrives. Neither side locks, waits or
/// allocates. Value is copied by Write, so it should not allocate in that.
template <typename Value>
class Latest_Value {
public:
    /// Writer's thread.
    void Write(const Value& value) noexcept {
        values[mine] = value;
        mine = between.exchange(static_cast<std::uint8_t>(mine | FRESH), std::memory_order_acq_rel) & INDEX;
    }
    /// Reader's thread: the newest value, nullptr when there is none since the last call. Valid until the
    /// next call.
    const Value* Take() noexcept {
        if ((between.load(std::memory_order_relaxed) & FRESH) == 0)
            return nullptr;
        theirs = between.exchange(theirs, std::memory_order_acq_rel) & INDEX;
        return &values[theirs];
    }

private:
    static constexpr std::uint8_t FRESH = 4;
    static constexpr std::uint8_t INDEX = 3;
    std::array<Value, 3> values{};
    std::uint8_t mine = 0;
    std::uint8_t theirs = 1;
    std::atomic<std::uint8_t> between{2};
};

} // namespace tonvex
