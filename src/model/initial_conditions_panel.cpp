// InitialConditionsPanel: the proportion of channels in each state at time 0.
#include <numeric>

#include "model/model_events.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "model/scheme_panels.h"

namespace zelvane {
namespace {

constexpr char InitialConditionsPanelName[] = "InitialConditionsPanel";
constexpr char OccupanciesGroup[] = "occupancies";

constexpr char SumAboveOne[] = "Initial state starting proportions >1.0";

// Proportions are floats: ten times 0.1 and the final occupancies of a run add up to 1 within a few 1e-6
// only.
constexpr double SumTolerance = 1e-5;

void CloseInitialConditions() {
  ReadControls(InitialConditionsPanelName, OccupanciesGroup);
  HidePanel(InitialConditionsPanelName);
}

void ClearInitialConditions() {
  Model.StartOccupancy = {};
  WriteStartOccupancy();
}

// clang-format off
constexpr ControlDecl OccupancyControls[] = {
    {.name = "StartOccupancy[%d]", .kind = ControlKind::Number, .label = "State %d", .format = "%g",
     .command = "FxnStartOccupancy%d", .help = "Proportion of channels in state %d at the start of a simulation.",
     .first = 1, .last = MaxStates},
    {.name = "CloseStartOccupancy", .kind = ControlKind::Button, .label = "Close", .format = "",
     .command = "CloseInitialConditions", .action = Run<CloseInitialConditions>,
     .help = "Keep the proportions and return to the model."},
    {.name = "ClearStartOccupancy", .kind = ControlKind::Button, .label = "Clear", .format = "",
     .command = "ClearInitialConditions", .action = Run<ClearInitialConditions>,
     .help = "Set the proportions of all states to 0."},
};
// clang-format on

}  // namespace

void AddInitialConditionsPanel() {
  AddPanel(
      {.name = InitialConditionsPanelName,
       .title = "Starting occupancies",
       .close = CloseInitialConditions,
       .help =
           "Proportion of channels in each state at time 0. The proportions should add up to 1 at most."});
  AddControls(InitialConditionsPanelName, OccupanciesGroup, OccupancyControls);
  StartOccupancyChanged.Add(WriteStartOccupancy);
  ModelFileToSave.Add([] { ReadControls(InitialConditionsPanelName, OccupanciesGroup); });
}

void WriteStartOccupancy() {
  WriteControls(InitialConditionsPanelName, OccupanciesGroup);
}

void FxnStartState() {
  WriteStartOccupancy();
  ShowPanel(InitialConditionsPanelName);
  const double sum = std::accumulate(Model.StartOccupancy.begin() + 1, Model.StartOccupancy.end(), 0.0);
  if (sum > 1.0 + SumTolerance && Model.MultiSubunit == 0) MessagePopup(ErrorTitle, SumAboveOne);
}

}  // namespace zelvane
