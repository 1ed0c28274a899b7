// The model file: everything a user can set, as lines of text.
//
//   Reading   ModelFileRead  OpenParameterFile
//   Writing   ModelFileWrite  SaveParameters
#pragma once

#include <string>

namespace zelvane {

void AddModelFileMenu();

/// Reads the file `Model.ModelFileName`, in any of the four formats, into the stores, refreshes every panel
/// and rebuilds the stimulus. While the file cannot be opened a dialog asks for a name, up to twice. A file
/// with another magic changes nothing. A field that its line does not hold keeps its value.
/// @return true when a model was read
bool ModelFileRead();

/// The same for a named file, without a dialog: a file that cannot be opened or is no model changes nothing.
bool ModelFileReadNamed(const std::string& path);

/// Reads the panels into the stores and writes them to `Model.ModelFileName` in the newest format. The old
/// file is replaced only when the new one is whole; a failure is told and leaves it as it was.
/// @return true when the file was written
bool ModelFileWrite();

// -- Commands: each asks for a name first --
void OpenParameterFile();
void SaveParameters();

}  // namespace zelvane
