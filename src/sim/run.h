// The run driver: the one road from a committed scheme to a result.
//
//   Running     RunSimulation
//   The trace   ConvertTrace  RefreshTrace  AxisDecimals
//
// Panels and commands are in run_panel.h, the integrators in integrator.h, Monte Carlo in monte_carlo.h.
#pragma once

namespace zelvane {

/// Runs the model for `numPoints` points with the simulator that `Model.SimulatorKind` names.
///
/// Unless `Model.FitActive`, rates and run settings are read from the panels first. The result is left in
/// `Result.Occupancy` and `Trace.SimTrace`; `Trace.TraceValid` is 1 when the run completed. A scheme without
/// connections is refused with "! Error", as is a state with more than MaxConnections exits for Monte Carlo.
void RunSimulation(int numPoints);

/// Turns `Result.Occupancy` into `Trace.SimTrace` by `Model.DisplayUnits`, adds noise and filter if asked,
/// and plots. With `erase` the plots already on the graph are removed first.
void ConvertTrace(bool erase);

/// Converts the occupancies of the last run again with the present monitored states and units, and plots.
void RefreshTrace();

/// Empties the trace: SimTrace 0, TraceValid 0, the main graph without plots.
void ClearTrace();

}  // namespace zelvane
