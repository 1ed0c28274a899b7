// Fitted curves as text (.fit).
#pragma once

#include <string>

#include "platform/outcome.h"

namespace zelvane {

/// Asks for a file and writes `count` rows (at most MaxWaveformPoints) of the compared samples: the time of
/// waveform 1 (ms), then recording and simulation of each of the 15 waveforms. On failure shows a message and
/// keeps the existing file.
/// @return Done, Refused without a file, Stopped or Failed
Outcome ExportFit(int count);

/// Does the same with a given file, without a question.
Outcome ExportFitNamed(const std::string& path, int count);

}  // namespace zelvane
