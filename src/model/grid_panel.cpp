// MainPanel with the grid: states, links with their rates, dependences and dissociation constants, title and
// names.
#include <array>
#include <string>

#include "model/model.h"
#include "model/model_panels.h"
#include "model/scheme_panels.h"

namespace zelvane {
namespace {

constexpr char StatesGroup[] = "states";
constexpr char RatesGroup[] = "rates";
constexpr char TextsGroup[] = "texts";  // title and labels, which the user types beside the rates
constexpr char LinksGroup[] = "links";
constexpr char CommandsGroup[] = "scheme";

constexpr char DependentColour[] = "green";

/// The controls of one link. Filled when the panel is declared, because the dimming rule runs after every
/// commit and must not search for 155 names.
struct LinkControls {
  Control* on = nullptr;
  Control* off = nullptr;
  Control* kd = nullptr;
  Control* dependOn = nullptr;
  Control* dependOff = nullptr;
};
std::array<LinkControls, MaxLinks + 1> LinksOnPanel;
Control* FormOnPanel = nullptr;

void FxnStateOn(const ControlEvent& /*event*/) {
  RefreshLinks();
}

void FxnRate(const ControlEvent& /*event*/) {
  ReadGridRates();
  RefreshLinks();
}

void FxnDependOn(const ControlEvent& event) {
  const auto [low, high] = LinkTable[event.index];
  OpenDependenceOfGrid(low, high);
}

void FxnDependOff(const ControlEvent& event) {
  const auto [low, high] = LinkTable[event.index];
  OpenDependenceOfGrid(high, low);
}

// clang-format off
constexpr ControlDecl StateControls[] = {
    {.name = "StateOn[%d]", .kind = ControlKind::Switch, .label = "State %d", .format = "%g",
     .command = "OnOff_State_%d", .action = FxnStateOn, .help = "Make State %d available for occupancy", .first = 1,
     .last = MaxStates, .choices = "off|on"},
};

constexpr ControlDecl TextControls[] = {
    {.name = "ModelTitle", .kind = ControlKind::Text, .label = "Title", .format = "", .command = "FxnModelTitle",
     .help = "Title of the model, one line of up to 299 characters. It is saved with the model."},
    {.name = "StateLabel[%d]", .kind = ControlKind::Text, .label = "Label %d", .format = "",
     .command = "FxnStateLabel%d", .help = "Label of state %d, up to 19 characters.", .first = 1, .last = MaxStates},
};

constexpr ControlDecl RateControls[] = {
    {.name = "KOn[%d]", .kind = ControlKind::Number, .label = "K%d on", .unit = "/s", .format = "%g",
     .command = "FxnK%don", .action = FxnRate, .help = "Forward rate constant in s-1 or M-1s-1", .first = 1,
     .last = MaxLinks},
    {.name = "KOff[%d]", .kind = ControlKind::Number, .label = "K%d off", .unit = "/s", .format = "%g",
     .command = "FxnK%doff", .action = FxnRate, .help = "Backward rate constant in s-1 or M-1s-1", .first = 1,
     .last = MaxLinks},
};

constexpr ControlDecl LinkRowControls[] = {
    {.name = "DependOn[%d]", .kind = ControlKind::Button, .label = "K%d on...", .format = "",
     .command = "FxnDepend%dOn", .action = FxnDependOn, .help = DependHelp, .first = 1, .last = MaxLinks},
    {.name = "DependOff[%d]", .kind = ControlKind::Button, .label = "K%d off...", .format = "",
     .command = "FxnDepend%dOff", .action = FxnDependOff, .help = DependHelp, .first = 1, .last = MaxLinks},
    {.name = "Kd[%d]", .kind = ControlKind::Readout, .label = "Kd%d", .format = "Kd=%.1eM",
     .help = "Dissociation constant of link K%d. It is shown when one of its rates depends on the stimulus.",
     .first = 1, .last = MaxLinks},
};

constexpr ControlDecl ReadoutControls[] = {
    {.name = "GridConductance[%d]", .kind = ControlKind::Readout, .format = "%.0fpS\n",
     .help = "Conductance of state %d. It is shown when it is above 0.", .first = 1, .last = MaxStates},
    {.name = "ModelForm", .kind = ControlKind::Readout, .label = "Form", .format = "",
     .help = "Form of the scheme for the next run: the grid (2D) or the table (3D)."},
    {.name = "SweepLength", .kind = ControlKind::Readout, .label = "Length", .format = "%.3ems",
     .help = "Length of the sweep: number of points times interval."},
};

constexpr ControlDecl FileNameControls[] = {
    {.name = "ModelFileName", .kind = ControlKind::Readout, .label = "Model", .format = "",
     .command = "FxnConfigFilename", .help = "Name of configuration file currently loaded (blank if none loaded)."},
};

constexpr ControlDecl CommandControls[] = {
    {.name = "OpenConductance", .kind = ControlKind::Button, .label = "Conductances...", .format = "",
     .command = "FxnConductance", .action = Run<FxnConductance>, .help = "Single channel conductance (pS)."},
    {.name = "OpenStartState", .kind = ControlKind::Button, .label = "Start state...", .format = "",
     .command = "FxnStartState", .action = Run<FxnStartState>,
     .help = "Set proportion of receptors in each state at start of simulation."},
    {.name = "OpenConstraints", .kind = ControlKind::Button, .label = "Rate constraints...", .format = "",
     .command = "FxnConstraintsButton", .action = Run<FxnConstraintsButton>,
     .help = "Set constraints for individual rate constants."},
    {.name = "OpenLoops", .kind = ControlKind::Button, .label = "Loops...", .format = "",
     .command = "FxnLoopConstraintsButton", .action = Run<FxnLoopConstraintsButton>,
     .help = "Set loop constraints so that models obey microscopic reversibility."},
    {.name = "ShowTableForm", .kind = ControlKind::Button, .label = "Table model", .format = "",
     .command = "FxnTableModel", .action = Run<FxnTableModel>,
     .help = "Show the table and use it for runs. In the table any state can lead to any other."},
    {.name = "ShowGridForm", .kind = ControlKind::Button, .label = "Grid model", .format = "",
     .command = "FxnMainModel", .action = Run<FxnMainModel>, .help = "Show the grid and use it for runs."},
    {.name = "ClearGridForm", .kind = ControlKind::Button, .label = "Clear grid", .format = "",
     .command = "FxnClear2DModel", .action = Run<FxnClear2DModel>,
     .help = "Clear the grid: rates, dependences, conductances, states, labels and title. The table does not "
     "change."},
    {.name = "ClearBothForms", .kind = ControlKind::Button, .label = "Clear all", .format = "",
     .command = "FxnClearModel", .action = Run<FxnClearModel>,
     .help = "Clear the grid and the table: rates, dependences, conductances, states, labels and title."},
};
// clang-format on

void FindDimmedControls() {
  FormOnPanel = &ControlNamed("ModelForm");
  for (int n = 1; n <= MaxLinks; ++n) {
    const std::string index = FormatText("[%d]", n);
    LinksOnPanel[n] = {&ControlNamed("KOn" + index), &ControlNamed("KOff" + index),
                       &ControlNamed("Kd" + index), &ControlNamed("DependOn" + index),
                       &ControlNamed("DependOff" + index)};
  }
}

/// Shows a link when both of its states are on, in green when one of its rates depends on the stimulus.
void DimMainPanel() {
  for (int n = 1; n <= MaxLinks; ++n) {
    const auto [low, high] = LinkTable[n];
    const LinkControls& link = LinksOnPanel[n];
    const bool present = Model.StateOn[low] != 0 && Model.StateOn[high] != 0;
    const bool dependent =
        DependsOnStimulus(GridDependences(), low, high) || DependsOnStimulus(GridDependences(), high, low);
    for (Control* control : {link.on, link.off, link.kd, link.dependOn, link.dependOff})
      control->visible = present;
    for (Control* control : {link.on, link.off, link.kd}) control->colour = dependent ? DependentColour : "";
  }
  FormOnPanel->text = Model.ModelIs2D == 1 ? "Grid (2D)" : "Table (3D)";
}

/// Clears the dissociation constants. A readout keeps its constant when a rate becomes 0, but not for another
/// scheme.
void ClearLinkReadouts() {
  for (int n = 1; n <= MaxLinks; ++n) LinksOnPanel[n].kd->text.clear();
}

/// Shows the monitored states. Their switches are beside the graph and are declared with it.
void ShowMonitoredStates() {
  for (int s = 1; s <= MaxStates; ++s) {
    const std::string name = FormatText("StateMonitored[%d]", s);
    if (FindControl(name) != nullptr) ShowNumber(name, Model.StateMonitored[s]);
  }
}

}  // namespace

void AddMainPanel() {
  Panel& panel = AddPanel({.name = MainPanelName,
                           .title = "Model",
                           .tag = "MN",
                           .help = "The scheme on its grid, the run settings and the monitored response."});
  panel.maximised = true;
  AddControls(MainPanelName, StatesGroup, StateControls);
  AddControls(MainPanelName, TextsGroup, TextControls);
  AddControls(MainPanelName, RatesGroup, RateControls);
  AddControls(MainPanelName, LinksGroup, LinkRowControls);
  AddControls(MainPanelName, LinksGroup, ReadoutControls);
  AddControls(MainPanelName, StatesGroup, FileNameControls);
  AddControls(MainPanelName, CommandsGroup, CommandControls);
  FindDimmedControls();
  panel.dim.push_back(DimMainPanel);  // last, because the rule needs the controls
}

void ReadGridRates() {
  ReadControls(MainPanelName, StatesGroup);
  ReadControls(MainPanelName, RatesGroup);
  ReadControls(MainPanelName, TextsGroup);
}

void WriteGridRates() {
  WriteControls(MainPanelName, StatesGroup);
  WriteControls(MainPanelName, RatesGroup);
  RefreshLinks();
}

void RefreshLinks() {
  for (int n = 1; n <= MaxLinks; ++n) {
    const auto [low, high] = LinkTable[n];
    Control& readout = *LinksOnPanel[n].kd;
    if (const auto kd = LinkKd(n)) {
      readout.number = *kd;
      readout.text = FormatNumber(readout.format, *kd);
    } else if (!DependsOnStimulus(GridDependences(), low, high) &&
               !DependsOnStimulus(GridDependences(), high, low)) {
      readout.text.clear();
    }  // a dependent link with a rate of 0 has no constant: the readout keeps its text
  }
  WriteControls(MainPanelName, LinksGroup);  // shows the records above again
}

void ShowGridConductances() {
  for (int s = 1; s <= MaxStates; ++s) {
    Control& readout = ControlNamed(FormatText("GridConductance[%d]", s));
    readout.number = static_cast<double>(Model.StateConductance[s]);
    readout.text = readout.number > 0.0 ? FormatNumber(readout.format, readout.number) : std::string{};
  }
  WriteControls(MainPanelName, LinksGroup);
}

void ShowSweepLength() {
  ShowNumber("SweepLength", static_cast<double>(Model.NumPoints) * static_cast<double>(Model.ADInterval));
}

void RefreshModelPanels() {
  WriteControls(MainPanelName, StatesGroup);
  WriteControls(MainPanelName, TextsGroup);
  ShowMonitoredStates();
  ClearLinkReadouts();
  WriteGridRates();
  ShowGridConductances();
  ShowSweepLength();
  WriteControls("ConductancePanel", "conductances");
  WriteStartOccupancy();
  WriteTableRates();
  ReloadDependencePanel();
}

}  // namespace zelvane
