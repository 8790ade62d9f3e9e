#pragma once

#include <cstddef>

namespace tonvex::test {

/// The most bytes that operator new had given out to this thread at one time since this was made, beyond
/// those of then. One at a time in a thread.
class Heap_Peak {
public:
    Heap_Peak() noexcept;
    ~Heap_Peak();
    Heap_Peak(const Heap_Peak&) = delete;
    Heap_Peak& operator=(const Heap_Peak&) = delete;
    std::size_t Bytes() const noexcept;
};

} // namespace tonvex::test
