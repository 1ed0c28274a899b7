// The graph of the trace on MainPanel: plots, axes and their titles.
//
//   Declaring   AddTraceGraph
//   Plots       PlotTrace  RemoveTracePlots  ShowWholeTrace
//   Axes        ShowDisplayUnits  ShowTraceUnits  ShowTimeAxis  AxisDecimals
#pragma once

namespace zelvane {

/// Adds the graph to MainPanel and connects it to the trace. Declare the control "DisplayUnits" first; its
/// words are the names of the units.
void AddTraceGraph();

/// Plots NumPoints samples of the trace against time, in the colour of the simulator. With `erase`, first
/// removes the old plots.
void PlotTrace(bool erase);

void RemoveTracePlots();

/// Shows the whole trace.
void ShowWholeTrace();

/// Shows the unit of `Model.DisplayUnits` on the y axis.
void ShowDisplayUnits();

/// Shows the unit of the trace, `Trace.TraceUnits`, on the y axis.
void ShowTraceUnits();

/// Sets the decimals of the time axis for the length of the trace.
void ShowTimeAxis();

/// Returns the decimals of the numbers along the time axis of a trace `lengthMs` long: 2 below 10 ms, 1 below
/// 100 ms, else 0.
int AxisDecimals(float lengthMs);

}  // namespace zelvane
