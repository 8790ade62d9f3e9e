#pragma once

#include <QString>

namespace tonvex {

/// What stands on the computer key of a layout scan code (set 1 numbering) on a US keyboard; empty for keys
/// that carry no sign.
QString Key_Caption(int scanCode);

} // namespace tonvex
