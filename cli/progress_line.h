#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>
#include <utility>

namespace tonvex {

/// A line on standard error for work of more than a second, when that is a terminal. One thread.
class Progress_Line {
public:
    Progress_Line(std::string label, std::int64_t wholeWork)
        : what(std::move(label)), whole(wholeWork), terminal(isatty(STDERR_FILENO) == 1) {}

    void Show(std::int64_t done) {
        if (!terminal || whole <= 0 || done < nextLook)
            return;
        nextLook = done + whole / 1000 + 1;
        if (std::chrono::steady_clock::now() - begun < std::chrono::seconds(1))
            return;
        const std::int64_t percent = done * 100 / whole;
        if (percent == shown)
            return;
        shown = percent;
        std::fprintf(stderr, "\r%s: %lld %%", what.c_str(), static_cast<long long>(percent));
        std::fflush(stderr);
    }
    void Clear() {
        if (shown >= 0)
            std::fputs("\r\033[K", stderr);
    }

private:
    std::string what;
    std::int64_t whole;
    bool terminal;
    std::int64_t nextLook = 0;
    std::int64_t shown = -1;
    std::chrono::steady_clock::time_point begun = std::chrono::steady_clock::now();
};

} // namespace tonvex
