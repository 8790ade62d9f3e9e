#pragma once

#include <chrono>
#include <functional>

namespace tonvex {

/// Does work on a thread of its own and waits for it, but no longer than limit. False when it was not
/// done by then, or no thread could be had: the thread then goes on alone, so work owns all it touches
/// (shared pointers). work throws nothing.
bool Run_Bounded(std::function<void()> work, std::chrono::milliseconds limit);

} // namespace tonvex
