// The model file: everything a user can set, as lines of text.
//
//   Reading   ModelFileRead  OpenParameterFile
//   Writing   ModelFileWrite  SaveParameters
#pragma once

#include <string>

#include "platform/outcome.h"

namespace zelvane {

void AddModelFileMenu();

/// Reads the file `Model.ModelFileName`, in any of the four formats, into the stores, refreshes every panel
/// and rebuilds the stimulus. While the file cannot be opened a dialog asks for a name, up to twice. A file
/// with another magic changes nothing. A field that its line does not hold keeps its value.
/// @return Done, or Refused when no file was chosen or the file is no model
Outcome ModelFileRead();

/// The same for a named file, without a dialog or a message: a file that cannot be opened or is no model
/// changes nothing and is Refused.
Outcome ModelFileReadNamed(const std::string& path);

/// Reads the panels into the stores and writes them to `Model.ModelFileName` in the newest format. The old
/// file is replaced only when the new one is whole. On failure shows a message and keeps the old file.
/// @return Done or Failed
Outcome ModelFileWrite();

// -- Commands: each asks for a name first; Refused when the user cancels --
Outcome OpenParameterFile();
Outcome SaveParameters();

}  // namespace zelvane
