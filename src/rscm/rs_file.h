// Correction of a whole recording from one file into another.
#pragma once

#include <functional>

#include "platform/outcome.h"

namespace zelvane {

/// Asks for an ABF file and reads all its episodes into the trace, one after the other. Applies the linear
/// correction. Then asks for a new name and saves an ABF file of floats with the same episodes.
///
/// @param readSettings  called before the correction; updates the settings of `RsCm` from the panel
///
/// The new file begins as a template file ("GAPFREE.ABF", or "EPISODE-10.ABF" for several episodes).
/// Without this file in the program's folder it uses a built-in template. Then it gets the fields of the
/// trace. When the write fails, or when the new name is that of the source, shows a message and writes
/// nothing.
/// @return Done; Refused without a file, with an unchanged trace; Stopped without a target; or Failed.
///         The trace has changed unless Refused
Outcome FileCorrect(const std::function<void()>& readSettings);

}  // namespace zelvane
