#pragma once

#include <chrono>
#include <thread>

namespace tonvex::test {

inline void Wait_Ms(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

/// Whether a condition comes true within some seconds of real time.
template <typename Condition>
bool Comes_True(Condition condition, int seconds = 5) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        Wait_Ms(5);
    }
    return true;
}

} // namespace tonvex::test
