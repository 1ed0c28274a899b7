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

/// Copies the run settings from MainPanel into the store, limits NumPoints, and sets the fields that
/// MultiSubunit forces.
void ReadRunParameters();

/// Copies the run settings of the store, which may have come from a file, to MainPanel.
void WriteRunParameters();

/// Does the work of the run button: reads run settings and rates from the panels, once, and runs NumPoints
/// points from `Model.StartOccupancy` or, with `Model.StartAtEquilibrium`, from the equilibrium. Shows
/// messages and progress, and hears the stop button.
/// @return as RunSimulation
Outcome AcquireData();

/// Shows the name of the model file as the name of the present data.
void ShowDataName();

/// Shows the exits, the channels that reached a monitored state, and count and mean of the dwell lists.
///
/// Reads: `Dwell`.
void ShowEventStatistics();

/// Shows the progress of a Monte Carlo simulation: `Result.RunText`.
void ShowRunText();

}  // namespace zelvane
