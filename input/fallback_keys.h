#pragma once

namespace tonvex {

/// Scan code for a virtual key code, for the 49 keys that can play when there is no key state: the
/// recording piano window then feeds KeyboardClass::SetKeyState from its own key events. -1 for any other
/// key. F11 and F12 give 69 and 70, not the scan codes that the key state has for them.
int Fallback_Scan_Code(int virtualKey) noexcept;

} // namespace tonvex
