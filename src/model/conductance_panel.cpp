// ConductancePanel: the single-channel conductance of every state.
#include "model/model_events.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "model/scheme_panels.h"

namespace zelvane {
namespace {

constexpr char ConductancePanelName[] = "ConductancePanel";
constexpr char ConductancesGroup[] = "conductances";

void SetConductances() {
  ReadControls(ConductancePanelName, ConductancesGroup);
  ShowGridConductances();
}

void CloseConductance() {
  SetConductances();
  HidePanel(ConductancePanelName);
}

// clang-format off
constexpr ControlDecl ConductanceControls[] = {
    {.name = "StateConductance[%d]", .kind = ControlKind::Number, .label = "State %d", .unit = "pS", .format = "%g",
     .command = "FxnConductanceSet", .action = Run<SetConductances>,
     .help = "Single channel conductance of state %d (pS).", .first = 1, .last = MaxStates},
    {.name = "CloseConductances", .kind = ControlKind::Button, .label = "Close", .format = "",
     .command = "CloseConductance", .action = Run<CloseConductance>,
     .help = "Keep the conductances and return to the model."},
};
// clang-format on

}  // namespace

void AddConductancePanel() {
  AddPanel({.name = ConductancePanelName,
            .title = "Conductance of each state",
            .close = CloseConductance,
            .help = "Single-channel conductances. States with a conductance above 0 show it on the grid."});
  AddControls(ConductancePanelName, ConductancesGroup, ConductanceControls);
  ModelFileToSave.Add(SetConductances);
}

void FxnConductance() {
  WriteControls(ConductancePanelName, ConductancesGroup);
  ShowPanel(ConductancePanelName);
}

}  // namespace zelvane
