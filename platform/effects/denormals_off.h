#pragma once

#include <cstdint>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace tonvex {

/// While it lives, results too small for a normal number are 0 on this thread: a tail that fades to nothing
/// would slow the processor down many times over.
class Denormals_Off {
public:
#if defined(__SSE__)
    Denormals_Off() noexcept : before(_mm_getcsr()) {
        _mm_setcsr(before | FLUSH);
    }
    ~Denormals_Off() {
        _mm_setcsr(before);
    }
#elif defined(__aarch64__)
    Denormals_Off() noexcept {
        asm volatile("mrs %0, fpcr" : "=r"(before));
        asm volatile("msr fpcr, %0" : : "r"(before | FLUSH));
    }
    ~Denormals_Off() {
        asm volatile("msr fpcr, %0" : : "r"(before));
    }
#else
    Denormals_Off() noexcept = default;
#endif
    Denormals_Off(const Denormals_Off&) = delete;
    Denormals_Off& operator=(const Denormals_Off&) = delete;

private:
#if defined(__SSE__)
    static constexpr std::uint32_t FLUSH = 0x8040; ///< flush to zero, denormals are zero
    std::uint32_t before;
#elif defined(__aarch64__)
    static constexpr std::uint64_t FLUSH = std::uint64_t{1} << 24U;
    std::uint64_t before = 0;
#endif
};

} // namespace tonvex
