// Where the program's data and the user's own settings lie.
#pragma once

#include <string>
#include <string_view>

namespace zelvane {

/// Folder of the data installed beside the program ("config.mod", models): share/zelvane of an installation,
/// data/ of a build tree. Empty when neither is found.
std::string ProgramDataFolder();

/// Makes `folder` the one in which ProgramFile looks first; an empty one takes that back.
void SetProgramFolder(const std::string& folder);

/// Path of a file that stands beside the program: in the folder set, else among the installed data. The file
/// need not exist.
std::string ProgramFile(std::string_view name);

/// The user's configuration folder for this program; it need not exist. Empty when the system names none.
std::string UserConfigFolder();

}  // namespace zelvane
