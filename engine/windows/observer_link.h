#pragma once

#include "engine/transport_state.h"

#include <algorithm>
#include <vector>

namespace tonvex {

/// Keeps an observer in a session's list for its own life. The list outlives it.
class Observer_Link {
public:
    Observer_Link(std::vector<Transport_Observer*>& observers, Transport_Observer& observer)
        : list(observers), self(&observer) {
        list.push_back(self);
    }
    ~Observer_Link() { list.erase(std::remove(list.begin(), list.end(), self), list.end()); }
    Observer_Link(const Observer_Link&) = delete;
    Observer_Link& operator=(const Observer_Link&) = delete;

private:
    std::vector<Transport_Observer*>& list;
    Transport_Observer* self;
};

} // namespace tonvex
