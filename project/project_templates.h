#pragma once

#include "platform/user_dialogs.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tonvex {

/// Project templates are plain project files in one folder. Interface thread.

/// Asks to make the folder when it is not there. True when it is there in the end; a folder that cannot be
/// made has been told.
bool Template_Folder_Stands(User_Dialogs& dialogs, const std::filesystem::path& folder);

/// Their names without the ending, in order, letter case aside.
std::vector<std::string> List_Project_Templates(const std::filesystem::path& folder);

/// The file of a template of that name. A name with an ending or without one is the same; what would lead out
/// of the folder is cut off. Empty for a name that is none.
std::filesystem::path Project_Template_File(const std::filesystem::path& folder, const std::string& name);
/// The same of a file with another ending, in lower case with its dot.
std::filesystem::path Named_File(const std::filesystem::path& folder, const std::string& name,
                                 std::string_view ending);

} // namespace tonvex
