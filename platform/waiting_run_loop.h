#pragma once

#include "platform/run_loop.h"

namespace tonvex {

/// Rounds by the machine's clock for a program without an event loop: about one a millisecond, the thread
/// asleep in between.
class Waiting_Run_Loop final : public Run_Loop {
public:
    /// Called before each round; may be empty.
    std::function<void()> betweenRounds;

    void Run(const std::function<bool()>& round) override;
    void Let_Messages_Run() override {}
};

} // namespace tonvex
