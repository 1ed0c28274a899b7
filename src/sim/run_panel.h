// Run settings, run and stop on MainPanel, and the table of values of a result.
//
//   Declaring        AddRunControls  AddValuesTablePanel  AddRunMenu
//   Panel and store  ReadRunParameters  WriteRunParameters
//   Commands         AcquireData
//   What is shown    ShowDataName  ShowRunText
//   Statistics       AddStatisticsControls  ShowEventStatistics
#pragma once

namespace zelvane {

void AddRunControls();  // onto MainPanel, with the graph of the trace
void AddValuesTablePanel();
void AddRunMenu();

/// Copies the run settings from MainPanel into the store; NumPoints is held to its limit, MultiSubunit forces
/// its fields. Without that panel the store stays as it is.
void ReadRunParameters();

/// Writes the run settings of the store to MainPanel.
void WriteRunParameters();

/// The run button: reads rates and run settings from the panels and runs NumPoints points.
void AcquireData();

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
