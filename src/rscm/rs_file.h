// Correction of a whole recording, from file to file.
#pragma once

#include <functional>

namespace zelvane {

/// Asks for an ABF file, reads it into the trace, all episodes one behind the other, corrects it with the
/// linear correction, and asks where to save it as an ABF file of floats with the same episodes.
///
/// @param readSettings  called before the correction: brings the settings of `RsCm` up to date
///
/// The target is a template file ("GAPFREE.ABF", or "EPISODE-10.ABF" for several episodes; a built-in one
/// where none stands beside the program) with the fields that tell of the trace. It is replaced whole; when
/// that fails, or when it is the file that was read, the user is told and nothing is written.
/// @return whether the trace has changed
bool FileCorrect(const std::function<void()>& readSettings);

}  // namespace zelvane
