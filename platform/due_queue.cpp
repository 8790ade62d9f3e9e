#include "platform/due_queue.h"

#include <algorithm>

namespace tonvex {

Due_Queue::Due_Queue(std::size_t capacity) : ring(capacity) {
    waiting.reserve(capacity);
}

bool Due_Queue::Later(const Waiting& a, const Waiting& b) noexcept {
    return a.message.dueNs != b.message.dueNs ? a.message.dueNs > b.message.dueNs : a.order > b.order;
}

bool Due_Queue::Push(const Sound_Message& message) noexcept {
    if (ring.push(message))
        return true;
    dropped.fetch_add(1, std::memory_order_relaxed);
    return false;
}

void Due_Queue::Collect() noexcept {
    Waiting arrived{};
    while (waiting.size() < waiting.capacity() && ring.pop(arrived.message)) {
        arrived.order = nextOrder++;
        waiting.push_back(arrived);
        std::push_heap(waiting.begin(), waiting.end(), Later);
    }
}

void Due_Queue::Pop() noexcept {
    std::pop_heap(waiting.begin(), waiting.end(), Later);
    waiting.pop_back();
}

} // namespace tonvex
