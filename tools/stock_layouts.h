#pragma once

#include "input/keyboard_layout_file.h"

#include <string>
#include <vector>

namespace tonvex {

/// A keyboard layout that ships with the program.
struct Stock_Layout {
    std::string name; ///< of the file, without folder and extension
    Key_Tables tables;
};

/// All of them. Notes follow the active octave; keys are told by scan code, so they lie in the same places
/// whatever is printed on the keys.
std::vector<Stock_Layout> Stock_Layouts();

} // namespace tonvex
