#include "platform/qt/native_scan_codes.h"

namespace tonvex {

namespace {

constexpr std::uint32_t WINDOW_SYSTEM_OFFSET = 8;
/// Up to F12 the Linux input codes are the set 1 scan codes themselves.
constexpr std::uint32_t LAST_IDENTICAL = 88;

struct Code_Pair {
    std::uint8_t inputCode; ///< Linux input code
    std::uint8_t scanCode;
};

constexpr Code_Pair BEYOND[] = {
    {89, 115},  // key left of right Shift on Brazilian and Japanese boards
    {92, 121},  // Henkan
    {93, 112},  // Katakana/Hiragana
    {94, 123},  // Muhenkan
    {96, 156},  // numpad Enter
    {97, 157},  // right Ctrl
    {98, 181},  // numpad /
    {99, 183},  // Print Screen
    {100, 184}, // right Alt
    {102, 199}, // Home
    {103, 200}, // Up
    {104, 201}, // Page Up
    {105, 203}, // Left
    {106, 205}, // Right
    {107, 207}, // End
    {108, 208}, // Down
    {109, 209}, // Page Down
    {110, 210}, // Insert
    {111, 211}, // Delete
    {113, 160}, // Mute
    {114, 174}, // Volume Down
    {115, 176}, // Volume Up
    {116, 222}, // Power
    {117, 141}, // numpad =
    {119, 197}, // Pause
    {121, 179}, // numpad ,
    {124, 125}, // Yen
    {125, 219}, // left Windows key
    {126, 220}, // right Windows key
    {127, 221}, // Menu
    {183, 100}, // F13
    {184, 101}, // F14
    {185, 102}, // F15
};

} // namespace

std::uint8_t Scan_Code_Of_Native(std::uint32_t nativeKeyCode) noexcept {
    if (nativeKeyCode <= WINDOW_SYSTEM_OFFSET)
        return 0;
    const std::uint32_t inputCode = nativeKeyCode - WINDOW_SYSTEM_OFFSET;
    if (inputCode <= LAST_IDENTICAL)
        return static_cast<std::uint8_t>(inputCode);
    for (const Code_Pair& pair : BEYOND)
        if (pair.inputCode == inputCode)
            return pair.scanCode;
    return 0;
}

} // namespace tonvex
