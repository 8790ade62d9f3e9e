#include "platform/block_gate.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace tonvex {

Block_Gate::Block_Gate(Block_Source& source, const Millisecond_Counter& clock) noexcept
    : inner(source), counter(clock), lastPullNs(clock.Now_Ns()) {}

bool Block_Gate::Pull(float* stereo, int frames) noexcept {
    State expected = State::Free;
    if (!state.compare_exchange_strong(expected, State::Inside, std::memory_order_acquire)) {
        std::fill_n(stereo, static_cast<std::size_t>(frames) * 2, 0.0F);
        return false;
    }
    lastPullNs.store(counter.Now_Ns(), std::memory_order_relaxed);
    const bool more = inner.Pull(stereo, frames);
    state.store(State::Free, std::memory_order_release);
    return more;
}

bool Block_Gate::Try_Shut() noexcept {
    State expected = State::Free;
    return state.compare_exchange_strong(expected, State::Shut, std::memory_order_acquire) ||
           expected == State::Shut;
}

void Block_Gate::Shut() noexcept {
    while (!Try_Shut())
        std::this_thread::sleep_for(std::chrono::microseconds(200));
}

} // namespace tonvex
