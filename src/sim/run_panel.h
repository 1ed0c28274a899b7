// Run settings, run and stop on MainPanel, and the table of values of a result.
//
//   Declaring        AddRunPanels
//   Panel and store  ReadRunParameters  WriteRunParameters
//   Commands         AcquireData
//   What is shown    ShowDataName  ShowRunText
//   Statistics       ShowEventStatistics
#pragma once

#include "platform/outcome.h"

namespace zelvane {

/// Declares the run's controls, statistics and graph on MainPanel, the table of values and the menu.
void AddRunPanels();

/// Copies the run settings from MainPanel into the store; NumPoints is held to its limit, MultiSubunit forces
/// its fields. Without that panel the store stays as it is.
void ReadRunParameters();

/// Writes the run settings of the store to MainPanel.
void WriteRunParameters();

/// The run button: reads rates and run settings from the panels and runs NumPoints points.
/// @return as RunSimulation
Outcome AcquireData();

/// Shows the model's file as the name of the present data.
void ShowDataName();

/// Shows exits, channels that reached a monitored state, and count and mean of the dwell lists.
///
/// Reads: `Dwell`.
void ShowEventStatistics();

/// Shows how far a Monte Carlo simulation has come: `Result.RunText`.
void ShowRunText();

}  // namespace zelvane
