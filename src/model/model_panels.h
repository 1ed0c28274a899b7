// The panels of the scheme: MainPanel with the grid, TableModelPanel, DependencePanel, ConductancePanel and
// InitialConditionsPanel.
#pragma once

namespace zelvane {

// -- Declared once at start-up, in this order --
void AddMainPanel();  // the panel itself, the grid's controls, labels, drug names, Kd readouts
void AddDependencePanel();
void AddConductancePanel();
void AddInitialConditionsPanel();
void AddTableModelPanel();
void AddModelMenu();

// -- Copies between panels and store. A run calls the Read functions, WriteStartOccupancy and
// ShowSweepLength. They do nothing without their panel, so a run needs no panels --
void ReadGridRates();  // KOn and KOff, the title, and the labels of the grid
void WriteGridRates();
void ReadTableRates();   // all 380 cells into TableRate
void WriteTableRates();  // cells, marks, buttons and labels
void GetTableNames();    // the table's label fields into TableStateLabel

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
