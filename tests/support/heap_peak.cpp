#include "support/heap_peak.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

thread_local bool counting = false;
thread_local std::ptrdiff_t held = 0;
thread_local std::ptrdiff_t peak = 0;

void Count(std::ptrdiff_t bytes) noexcept {
    if (!counting)
        return;
    held += bytes;
    peak = std::max(peak, held);
}

} // namespace

// The array forms come here by way of the library's own; those that do not throw would too, but for the
// address sanitizer, which brings its own.

void* operator new(std::size_t size) {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr)
        throw std::bad_alloc();
    Count(static_cast<std::ptrdiff_t>(malloc_usable_size(block)));
    return block;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block != nullptr)
        Count(static_cast<std::ptrdiff_t>(malloc_usable_size(block)));
    return block;
}

void operator delete(void* block) noexcept {
    if (block == nullptr)
        return;
    Count(-static_cast<std::ptrdiff_t>(malloc_usable_size(block)));
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

namespace tonvex::test {

Heap_Peak::Heap_Peak() noexcept {
    held = 0;
    peak = 0;
    counting = true;
}

Heap_Peak::~Heap_Peak() {
    counting = false;
}

std::size_t Heap_Peak::Bytes() const noexcept {
    return static_cast<std::size_t>(peak);
}

} // namespace tonvex::test
