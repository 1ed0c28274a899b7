// From the saved steps of an adaptive run to samples at equal intervals.
#pragma once

#include <span>
#include <vector>

namespace zelvane {

/// Interpolates `values` at `times` with a cubic spline and writes it at 0, interval, 2 x interval ... to
/// `samples`.
///
/// @param times     strictly rising, any unit of time, as many as `values`, at least one
/// @param interval  between samples, the unit of `times`, above 0
///
/// The first derivatives at the ends are (second - first) / interval and (last - last but one) / interval. A
/// time before the first knot continues the first piece, one behind the last knot takes its value, and a
/// single knot gives a constant. Worked out in double. Source: Press, Teukolsky, Vetterling & Flannery
/// (1992), Numerical Recipes in C, 2nd ed., section 3.3.
void SplineToSamples(std::span<const double> times, std::span<const double> values, double interval,
                     std::span<float> samples);

/// Fills the first NumPoints samples of the trace from the saved steps of the last run: the monitored states
/// in the units that `Model.DisplayUnits` names, through the spline; before the point at which integration
/// started, the start occupancies. Sets `Result.KeptSteps` to the last saved step.
///
/// Reads:   `Model`, `Stimulus.Profile[0]`, `Result`.
/// Writes:  `Trace.SimTrace`, `Result.KeptSteps`, `Result.SavedTime` behind the last saved step.
void SavedStepsToTrace();

/// The value of every saved step of the last run, as SavedStepsToTrace takes them: element q - 1 belongs to
/// `Result.SavedTime[q]`, q from 1 to `Result.KeptSteps`. Call it after a conversion.
///
/// Reads:   `Model`, `Stimulus.Profile[0]`, `Result`.
std::vector<float> SavedStepValues();

}  // namespace zelvane
