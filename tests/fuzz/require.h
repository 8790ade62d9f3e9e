#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the fuzz target when something does not hold.
inline void Require(bool held, const char* what = "what was told does not hold") {
    if (!held) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}
