#pragma once

#include "input/keyboard_layout.h"
#include "input/windows/keyboard_view.h"

namespace tonvex {

/// What stands on a drawn key (0 to 255), which has this sign, and how it is told.
Keyboard_View::Key_Face Face_Of_Key(const KeyboardLayout& layout, const NotesStuff& notes, int key,
                                    const QString& sign);

} // namespace tonvex
