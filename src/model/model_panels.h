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

// -- Panel to store and back. What a run calls (the reads, WriteStartOccupancy, ShowSweepLength) does nothing
// where the panel is not on the screen, so that a run needs none --
void ReadGridRates();  // KOn and KOff, and with them the title and the labels typed beside them
void WriteGridRates();
void ReadTableRates();   // all 380 cells into TableRate
void WriteTableRates();  // cells, marks, buttons and labels
void GetTableNames();    // the table's label fields into TableStateLabel

/// Shows the whole scheme again on every panel of this folder: grid, table, conductances, start occupancies,
/// labels.
void RefreshModelPanels();

/// Colours the links of the grid that depend on stimulus and shows their dissociation constants.
void RefreshLinks();

/// Shows StartOccupancy on its panel.
void WriteStartOccupancy();

/// Shows the total length of the sweep, NumPoints x ADInterval, with "%.3ems".
void ShowSweepLength();

}  // namespace zelvane
