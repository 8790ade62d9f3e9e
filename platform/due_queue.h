#pragma once

#include "platform/sound_door.h"

#include <atomic>
#include <boost/lockfree/spsc_queue.hpp>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tonvex {

/// Messages on their way from one sender to the audio thread, given out in the order of their due
/// moments; equal moments in the order of posting.
/// Threads: Push, Push_Take_Back and Dropped_Count on the sender's, all else on the audio thread.
/// Everything is sized once: no call after construction allocates, locks or throws.
class Due_Queue {
public:
    /// capacity (1 and up) is the room of the ring between the threads and of the ordered store each.
    explicit Due_Queue(std::size_t capacity);

    /// False when full: the message is dropped and Dropped_Count rises.
    bool Push(const Sound_Message& message) noexcept;
    /// Messages pushed before and due at fromNs or later are not given out, unless they have been. False
    /// when full: nothing is taken back.
    bool Push_Take_Back(std::int64_t fromNs) noexcept;
    std::uint64_t Dropped_Count() const noexcept { return dropped.load(std::memory_order_relaxed); }

    /// Takes over what has arrived, as far as the store has room; the rest waits in the ring.
    void Collect() noexcept;
    /// The earliest message collected, nullptr when there is none; valid until the next Pop or Collect.
    const Sound_Message* Next() const noexcept {
        return waiting.empty() ? nullptr : &waiting.front().message;
    }
    /// Takes the earliest message away; there must be one.
    void Pop() noexcept;
    /// Nothing collected and nothing in the ring.
    bool Empty() const noexcept { return waiting.empty() && ring.read_available() == 0; }

private:
    struct Arrival {
        Sound_Message message;
        bool takesBack; ///< the message is none: those due from its moment on go
    };
    struct Waiting {
        Sound_Message message;
        std::uint64_t order;
    };
    static bool Later(const Waiting& a, const Waiting& b) noexcept;
    void Take_Back(std::int64_t fromNs) noexcept;

    boost::lockfree::spsc_queue<Arrival> ring;
    std::vector<Waiting> waiting; ///< binary heap, earliest in front
    std::uint64_t nextOrder = 0;
    std::atomic<std::uint64_t> dropped{0};
};

} // namespace tonvex
