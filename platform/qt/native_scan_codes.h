#pragma once

#include <cstdint>

namespace tonvex {

/// The scan code that layout files use (1 to 255) for a key code of the window system, as X11 and Wayland
/// count them: Linux input code + 8. 0 for a key that has none.
/// The main block keeps its set 1 code (Escape 9 -> 1, F12 96 -> 88); a key of the extended block has its
/// set 1 code + 128 (right Ctrl 105 -> 157).
std::uint8_t Scan_Code_Of_Native(std::uint32_t nativeKeyCode) noexcept;

} // namespace tonvex
