// Numerical integration of the model: one entry over two engines.
//
// The engines (fixed_step.h, adaptive_step.h) work on values that are handed to them; this function reads the
// stores, calls one of them and leaves its result in the stores. Saved steps become a trace in saved_steps.h.
#pragma once

#include "platform/outcome.h"

namespace zelvane {

/// Integrates the model under its stimulus with the integrator that `Model.SimulatorKind` names, and converts
/// the result to the trace.
///
/// Unless `Model.FitActive`, the run settings (and with the grid its rates) are read from the panels first,
/// progress is shown, the stop button works, and messages are shown. With the grid `Model.RateMatrix` is
/// rebuilt; with the table the caller has done so.
///
/// Reads:   `Model`, `Stimulus.Profile`, StopAsked().
/// Writes:  `Result.Occupancy` and what goes with it, `Result.SavedTime`, `Trace` through ConvertTrace;
///          `Model.MaxStepSize` and `Model.Precision` when the engine had to change them.
/// Tells:   "! Integration Warning" and "! Integration Error" about a reduced step, "!" about a reduced
/// precision or a
///          stop. Asks before a long run with a step that an earlier one has reduced.
/// @return Done; Stopped; Refused when the user does not want that run; Failed when the step became too small or the
///         precision was reduced
Outcome IntegrateModel();

}  // namespace zelvane
