// The run driver: the only way from a committed scheme to a result.
//
//   Running     RunSimulation  ChosenStart  RunHasLength  ResultHasRunLength  TellRunCompleted  ConnectRuns
//   The trace   ConvertTrace  RefreshTrace
//   Clearing    ClearOccupancy  RaiseOccupancyUsed
//
// These functions read the stores and no panel; AcquireData (run_panel.h) reads the panels first. The engine
// is Simulate in kinetics/simulate.h. An empty reporter makes a run silent, as a fit needs it: no messages,
// no events and no plots.
#pragma once

#include <array>

#include "kinetics/scheme_tables.h"
#include "platform/outcome.h"
#include "platform/run_reporter.h"
#include "run/run_memory.h"

namespace zelvane {

inline constexpr char RunInterrupted[] = "Simulation Interrupted by User";

/// Where the occupancies of a run start.
enum class RunStart {
  AsSet,          // at `Model.StartOccupancy`
  AtEquilibrium,  // at the equilibrium under the stimulus of point 1, which becomes `Model.StartOccupancy`
};

/// Returns the start that `Model.StartAtEquilibrium` chooses.
RunStart ChosenStart();

/// Runs the model for `numPoints` points with the simulator of `Model.SimulatorKind`.
///
/// A scheme without an equilibrium starts at `Model.StartOccupancy`. Writes the result to `Result.Occupancy`
/// and `Trace.SimTrace`. `Trace.TraceValid` is 1 after a complete run. Refuses with "! Error" a scheme
/// without connections, a state with more than MaxConnections exits for Monte Carlo, and a run without points
/// or without time between them.
/// @param memory  of earlier runs under the same stimulus: makes later ones quicker, with the same result
/// @return Done; Stopped by the user; Refused; or Failed, when the simulator did not hold its precision or
///         could not go on, or a trace was not appended to the autosave file
Outcome RunSimulation(int numPoints, RunStart start, const RunReporter& reporter = {},
                      RunMemory* memory = nullptr);

/// Converts `Result.Occupancy` to `Trace.SimTrace` in the units of `Model.DisplayUnits`, adds noise and
/// filter according to the settings, and announces the trace to be plotted. With `erase`, the old plots are
/// removed first.
///
/// Sample p - 1 is the sum over the monitored states of a factor times the occupancy at point p, in 32-bit
/// floats, state after state. The factor is the number of channels, times the conductance (pS), times driving
/// force (V) and valence (pA), or 1 for a probability. Saved steps of an adaptive run go through their
/// spline.
void ConvertTrace(bool erase, const RunReporter& reporter);

/// Reads the run settings from their panel, converts the occupancies of the last run again with the present
/// monitored states and units, and replaces the plot. Refuses a resampled trace, a recording, and settings
/// without points or time between them; with a note, those of another length than the run. Asks before it removes
/// a correction for series resistance. The trace of a complete run is valid again, also after another length in
/// between. Does not convert the trace of cooperative subunits; only plots it.
void RefreshTrace();

/// Updates `Result` when the trace changes, and gives the saved steps of the trace to its writers. A
/// recording has no occupancies, like the run of a single channel.
void ConnectRuns();

/// Announces the complete trace of a run.
/// @return the outcome of saving the trace; Done when no listener saves it
Outcome TellRunCompleted(const RunReporter& reporter);

/// Returns whether `Result` has the present number of points and interval.
bool ResultHasRunLength();

/// Returns whether the run settings have points and a time interval; a panel or a file may give 0. If not,
/// shows a message.
bool RunHasLength(const RunReporter& reporter);

/// Sets points 0..`points` of every state in `Result.Occupancy` to 0. Does not touch pages that no run has
/// written. Reduces `Result.OccupancyUsed` when only zeros remain.
void ClearOccupancy(int points);

/// Raises `Result.OccupancyUsed` to the written part of a sweep: for each state the point after its last one.
void RaiseOccupancyUsed(const std::array<int, MaxStates + 1>& used);

}  // namespace zelvane
