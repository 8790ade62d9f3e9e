#pragma once

#include "support/real_time.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace tonvex {

inline int failed = 0; ///< checks that failed so far

inline void Check(bool good, const std::string& what) {
    std::printf("%s  %s\n", good ? "ok    " : "FAILED", what.c_str());
    failed += good ? 0 : 1;
}

using test::Wait_Ms;

/// The value that the share of all values stays below; 0 where there are none.
inline double Percentile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0
                          : values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

inline std::string Percentiles(const std::vector<double>& values) {
    std::string text;
    for (const auto& [name, share] : {std::pair{"p50 ", 0.5}, {", p95 ", 0.95}, {", max ", 1.0}})
        text += name + std::to_string(Percentile(values, share));
    return text + " ms";
}

} // namespace tonvex
