#pragma once

namespace tonvex {

/// Says that this thread is inside the audio callback, so that the guard of the test program can tell an
/// allocation, lock or file access made there from one made elsewhere. Built with TONVEX_GUARD_AUDIO
/// alone; otherwise it costs nothing.
class Audio_Thread_Mark {
public:
#ifdef TONVEX_GUARD_AUDIO
    Audio_Thread_Mark() noexcept : outer(inside) {
        inside = true;
    }
    ~Audio_Thread_Mark() {
        inside = outer;
    }
    static bool Inside() noexcept {
        return inside;
    }

private:
    bool outer;
    static inline thread_local bool inside = false;

public:
#else
    Audio_Thread_Mark() noexcept {}
    ~Audio_Thread_Mark() {}
    static bool Inside() noexcept {
        return false;
    }
#endif
    Audio_Thread_Mark(const Audio_Thread_Mark&) = delete;
    Audio_Thread_Mark& operator=(const Audio_Thread_Mark&) = delete;
};

} // namespace tonvex
