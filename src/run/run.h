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
/// Unless `Model.FitActive`, first reads rates and run settings from the panels. With
/// `Model.StartAtEquilibrium` (during a fit `FitStartAtEquilibrium`), the equilibrium under the stimulus of
/// point 1 becomes `Model.StartOccupancy`. Writes the result to `Result.Occupancy` and `Trace.SimTrace`.
/// `Trace.TraceValid` is 1 after a complete run. Refuses with "! Error" a scheme without connections, a
/// state with more than MaxConnections exits for Monte Carlo, and a run without points or without time
/// between them.
/// @return Done; Stopped by the user; Refused; or Failed, when the simulator did not hold its precision or
///         could not go on, or a trace was not appended to the autosave file. Messages are shown unless
///         `Model.FitActive`
Outcome RunSimulation(int numPoints);

/// Converts `Result.Occupancy` to `Trace.SimTrace` in the units of `Model.DisplayUnits`, adds noise and
/// filter according to the settings, and plots the trace. With `erase`, first removes the old plots. Does
/// not plot during a fit. When the panels have no points or no time between them, shows a message, keeps
/// the trace and returns false.
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

/// Updates `Result` when the trace changes. A recording has no occupancies, like the run of a single channel.
void ConnectRuns();

/// Announces the complete trace of a run, except during a fit.
/// @return the outcome of saving the trace; Done when no listener saves it
Outcome TellRunCompleted();

/// Returns whether the run settings have points and a time interval; a panel or a file may give 0. If not,
/// shows a message, except during a fit.
bool RunHasLength();

/// Sets points 0..`points` of every state in `Result.Occupancy` to 0. Does not touch pages that no run has
/// written. Reduces `Result.OccupancyUsed` when only zeros remain.
void ClearOccupancy(int points);

}  // namespace zelvane
