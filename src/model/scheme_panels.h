// Functions that the panels of this folder share.
#pragma once

#include "screen/screen.h"

namespace zelvane {

// -- The panels, each in its file --
void AddMainPanel();  // the panel, the grid's controls, labels, drug names, Kd readouts
void AddDependencePanel();
void AddConductancePanel();
void AddInitialConditionsPanel();
void AddTableModelPanel();
void AddConstraintsPanel();
void AddLoopsPanel();

/// Makes the panels of the scheme follow the model file. They come before the panels of its other parts, see
/// model_events.h.
void FollowModelFile();

// -- Commands of the menu and of a panel --
void FxnMainModel();
void FxnTableModel();
void FxnGetGraphModel();
void FxnSetGraphModel();
void FxnClearModel();
void FxnClear2DModel();
void FxnClearTModel();
void FxnConductance();
void FxnStartState();
void FxnConstraintsButton();
void FxnLoopConstraintsButton();

inline constexpr char DependHelp[] =
    "Displays a panel that alows you to impose concentrations and voltage dependence.";

/// Open the dependence panel for one rate of the grid or of the table. If another rate is open, they store
/// it first.
void OpenDependenceOfGrid(int from, int to);
void OpenDependenceOfTable(int from, int to);

/// Stores the values of the dependence panel in its rate and hides the panel. Does nothing when the panel
/// is not open.
void CloseDependencePanel();

/// Stores the values of the dependence panel in its rate, and leaves it open. Does nothing when the panel is
/// not open.
void TakeDependencePanel();

/// Copies the store to the dependence panel if it is open.
void ReloadDependencePanel();

/// Shows the dependence of a rate on the button of its cell in the table.
void ShowTableDependence(int from, int to);

/// Shows the conductances beside the states of the grid.
void ShowGridConductances();

}  // namespace zelvane
