// Commands on the whole scheme and their menu: the visible form, transfers between the forms, clearing.
#include "model/model.h"
#include "model/model_panels.h"
#include "model/scheme_panels.h"

namespace zelvane {
namespace {

constexpr char TablePanelName[] = "TableModelPanel";

// -- Questions --
constexpr char NoTitle[] = "";
constexpr char ClearBothQuestion[] = "Clear all parameters in BOTH 2D and 3D models?";
constexpr char ClearGridQuestion[] = "Clear all parameters in 2D model?";
constexpr char ClearTableQuestion[] =
    "Are you sure you want to clear all Table rate constants and concentation dependence?";

constexpr char RatesLeftBehind[] = "All rate constants for 3D model do not transfer to 2D model.";

void ShowModel() {
  ShowTask(MainPanelName);
}

// clang-format off
constexpr MenuDecl ModelMenu[] = {
    {"Model/Edit Model...",             "Model",            ShowModel},
    {"Model/Grid Model",                "FxnMainModel",     FxnMainModel},
    {"Model/Table Model",               "FxnTableModel",    FxnTableModel},
    {"Model/Copy Grid to Table",        "FxnGetGraphModel", FxnGetGraphModel},
    {"Model/Copy Table to Grid",        "FxnSetGraphModel", FxnSetGraphModel},
    {"Model/Conductances...",           "FxnConductance",   FxnConductance},
    {"Model/Starting Occupancies...",   "FxnStartState",    FxnStartState},
    {"Model/Rate Constraints...",       "FxnConstraintsButton",     FxnConstraintsButton},
    {"Model/Loop Constraints...",       "FxnLoopConstraintsButton", FxnLoopConstraintsButton},
    {"Model/Clear Grid and Table...",   "FxnClearModel",    FxnClearModel},
    {"Model/Clear Grid...",             "FxnClear2DModel",  FxnClear2DModel},
    {"Model/Clear Table...",            "FxnClearTModel",   FxnClearTModel},
};
// clang-format on

/// Closes every dialog, as its user would.
void CloseDialogs() {
  for (Panel& panel : Screen.panels) {
    if (!panel.tag.empty() || panel.overTask || !panel.visible || panel.name == TablePanelName) continue;
    if (panel.close != nullptr)
      panel.close();
    else
      HidePanel(panel.name);
  }
}

/// Reads what is typed on both forms, so that showing the store again loses nothing.
void ReadBothForms() {
  ReadGridRates();
  ReadTableRates();
  GetTableNames();
}

void RefreshGrid() {
  WriteGridRates();
  ShowGridConductances();
}

}  // namespace

void ReadActiveRates() {
  TakeDependencePanel();
  if (Model.ModelIs2D != 0) {
    ReadGridRates();
  } else {
    ReadTableRates();
  }
}

void FxnMainModel() {
  CloseDependencePanel();
  if (Model.ModelIs2D == 0) {
    ReadTableRates();
    Model.ModelIs2D = 1;
    RestoreGridDependences();
    RefreshGrid();
  }
  HidePanel(TablePanelName);
  ShowTask(MainPanelName);
}

void FxnTableModel() {
  CloseDialogs();
  if (Model.ModelIs2D == 1) {
    ReadGridRates();
    Model.ModelIs2D = 0;
    WriteTableRates();
  }
  ShowTask(MainPanelName);  // run settings and response stay visible below the table
  ShowPanel(TablePanelName);
}

void FxnGetGraphModel() {
  CloseDependencePanel();
  ReadGridRates();
  CopyGridToTable();
  WriteTableRates();
}

void FxnSetGraphModel() {
  CloseDependencePanel();
  ReadBothForms();
  const bool ratesLeft = CopyTableToGrid();
  if (ratesLeft) MessagePopup(WarningTitle, RatesLeftBehind);
  Model.ModelIs2D = 1;
  HidePanel(TablePanelName);
  RefreshModelPanels();
}

void FxnClearModel() {
  if (!ConfirmPopup(NoTitle, ClearBothQuestion)) return;
  ReadBothForms();
  ClearModel();
  RefreshModelPanels();
}

void FxnClear2DModel() {
  if (!ConfirmPopup(NoTitle, ClearGridQuestion)) return;
  ReadBothForms();
  ClearGridModel();
  RefreshModelPanels();
}

void FxnClearTModel() {
  if (!ConfirmPopup(NoTitle, ClearTableQuestion)) return;
  ReadBothForms();
  ClearTableModel();
  RefreshModelPanels();
}

void AddModelPanels() {
  AddMainPanel();
  AddDependencePanel();
  AddConductancePanel();
  AddInitialConditionsPanel();
  AddTableModelPanel();
  AddConstraintsPanel();
  AddLoopsPanel();
  AddMenu(ModelMenu);
  FollowModelFile();
}

}  // namespace zelvane
