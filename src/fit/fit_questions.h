// What a session of a waveform fit reads from the panels and asks before it begins.
//
//   AskBeforeFit  AskBeforeStep
#pragma once

#include "platform/outcome.h"

namespace zelvane {

/// Reads the run settings, the rates and the settings of the fit, builds the rows of the rates, and asks whatever a
/// session of `Fit.FitKind` must know: step size, limits, intervals, normalising, log.
///
/// Writes:  the settings; `Fit.RowCode`; after "yes" `Model.MaxStepSize`, the normalised recordings, the log switch.
/// @return Done; Refused after a "no" or without a free rate
Outcome AskBeforeFit();

/// Does the same for one step: asks about intervals (only for rates) and normalising.
Outcome AskBeforeStep();

}  // namespace zelvane
