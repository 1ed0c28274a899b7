// The folders of the program's data and of the user's settings.
#pragma once

#include <string>
#include <string_view>

namespace zelvane {

/// The model at the start of the program. A folder with this file is a data folder.
inline constexpr char ConfigFileName[] = "config.mod";

/// Returns the folder of the installed data ("config.mod", models): share/zelvane of an installation, or
/// data/ of a build tree. Returns an empty string when it finds no folder.
std::string ProgramDataFolder();

/// Makes ProgramFile search `folder` first. An empty string removes this folder.
void SetProgramFolder(const std::string& folder);

/// Returns the full path of a file of the program: in the folder of SetProgramFolder, else in the folder of the
/// installed data, else beside the program. The file may be missing.
std::string ProgramFile(std::string_view name);

/// Returns the user's configuration folder for this program; the folder may be missing. Returns an empty
/// string when the system names no such folder.
std::string UserConfigFolder();

}  // namespace zelvane
