#pragma once

#include <string>

namespace tonvex::test {

/// Counts what the audio thread must not do: allocate, free, lock, wait, open, read or write a file, print.
/// The test program's own definitions of those calls stand before the C library's, for the libraries that
/// it uses as well; a call counts while Audio_Thread_Mark::Inside(). Built with TONVEX_GUARD_AUDIO alone.
class Audio_Thread_Guard {
public:
    /// Begins to count; one at a time.
    Audio_Thread_Guard();
    static bool Is_Built() noexcept;
    int Violations() const noexcept;
    /// Name of the first call that counted and the functions that led to it; empty when none did.
    std::string First_Violation() const;
};

} // namespace tonvex::test
