// TableModelPanel: the free table of 380 rates and their dependences.
#include <string>

#include "model/model.h"
#include "model/model_panels.h"
#include "model/scheme_panels.h"

namespace zelvane {
namespace {

constexpr char TablePanelName[] = "TableModelPanel";
constexpr char RatesGroup[] = "rates";
constexpr char ButtonsGroup[] = "dependences";
constexpr char LabelsGroup[] = "labels";
constexpr char CommandsGroup[] = "commands";

constexpr char MarkedColour[] = "mark";
constexpr char DependentColour[] = "green";

// Filled when the panel is declared, for the dimming rule. The diagonal has no cells.
StateTable<Control*> Cells{};
StateTable<Control*> Buttons{};

template <typename Function>
void ForEachCell(Function&& function) {
  for (int from = 1; from <= MaxStates; ++from) {
    for (int to = 1; to <= MaxStates; ++to) {
      if (from != to) function(from, to);
    }
  }
}

void FxnTableRate(const ControlEvent& /*event*/) {
  ReadTableRates();
}

void FxnTableDepend(const ControlEvent& event) {
  OpenDependenceOfTable(event.index / 100, event.index % 100);
}

void HideTable() {
  HidePanel(TablePanelName);
}

/// Adds the two controls of one cell, fxnkIIJJ and fxndepIIJJ. Their index is the code of the rate.
void AddCell(int from, int to) {
  const int code = RateCode(from, to);
  const std::string pair = FormatText("[%d][%d]", from, to);
  const std::string label = FormatText("%d to %d", from, to);
  const std::string rateName = "TableRate" + pair;
  const std::string rateHelp = FormatText(
      "Rate constant from state %d to state %d in s-1 or M-1s-1; 0 means no transition.", from, to);
  Cells[from][to] = &AddControl(TablePanelName, RatesGroup,
                                {.name = rateName.c_str(),
                                 .kind = ControlKind::Number,
                                 .label = label.c_str(),
                                 .unit = "/s",
                                 .command = "fxnk%04d",
                                 .action = FxnTableRate,
                                 .help = rateHelp.c_str()},
                                code);
  const std::string buttonName = "TableDepend" + pair;
  Buttons[from][to] = &AddControl(TablePanelName, ButtonsGroup,
                                  {.name = buttonName.c_str(),
                                   .kind = ControlKind::Button,
                                   .command = "fxndep%04d",
                                   .action = FxnTableDepend,
                                   .help = DependHelp},
                                  code);
}

/// Marks the cells with a rate.
void DimTablePanel() {
  ForEachCell([](int from, int to) {
    std::string& colour = Cells[from][to]->colour;
    const bool marked = Model.TableRate[from][to] != 0.0F;
    if (marked == colour.empty()) colour = marked ? MarkedColour : "";
  });
}

// clang-format off
constexpr ControlDecl LabelControls[] = {
    {.name = "TableStateLabel[%d]", .kind = ControlKind::Text, .label = "State %d", .format = "",
     .command = "FxnTableStateLabel%d", .help = "Label of state %d of the table, up to 19 characters.", .first = 1,
     .last = MaxStates},
};

constexpr ControlDecl CommandControls[] = {
    {.name = "QuitTable", .kind = ControlKind::Button, .label = "Close", .format = "", .command = "fxnquit",
     .action = Run<HideTable>, .help = "Hide the table. Runs still use the table."},
    {.name = "TableToMain", .kind = ControlKind::Button, .label = "Grid model", .format = "",
     .command = "FxnMainModel", .action = Run<FxnMainModel>, .help = "Show the grid and use it for runs."},
    {.name = "GetGraphModel", .kind = ControlKind::Button, .label = "Copy from grid", .format = "",
     .command = "FxnGetGraphModel", .action = Run<FxnGetGraphModel>,
     .help = "Copy rates, dependences and labels of the grid into the table."},
    {.name = "SetGraphModel", .kind = ControlKind::Button, .label = "Copy to grid", .format = "",
     .command = "FxnSetGraphModel", .action = Run<FxnSetGraphModel>,
     .help = "Copy rates, dependences and labels of the table into the grid. Rates between states that are not "
     "neighbours on the grid are not copied."},
    {.name = "ClearTable", .kind = ControlKind::Button, .label = "Clear table", .format = "",
     .command = "FxnClearTModel", .action = Run<FxnClearTModel>,
     .help = "Clear rates, dependences and labels of the table, and all conductances."},
    {.name = "TableConductance", .kind = ControlKind::Button, .label = "Conductances...", .format = "",
     .command = "FxnConductance", .action = Run<FxnConductance>, .help = "Single channel conductance (pS)."},
    {.name = "TableStartState", .kind = ControlKind::Button, .label = "Start state...", .format = "",
     .command = "FxnStartState", .action = Run<FxnStartState>,
     .help = "Set proportion of receptors in each state at start of simulation."},
};
// clang-format on

}  // namespace

void AddTableModelPanel() {
  Panel& panel = AddPanel({.name = TablePanelName,
                           .title = "Table model",
                           .close = HideTable,
                           .help = "The scheme as a table. A rate leads from the state of its row to the "
                                   "state of its column."});
  AddControls(TablePanelName, LabelsGroup, LabelControls);
  ForEachCell(AddCell);
  AddControls(TablePanelName, CommandsGroup, CommandControls);
  panel.dim.push_back(DimTablePanel);  // last, because the rule needs the cells
}

void ShowTableDependence(int from, int to) {
  const DependenceTables& tables = Model.TableDepend;
  std::string what;
  for (int drug = 1; drug <= MaxDrugs; ++drug) {
    if (tables.Drug[drug][from][to] != 0) what += std::to_string(drug);
  }
  if (tables.Volt[from][to] != 0) what += "V";
  Control& button = *Buttons[from][to];
  button.colour = what.empty() ? "" : DependentColour;
  button.label = what.empty() ? "-" : what;
}

void ReadTableRates() {
  ReadControls(TablePanelName, RatesGroup);
}

void WriteTableRates() {
  ForEachCell(ShowTableDependence);
  WriteControls(TablePanelName, LabelsGroup);
  WriteControls(TablePanelName, RatesGroup);
}

void GetTableNames() {
  ReadControls(TablePanelName, LabelsGroup);
}

}  // namespace zelvane
