#pragma once

#include <string>
#include <vector>

namespace tonvex {

/// A library that the program stands on, as it is loaded now.
struct Library_Row {
    std::string name;
    std::string version; ///< empty when the library does not tell
    std::string licence; ///< by its SPDX name
};

/// The libraries of the core, in the order of their names. The windows add their own.
std::vector<Library_Row> Core_Libraries();

} // namespace tonvex
