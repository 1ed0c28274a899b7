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

/// Returns the value of every saved step of the last run, as in SavedStepsToTrace. Element q - 1 belongs to
/// `Result.SavedTime[q]`, q from 1 to `Result.KeptSteps`. Call it after a conversion.
///
/// Reads:   `Model`, `Stimulus.Profile[0]`, `Result`.
std::vector<float> SavedStepValues();

}  // namespace zelvane
