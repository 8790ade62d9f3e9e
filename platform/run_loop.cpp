#include "platform/run_loop.h"

namespace tonvex {

void Simulated_Run_Loop::Run(const std::function<bool()>& round) {
    do {
        counter.Advance_Ms(1);
        if (betweenRounds)
            betweenRounds(counter.Now_Ms());
    } while (round());
}

} // namespace tonvex
