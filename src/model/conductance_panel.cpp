// ConductancePanel: the single-channel conductance of every state.
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
    {"StateConductance[%d]", ControlKind::Number, "State %d", "pS", "%g", "FxnConductanceSet", Run<SetConductances>,
     "Single channel conductance of state %d (pS).", 1, MaxStates},
    {"CloseConductances",    ControlKind::Button, "Close",    "",   "",   "CloseConductance",  Run<CloseConductance>,
     "Keep the conductances and return to the model."},
};
// clang-format on

}  // namespace

void AddConductancePanel() {
  AddPanel({.name = ConductancePanelName,
            .title = "Conductance of each state",
            .close = CloseConductance,
            .help = "Single-channel conductances. States with a conductance above 0 show it on the grid."});
  AddControls(ConductancePanelName, ConductancesGroup, ConductanceControls);
}

void FxnConductance() {
  WriteControls(ConductancePanelName, ConductancesGroup);
  ShowPanel(ConductancePanelName);
}

}  // namespace zelvane
