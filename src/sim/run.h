// The run driver: the one road from a committed scheme to a result.
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

/// Runs the model for `numPoints` points with the simulator that `Model.SimulatorKind` names.
///
/// Unless `Model.FitActive`, rates and run settings are read from the panels first. With
/// `Model.StartAtEquilibrium`, during a fit `FitStartAtEquilibrium`, the equilibrium under the stimulus of
/// point 1 becomes `Model.StartOccupancy`. The result is left in `Result.Occupancy` and `Trace.SimTrace`;
/// `Trace.TraceValid` is 1 when the run completed. A scheme without connections is refused with "! Error", as
/// is a state with more than MaxConnections exits for Monte Carlo, and a run without points or without time
/// between them.
/// @return Done; Stopped by the user; Refused; or Failed, when the simulator did not hold its precision or could not
///         go on, or a trace was not appended to the autosave file. Messages are shown unless `Model.FitActive`
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

/// Converts the occupancies of the last run again with the present monitored states and units, and plots them
/// in place of what the graph showed. Refuses a resampled trace and a recording; asks before it gives up a
/// correction for series resistance; plots the trace of cooperative subunits as it stands.
void RefreshTrace();

/// Keeps `Result` in order when the trace changes: a recording has no occupancies, like one channel's run.
void ConnectRuns();

/// Announces that a run has left its trace, unless a fit runs.
/// @return what came of saving it; Done where nobody saves
Outcome TellRunCompleted();

/// Whether the run settings have points and time between them: a panel or a file can bring neither. If not,
/// the user is told, unless a fit runs.
bool RunHasLength();

/// Sets points 0..`points` of every state in `Result.Occupancy` to 0. Pages that no run has written stay
/// untouched, and `Result.OccupancyUsed` falls where nothing but zeros is left.
void ClearOccupancy(int points);

}  // namespace zelvane
