// The panels of the scheme: MainPanel with the grid, TableModelPanel, DependencePanel, ConductancePanel,
// InitialConditionsPanel, ConstraintsPanel and LoopsPanel.
#pragma once

namespace zelvane {

/// Declares the panels and the menu, once at start-up; other folders add to MainPanel.
void AddModelPanels();

// -- Copies between panels and store --
void ReadGridRates();  // StateOn, KOn and KOff, the title, and the labels of the grid
void WriteGridRates();
void ReadTableRates();   // all 380 cells into TableRate
void ReadActiveRates();  // those of the form that runs, and what an open dependence panel shows
void WriteTableRates();  // cells, marks, buttons and labels
void GetTableNames();    // the table's label fields into TableStateLabel

/// Store what is typed on the panels of rate and loop constraints. A typed number that is no state gives way
/// to the number before, with a note.
void TakeConstraintsPanel();
void TakeLoopsPanel();

/// Copies the whole scheme to the panels of this folder: grid, table, conductances, start occupancies,
/// labels.
void RefreshModelPanels();

/// Colours the links of the grid that depend on the stimulus and shows their dissociation constants.
void RefreshLinks();

/// Shows StartOccupancy on its panel.
void WriteStartOccupancy();

/// Shows the total length of the sweep, NumPoints x ADInterval, with "%.3ems".
void ShowSweepLength();

}  // namespace zelvane
