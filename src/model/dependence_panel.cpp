// DependencePanel: the effect of the stimulus on one rate, of the grid or of the table.
#include <algorithm>
#include <limits>
#include <string>

#include "kinetics/rate_factor.h"
#include "model/model.h"
#include "model/model_panels.h"
#include "model/scheme_panels.h"

namespace zelvane {
namespace {

constexpr char DependencePanelName[] = "DependencePanel";
constexpr char LabelsGroup[] = "labels";
constexpr char SettingsGroup[] = "settings";

// DependVolt is a pair of switches of which at most one is on. Only a file can switch the second one on. It
// has no effect, and a rate keeps it until a command takes over its panel.
constexpr int SecondVoltSwitch = 2;

/// The rate for which the panel is open; `from` is 0 while it is closed.
struct OpenRate {
  int from = 0;
  int to = 0;
  bool ofTable = false;
};
OpenRate Open;

/// Returns the number of a state of the open form, with its label if that says more.
std::string StateName(int state) {
  const std::string number = FormatText("%d", state);
  const std::string& label = (Open.ofTable ? Model.TableStateLabel : Model.StateLabel)[state];
  return label.empty() || label == number ? number : number + " (" + label + ")";
}

DependenceTables& OpenTables() {
  return Open.ofTable ? Model.TableDepend : GridDependences();
}

std::string DrugControl(int drug) {
  return FormatText("DependDrug[%d]", drug);
}

/// Returns a number of the panel as the store keeps it. Limits a typed value to the range of a float.
float FloatOnPanel(std::string_view control) {
  constexpr auto largest = static_cast<double>(std::numeric_limits<float>::max());
  return static_cast<float>(std::clamp(ControlNumber(control), -largest, largest));
}

void ShowCoefficient() {
  const double c = VoltageCoefficient(FloatOnPanel("DependSteepness"), FloatOnPanel("DependTemperature"));
  ShowNumber("DependGrowth", c);
  ShowNumber("DependEfold", 1.0 / c);
}

void FxnVolt(const ControlEvent& /*event*/) {
  Model.Temperature = FloatOnPanel("DependTemperature");
  ShowCoefficient();
}

// clang-format off
constexpr ControlDecl LabelControls[] = {
    {.name = "DrugLabel[%d]", .kind = ControlKind::Text, .label = "Drug %d", .format = "",
     .command = "FxnDrugLabel%d", .help = "Name of drug %d, up to 31 characters. All rates use the same name.",
     .first = 1, .last = MaxDrugs},
};

constexpr ControlDecl SettingControls[] = {
    {.name = "DependDrug[%d]", .kind = ControlKind::Switch, .label = "Drug %d", .unit = "M", .format = "%g",
     .command = "FxnDependDrug%d", .help = "Multiply the rate by the concentration of drug %d.", .first = 1,
     .last = MaxDrugs, .choices = "off|on"},
    {.name = "DependVolt", .kind = ControlKind::Choice, .label = "Voltage", .format = "%g",
     .command = "FxnDependVolt", .help = "Multiply the rate by an exponential of the voltage.",
     .choices = "none|exponential|second switch, without effect"},
    {.name = "DependSteepness", .kind = ControlKind::Number, .label = "Steepness", .unit = "e", .format = "%g",
     .command = "FxnVolt", .action = FxnVolt, .help = "Constant to define voltage dependence."},
    {.name = "DependTemperature", .kind = ControlKind::Number, .label = "Temperature", .unit = "\u00b0C",
     .format = "%g", .command = "FxnVolt", .action = FxnVolt, .help = "Constant to define voltage dependence."},
    {.name = "DependGrowth", .kind = ControlKind::Readout, .format = "Voltage    kv=k exp(%.5f Vh)",
     .help = "Formula of the rate at voltage Vh (volts), with the coefficient of the voltage."},
    {.name = "DependEfold", .kind = ControlKind::Readout, .format = "Voltage    kv=k exp(Vh / %.5f)",
     .help = "Formula of the rate at voltage Vh (volts), with the voltage that changes the rate e-fold."},
    {.name = "DependCode", .kind = ControlKind::Readout, .label = "Rate", .format = "%.0f",
     .help = "Code of the rate: 100 times its first state plus its second state."},
    {.name = "DependRate", .kind = ControlKind::Readout, .label = "Rate", .format = "",
     .help = "The rate on this panel: its first state and its second state."},
    {.name = "CloseDependence", .kind = ControlKind::Button, .label = "Close", .format = "", .command = "FxnExitConc",
     .action = Run<CloseDependencePanel>, .help = "Return to Main Modelling Panel."},
};
// clang-format on

void OpenFor(const OpenRate& rate) {
  CloseDependencePanel();
  Open = rate;
  ReloadDependencePanel();
  ShowPanel(DependencePanelName);
}

}  // namespace

void AddDependencePanel() {
  Open = OpenRate{};
  AddPanel({.name = DependencePanelName,
            .title = "Dependence of a rate on the stimulus",
            .close = CloseDependencePanel,
            .help = "Dependence of one rate on drugs and voltage."});
  AddControls(DependencePanelName, LabelsGroup, LabelControls);
  AddControls(DependencePanelName, SettingsGroup, SettingControls);
  SetVisible("DependCode", false);  // DependRate shows it in words
}

void OpenDependenceOfGrid(int from, int to) {
  OpenFor({from, to, false});
}

void OpenDependenceOfTable(int from, int to) {
  OpenFor({from, to, true});
}

void ReloadDependencePanel() {
  WriteControls(DependencePanelName, LabelsGroup);
  if (Open.from == 0) return;
  const DependenceTables& tables = OpenTables();
  for (int drug = 1; drug <= MaxDrugs; ++drug) {
    ShowNumber(DrugControl(drug), tables.Drug[drug][Open.from][Open.to] != 0 ? 1.0 : 0.0);
  }
  const int volt = tables.Volt[Open.from][Open.to];
  ShowNumber("DependVolt", volt == 0 || volt == 1 ? volt : SecondVoltSwitch);
  ShowNumber("DependSteepness", static_cast<double>(tables.Steepness[Open.from][Open.to]));
  ShowNumber("DependTemperature", static_cast<double>(Model.Temperature));
  ShowNumber("DependCode", RateCode(Open.from, Open.to));
  ShowText("DependRate",
           FormatText("from %s to %s", StateName(Open.from).c_str(), StateName(Open.to).c_str()));
  ShowCoefficient();
}

void TakeDependencePanel() {
  if (Open.from == 0) return;
  const auto [from, to, ofTable] = Open;
  DependenceTables& tables = OpenTables();
  for (int drug = 1; drug <= MaxDrugs; ++drug) {
    tables.Drug[drug][from][to] = ControlNumber(DrugControl(drug)) != 0.0 ? 1 : 0;
  }
  tables.Volt[from][to] = ControlNumber("DependVolt") == 1.0 ? 1 : 0;
  tables.Steepness[from][to] = FloatOnPanel("DependSteepness");
  tables.Range[from][to] = FloatOnPanel("DependTemperature");  // its place in the file; no rate uses it
  ReadControls(DependencePanelName, LabelsGroup);
  if (ofTable) {
    Model.Temperature = FloatOnPanel("DependTemperature");
    ShowTableDependence(from, to);
  } else {
    RefreshLinks();
  }
}

void CloseDependencePanel() {
  HidePanel(DependencePanelName);
  TakeDependencePanel();
  Open = OpenRate{};
}

}  // namespace zelvane
