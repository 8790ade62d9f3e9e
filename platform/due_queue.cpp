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
    if (ring.push({message, false}))
        return true;
    dropped.fetch_add(1, std::memory_order_relaxed);
    return false;
}

bool Due_Queue::Push_Take_Back(std::int64_t fromNs) noexcept {
    Sound_Message from;
    from.dueNs = fromNs;
    return ring.push({from, true});
}

void Due_Queue::Collect() noexcept {
    Arrival arrived{};
    while (waiting.size() < waiting.capacity() && ring.pop(arrived)) {
        if (arrived.takesBack) {
            Take_Back(arrived.message.dueNs);
            continue;
        }
        waiting.push_back({arrived.message, nextOrder++});
        std::push_heap(waiting.begin(), waiting.end(), Later);
    }
}

void Due_Queue::Take_Back(std::int64_t fromNs) noexcept {
    std::erase_if(waiting, [fromNs](const Waiting& row) { return row.message.dueNs >= fromNs; });
    std::make_heap(waiting.begin(), waiting.end(), Later);
}

void Due_Queue::Pop() noexcept {
    std::pop_heap(waiting.begin(), waiting.end(), Later);
    waiting.pop_back();
}

} // namespace tonvex
