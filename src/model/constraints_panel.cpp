// ConstraintsPanel: rates that follow other rates.
#include "model/constraints_store.h"
#include "model/model_events.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "model/scheme_panels.h"
#include "model/state_number_panels.h"

namespace zelvane {
namespace {

constexpr char ConstraintsPanelName[] = "ConstraintsPanel";
constexpr char RowsGroup[] = "rows";
constexpr char CommandsGroup[] = "commands";

void FxnConstraintsDone() {
  TakeConstraintsPanel();
  HidePanel(ConstraintsPanelName);
}

constexpr auto Number = ControlKind::Number;

// clang-format off
constexpr ControlDecl RowControls[] = {
    {.name = "RateConstraint[%d].enabled", .kind = ControlKind::Switch, .label = "%d", .format = "%.0f",
     .help = "Apply rate constraint %d during a fit. A row that is off keeps its settings.", .first = 1,
     .last = MaxRateConstraints, .choices = "off|on"},
    {.name = "RateConstraint[%d].targetFrom", .kind = Number, .label = "Target from", .format = "%.0f",
     .command = IndexCommand, .action = KeepStateNumber, .help = IndexHelp, .first = 1, .last = MaxRateConstraints},
    {.name = "RateConstraint[%d].targetTo", .kind = Number, .label = "Target to", .format = "%.0f",
     .command = IndexCommand, .action = KeepStateNumber, .help = IndexHelp, .first = 1, .last = MaxRateConstraints},
    {.name = "RateConstraint[%d].sourceFrom", .kind = Number, .label = "Source from", .format = "%.0f",
     .command = IndexCommand, .action = KeepStateNumber, .help = IndexHelp, .first = 1, .last = MaxRateConstraints},
    {.name = "RateConstraint[%d].sourceTo", .kind = Number, .label = "Source to", .format = "%.0f",
     .command = IndexCommand, .action = KeepStateNumber, .help = IndexHelp, .first = 1, .last = MaxRateConstraints},
    {.name = "RateConstraint[%d].operation", .kind = ControlKind::Choice, .label = "Operation", .format = "%.0f",
     .help = "How the target of row %d follows its source rate, with the constant c of the row.", .first = 1,
     .last = MaxRateConstraints, .choices = "source + c|c - source|source \u00d7 c|c / source"},
    {.name = "RateConstraint[%d].value", .kind = Number, .label = "c", .format = "%g",
     .help = "Constant c of rate constraint %d.", .first = 1, .last = MaxRateConstraints},
};
constexpr ControlDecl CommandControls[] = {
    {.name = "ConstraintsDone", .kind = ControlKind::Button, .label = "Done", .format = "",
     .command = "FxnConstraintsDone", .action = Run<FxnConstraintsDone>,
     .help = "Exit panle for setting constraints."},
};
// clang-format on

}  // namespace

void AddConstraintsPanel() {
  AddPanel({.name = ConstraintsPanelName,
            .title = "Rate constraints",
            .close = FxnConstraintsDone,
            .help =
                "Each row that is on sets its target rate from its source rate. A fit applies the rows in "
                "order, at every trial, and does not vary the targets."});
  AddControls(ConstraintsPanelName, RowsGroup, RowControls);
  AddControls(ConstraintsPanelName, CommandsGroup, CommandControls);
  ModelFileToSave.Add(TakeConstraintsPanel);
}

void FxnConstraintsButton() {
  WriteControls(ConstraintsPanelName, RowsGroup);
  ShowPanel(ConstraintsPanelName);
}

void TakeConstraintsPanel() {
  KeepStateNumbers(ConstraintsPanelName);
  ReadControls(ConstraintsPanelName, RowsGroup);
}

}  // namespace zelvane
