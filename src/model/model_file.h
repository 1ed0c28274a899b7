// The model file: everything a user can set, as lines of text.
//
//   Reading   ModelFileRead  ModelFileReadNamed  OpenParameterFile
//   Writing   ModelFileWrite  SaveParameters
//   Menu      AddModelFileMenu
#pragma once

#include <string>

#include "platform/outcome.h"

namespace zelvane {

void AddModelFileMenu();

/// Reads the file `Model.ModelFileName`, in any of the four formats, into the stores, updates every panel
/// and builds the stimulus again. When the file cannot be opened, asks for another name, up to twice. A
/// file with another magic changes nothing. A field keeps its value when its line does not hold one; notes
/// tell of such lines.
/// @return Done; Refused without a file, or when the file is not a model; Failed, after a message, when the
///         stimulus of the model is not available: the rest of the model is in the stores
Outcome ModelFileRead();

/// Does the same for a named file, without a dialog. Returns Refused and changes nothing when the file cannot
/// be opened or is not a model.
/// @param faulty  becomes whether the file ends early or has lines without their numbers
Outcome ModelFileReadNamed(const std::string& path, bool* faulty = nullptr);

/// Reads the panels into the stores and writes them to `Model.ModelFileName` in the newest format. The old
/// file is replaced only when the new one is complete. On failure shows a message and keeps the old file.
/// @return Done or Failed
Outcome ModelFileWrite();

// -- Commands: each asks for a name first; Refused when the user cancels --
Outcome OpenParameterFile();
Outcome SaveParameters();

}  // namespace zelvane
