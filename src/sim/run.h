// The run driver: the only way from a committed scheme to a result.
//
//   Running     RunSimulation  RunHasLength  TellRunCompleted  ConnectRuns
//   The trace   ConvertTrace  RefreshTrace
//   Clearing    ClearOccupancy
//
// Panels and commands are in run_panel.h, the integrators in integrator.h, Monte Carlo in monte_carlo_loop.h.
#pragma once

#include <span>

#include "platform/outcome.h"
namespace zelvane {

/// Runs the model for `numPoints` points with the simulator of `Model.SimulatorKind`.
///
/// Unless `Model.FitActive`, rates and run settings are read from the panels first. With
/// `Model.StartAtEquilibrium`, during a fit `FitStartAtEquilibrium`, the equilibrium under the stimulus of
/// point 1 becomes `Model.StartOccupancy`. The result is left in `Result.Occupancy` and `Trace.SimTrace`;
/// `Trace.TraceValid` is 1 when the run completed. A scheme without connections is refused with "! Error", as
/// is a state with more than MaxConnections exits for Monte Carlo, and a run without points or without time
/// between them.
/// @return Done; Stopped by the user; Refused; or Failed, when the simulator did not hold its precision or
///         could not go on, or a trace was not appended to the autosave file. Messages are shown unless
///         `Model.FitActive`
Outcome RunSimulation(int numPoints);

/// Turns `Result.Occupancy` into `Trace.SimTrace` by `Model.DisplayUnits`, adds noise and filter if asked,
/// and plots. With `erase` the plots already on the graph are removed first. While a fit runs nothing is
/// plotted. False when the panels hold no points or no time between them: the user is told and the trace
/// stays.
///
/// Sample p - 1 is the sum over the monitored states of a factor times the occupancy at point p, in 32-bit
/// floats, state after state. The factor is the number of channels, times the conductance (pS), times driving
/// force (V) and valence (pA), or 1 for a probability. Saved steps of an adaptive run go through their
/// spline.
bool ConvertTrace(bool erase);

/// Converts the occupancies of the last run again with the present monitored states and units, and replaces
/// the plot. Refuses a resampled trace and a recording. Asks before it removes a correction for series
/// resistance. Does not convert the trace of cooperative subunits; only plots it.
void RefreshTrace();

/// Keeps `Result` in order when the trace changes: a recording has no occupancies, like one channel's run.
void ConnectRuns();

/// Announces that a run has left its trace, unless a fit runs.
/// @return what came of saving it; Done where nobody saves
Outcome TellRunCompleted();

/// Returns whether the run settings have points and a time interval; a panel or a file may give 0. If not,
/// shows a message, except during a fit.
bool RunHasLength();

/// Sets points 0..`points` of every state in `Result.Occupancy` to 0. Does not touch pages that no run has
/// written. Reduces `Result.OccupancyUsed` when only zeros remain.
void ClearOccupancy(int points);

}  // namespace zelvane
