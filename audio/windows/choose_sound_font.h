#pragma once

#include "platform/user_dialogs.h"

#include <string>

namespace tonvex {

/// The file box "Open File" for sound fonts. The path of a font with presets; empty when the user cancels or
/// the file is none, which the user has then been told. Interface thread.
std::string Choose_Sound_Font(User_Dialogs& dialogs);

} // namespace tonvex
