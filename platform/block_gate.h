#pragma once

#include "platform/millisecond_counter.h"
#include "platform/sound_driver.h"

#include <atomic>
#include <cstdint>

namespace tonvex {

/// Lets callbacks through to a source until it is shut, and gives silence ever after. What lies behind has
/// one audio thread at a time, while a device that is being given up may still call: shutting the gate
/// takes the source from it.
class Block_Gate final : public Block_Source {
public:
    /// source and clock are not touched after Shut.
    Block_Gate(Block_Source& source, const Millisecond_Counter& clock) noexcept;
    /// Audio thread. Neither waits nor locks.
    bool Pull(float* stereo, int frames) noexcept override;
    /// False while a block is under way; then try again. Any other thread.
    bool Try_Shut() noexcept;
    /// Waits for the block under way, a few milliseconds at most.
    void Shut() noexcept;
    /// When a block was last asked for (at first: when the gate was made), time of the counter.
    std::int64_t Last_Pull_Ns() const noexcept { return lastPullNs.load(std::memory_order_relaxed); }

private:
    enum class State { Free, Inside, Shut };
    Block_Source& inner;
    const Millisecond_Counter& counter;
    std::atomic<State> state{State::Free};
    std::atomic<std::int64_t> lastPullNs;
};

} // namespace tonvex
