#pragma once

#include "platform/millisecond_counter.h"

#include <cstdint>
#include <functional>

namespace tonvex {

/// What a transport run stands on: rounds about every millisecond, and between rounds everything else
/// that the program has to do. Interface thread.
class Run_Loop {
public:
    virtual ~Run_Loop() = default;
    /// Waits 1 ms, lets everything that is waiting run, calls round; again until round gives false.
    /// A handler never runs inside a round. Does not return before the run is over.
    virtual void Run(const std::function<bool()>& round) = 0;
    /// Lets what is waiting run once, without a round.
    virtual void Let_Messages_Run() = 0;
};

/// One round a millisecond of a simulated counter; between rounds it calls betweenRounds, which stands
/// for the user (pressing Stop, seeking).
class Simulated_Run_Loop final : public Run_Loop {
public:
    explicit Simulated_Run_Loop(Simulated_Counter& clock) : counter(clock) {}
    /// Called after each advance of the counter, before the round; may be empty.
    std::function<void(std::int64_t nowMs)> betweenRounds;

    void Run(const std::function<bool()>& round) override;
    void Let_Messages_Run() override {}

private:
    Simulated_Counter& counter;
};

} // namespace tonvex
