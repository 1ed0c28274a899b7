// Run settings, run and stop on MainPanel, and the table of values of a result.
//
//   Declaring        AddRunControls  AddValuesTablePanel  AddRunMenu
//   Panel and store  ReadRunParameters  WriteRunParameters
//   Commands         AcquireData
//   What is shown    PlotTrace  RemoveTracePlots  ShowDisplayUnits  ShowTraceUnits  ShowDataName  ShowRunText
//   Statistics       AddStatisticsControls  ShowEventStatistics
#pragma once

namespace zelvane {

void AddRunControls();  // onto MainPanel, with the monitored-response graph
void AddValuesTablePanel();
void AddRunMenu();

/// Copies the run settings from MainPanel into the store; NumPoints is held to its limit, MultiSubunit forces
/// its fields. Without that panel the store stays as it is.
void ReadRunParameters();

/// Writes the run settings of the store to MainPanel.
void WriteRunParameters();

/// The run button: reads rates and run settings from the panels and runs NumPoints points.
void AcquireData();

/// Plots NumPoints samples of the trace against time on the main graph, in the colour of the simulator. With
/// `erase` the plots already there are removed first. Does nothing while a fit runs or without MainPanel.
void PlotTrace(bool erase);

/// Removes the plots of the main graph.
void RemoveTracePlots();

/// Shows the unit of DisplayUnits on the y axis of the main graph.
void ShowDisplayUnits();

/// Shows the unit of `Trace.TraceUnits` there: that of what the trace holds.
void ShowTraceUnits();

/// Shows the model's file as the name of the present data.
void ShowDataName();

/// Readouts of what the channels of a Monte Carlo simulation did, onto MainPanel.
void AddStatisticsControls();

/// Shows exits, channels that reached a monitored state, and count and mean of the dwell lists.
///
/// Reads: `Dwell`.
void ShowEventStatistics();

/// Shows how far a Monte Carlo simulation has come: `Result.RunText`.
void ShowRunText();

}  // namespace zelvane
