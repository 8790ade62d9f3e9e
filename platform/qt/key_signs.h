#pragma once

#include <QString>

#include <array>

namespace tonvex {

/// By scan code of the layout files, which up to F12 count as the window system does.
using Key_Signs = std::array<QString, 89>;

/// What stands on the keys in the keyboard layout that the user has chosen for the desktop, as capitals;
/// empty where it cannot be told: other than under X11, for signs of other scripts that have older codes, for
/// keys that print nothing. One question to the X server.
Key_Signs Signs_On_Keys();

/// The sign of an X11 key symbol of Latin script, of a Unicode one, or of a dead accent; empty for any other.
QString Sign_Of_Symbol(unsigned long symbol);

} // namespace tonvex
