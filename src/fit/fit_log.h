// The log file of a waveform fit.
//
//   OpenFitLog  FitLog  FitLogIsOpen  FlushFitLog  CloseFitLog
#pragma once

#include <string_view>

#include "platform/outcome.h"

namespace zelvane {

/// Appends "STARTING NEW FIT using: ..." to `Fit.FitLogFile`, or makes the file. On failure shows the file error.
/// @return Done, also when the log is switched off; or Failed
Outcome OpenFitLog();

/// Adds text to the open log; does nothing without one.
void FitLog(std::string_view text);
bool FitLogIsOpen();

/// Appends to the file what was added since. A failure is told once, and the log is closed.
void FlushFitLog();

/// Flushes and closes the log.
void CloseFitLog();

}  // namespace zelvane
