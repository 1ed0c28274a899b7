// Run settings, run and stop on MainPanel, and the table of values of a result.
#pragma once

namespace zelvane {

void AddRunControls();  // onto MainPanel, with the monitored-response graph
void AddValuesTablePanel();
void AddRunMenu();

/// Copies the run settings from MainPanel into the store; NumPoints is held to its limit, MultiSubunit forces
/// its fields.
void ReadRunParameters();

/// Writes the run settings of the store to MainPanel.
void WriteRunParameters();

/// The run button: reads rates and run settings from the panels and runs NumPoints points.
void AcquireData();

/// Shows the unit of DisplayUnits on the y axis of the main graph.
void ShowDisplayUnits();

}  // namespace zelvane
