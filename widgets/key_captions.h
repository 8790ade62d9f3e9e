#pragma once

#include <QString>

#include <array>

namespace tonvex {

/// By layout scan code (set 1 numbering): what stands on the computer keys that carry a sign, in the user's
/// keyboard layout or, where that cannot be told, on a US keyboard; empty for the other keys.
std::array<QString, 256> Key_Captions();

} // namespace tonvex
