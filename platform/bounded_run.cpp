#include "platform/bounded_run.h"

#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

namespace tonvex {

bool Run_Bounded(std::function<void()> work, std::chrono::milliseconds limit) {
    auto done = std::make_shared<std::promise<void>>();
    const std::future<void> finished = done->get_future();
    try {
        std::thread([task = std::move(work), done]() mutable {
            task();
            task = nullptr; // what it held is gone before the caller goes on
            done->set_value();
        }).detach();
    } catch (const std::system_error&) {
        return false;
    }
    return finished.wait_for(limit) == std::future_status::ready;
}

} // namespace tonvex
