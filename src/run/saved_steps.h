// Converts the saved steps of an adaptive run to samples at equal intervals.
#pragma once

#include <vector>

namespace zelvane {

/// Fills the first NumPoints samples of the trace from the saved steps of the last run: the monitored
/// states in the units of `Model.DisplayUnits`, through the spline. Before the start of the integration
/// uses the start occupancies. Sets `Result.KeptSteps` to the last saved step.
///
/// Reads:   `Model`, `Stimulus.Profile[0]`, `Result`.
/// Writes:  `Trace.SimTrace`, `Result.KeptSteps`, `Result.SavedTime` after the last saved step.
void SavedStepsToTrace();

/// Returns whether the trace was made from the saved steps of the last run. A trace of another length was not.
bool TraceHasSavedSteps();

/// Returns the time (ms) in the sweep of every saved step of the last run: the integration may start late. Call it
/// after a conversion.
///
/// Reads:   `Result`, `Model.ADInterval`.
std::vector<double> SavedStepTimes();

/// Returns the value at each of these times, as in SavedStepsToTrace.
///
/// Reads:   `Model`, `Stimulus.Profile[0]`, `Result`.
std::vector<float> SavedStepValues();

}  // namespace zelvane
