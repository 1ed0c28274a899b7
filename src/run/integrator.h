// Numerical integration of the model: one function for two engines.
//
// The engines (fixed_step.h, adaptive_step.h) work on values that are handed to them; this function reads the
// stores, calls one of them and leaves its result in the stores. Saved steps become a trace in saved_steps.h.
#pragma once

#include "platform/outcome.h"

namespace zelvane {

/// Integrates the model with its stimulus and the integrator of `Model.SimulatorKind`, and converts the
/// result to the trace.
///
/// Unless `Model.FitActive`, first reads the run settings (and the rates of the grid) from the panels,
/// shows progress and messages, and reacts to the stop button. With the grid it fills `Model.RateMatrix`;
/// with the table the caller does this.
///
/// Reads:   `Model`, `Stimulus.Profile`, StopAsked().
/// Writes:  `Result.Occupancy` and what goes with it, `Result.SavedTime`, `Trace` through ConvertTrace;
///          `Model.MaxStepSize` and `Model.Precision` when the engine had to change them.
/// Tells:   "! Integration Warning" and "! Integration Error" about a reduced step, "!" about a reduced
/// precision or a
///          stop. Asks before a long run with a step that an earlier one has reduced.
/// @return Done; Stopped; Refused when the user does not want that run; Failed when the step became too
///         small or the precision was reduced
Outcome IntegrateModel();

}  // namespace zelvane
