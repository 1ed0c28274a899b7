// Numerical integration of the model: from the stores through Simulate (kinetics/simulate.h) to the stores.
//
// Saved steps become a trace in saved_steps.h.
#pragma once

#include "platform/outcome.h"
#include "platform/run_reporter.h"
#include "run/run_memory.h"

namespace zelvane {

/// Integrates the model with its stimulus and the integrator of `Model.SimulatorKind`, and converts the
/// result to the trace, which is then valid. RunSimulation has prepared the rates and cleared the occupancies.
///
/// A stopped run of the fixed-step integrator has a trace up to its stop. An adaptive run that does not reach its
/// end has no trace.
///
/// Reads:   `Model`, `Stimulus.Profile`.
/// Writes:  `Result.Occupancy` and what goes with it, `Result.SavedTime`, `Trace` through ConvertTrace;
///          `Model.MaxStepSize` and `Model.Precision` as the engine used them.
/// Tells:   "! Integration Warning" and "! Integration Error" about a reduced step, "!" about a reduced
///          precision or a stop, a note about an adaptive run without a trace. Asks before a long run with a step
///          that an earlier one has reduced.
/// @param memory  as of RunSimulation
/// @return Done; Stopped; Refused when the user does not want that run; Failed when the step became too
///         small, the precision was reduced or an adaptive run did not reach its end
Outcome IntegrateModel(const RunReporter& reporter, RunMemory* memory = nullptr);

}  // namespace zelvane
