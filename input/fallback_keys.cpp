#include "input/fallback_keys.h"

#include <cstddef>
#include <string_view>

namespace tonvex {

namespace {

/// Keys that lie side by side: scan codes count up from the first. The virtual key code of a letter or
/// digit is its ASCII capital.
struct Key_Row {
    std::string_view virtualKeys;
    int firstScanCode;
};

constexpr Key_Row ROWS[] = {
    {"1234567890", 2},
    {"QWERTYUIOP", 16},
    {"ASDFGHJKL", 30},
    {"ZXCVBNM", 44},
};

constexpr int VIRTUAL_ESCAPE = 27;
constexpr int VIRTUAL_F1 = 112;
constexpr int VIRTUAL_F12 = 123;

} // namespace

int Fallback_Scan_Code(int virtualKey) noexcept {
    if (virtualKey == VIRTUAL_ESCAPE)
        return 1;
    if (virtualKey >= VIRTUAL_F1 && virtualKey <= VIRTUAL_F12)
        return 59 + (virtualKey - VIRTUAL_F1);
    for (const Key_Row& row : ROWS)
        for (std::size_t i = 0; i < row.virtualKeys.size(); ++i)
            if (virtualKey == row.virtualKeys[i])
                return row.firstScanCode + static_cast<int>(i);
    return -1;
}

} // namespace tonvex
