#include "platform/waiting_run_loop.h"

#include <chrono>
#include <thread>

namespace tonvex {

void Waiting_Run_Loop::Run(const std::function<bool()>& round) {
    do {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (betweenRounds)
            betweenRounds();
    } while (round());
}

} // namespace tonvex
