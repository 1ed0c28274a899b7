// The graph of the trace on MainPanel: plots, axes and their titles.
//
//   Declaring   AddTraceGraph
//   Plots       PlotTrace  RemoveTracePlots  ShowWholeTrace
//   Axes        ShowDisplayUnits  ShowTraceUnits  ShowTimeAxis  AxisDecimals
#pragma once

namespace zelvane {

/// Puts the graph on MainPanel and lets it follow the trace. The control "DisplayUnits", whose words name the units, is there before.
void AddTraceGraph();

/// Plots NumPoints samples of the trace against time, in the colour of the simulator. With `erase` the plots
/// already there are removed first. Does nothing while a fit runs.
void PlotTrace(bool erase);

void RemoveTracePlots();

/// Brings all of the trace into view.
void ShowWholeTrace();

/// Shows the unit of `Model.DisplayUnits` on the y axis.
void ShowDisplayUnits();

/// Shows the unit of `Trace.TraceUnits` there: that of what the trace holds.
void ShowTraceUnits();

/// Writes the numbers of the time axis with the decimals that the trace's length asks for.
void ShowTimeAxis();

/// Returns the decimals of the numbers along the time axis of a trace `lengthMs` long: 2 below 10 ms, 1 below
/// 100 ms, else 0.
int AxisDecimals(float lengthMs);

}  // namespace zelvane
