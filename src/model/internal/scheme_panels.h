// What the panels of this folder share among themselves.
#pragma once

#include "screen/screen.h"

namespace zelvane {

/// A command of a menu as the action of a button.
template <void (*Command)()>
void AsAction(const ControlEvent& /*event*/) {
  Command();
}

// -- Commands that stand in the menu and on a panel --
void FxnMainModel();
void FxnTableModel();
void FxnGetGraphModel();
void FxnSetGraphModel();
void FxnClearModel();
void FxnClear2DModel();
void FxnClearTModel();
void FxnConductance();
void FxnStartState();

inline constexpr char DependHelp[] =
    "Displays a panel that alows you to impose concentrations and voltage dependence.";

/// Opens the dependence panel for one rate: of the grid, or of the table. A rate that is open already is
/// stored first.
void OpenDependenceOfGrid(int from, int to);
void OpenDependenceOfTable(int from, int to);

/// Stores what the dependence panel shows in the rate it is open for, and hides it. Nothing when it is not
/// open.
void CloseDependencePanel();

/// Shows the store again on the dependence panel while it is open.
void ReloadDependencePanel();

/// Shows on a cell's button of the table what its rate depends on.
void ShowTableDependence(int from, int to);

/// Shows the conductances beside the states of the grid.
void ShowGridConductances();

}  // namespace zelvane
