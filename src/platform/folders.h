// Where the program's data and the user's own settings lie.
#pragma once

#include <string>

namespace zelvane {

/// Folder of the data installed beside the program ("config.mod", models): share/zelvane of an installation,
/// data/ of a build tree. Empty when neither is found.
std::string ProgramDataFolder();

/// The user's configuration folder for this program; it need not exist. Empty when the system names none.
std::string UserConfigFolder();

}  // namespace zelvane
