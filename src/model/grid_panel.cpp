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
    {"StateOn[%d]", ControlKind::Switch, "State %d", "", "%g", "OnOff_State_%d", FxnStateOn,
     "Make State %d available for occupancy", 1, MaxStates, "off|on"},
};

constexpr ControlDecl TextControls[] = {
    {"ModelTitle",     ControlKind::Text, "Title",    "", "", "FxnModelTitle", nullptr,
     "Title of the model, one line of up to 299 characters. It is saved with the model."},
    {"StateLabel[%d]", ControlKind::Text, "Label %d", "", "", "FxnStateLabel%d", nullptr,
     "Label of state %d, up to 19 characters.", 1, MaxStates},
};

constexpr ControlDecl RateControls[] = {
    {"KOn[%d]",  ControlKind::Number, "K%d on",  "/s", "%g", "FxnK%don",  FxnRate,
     "Forward rate constant in s-1 or M-1s-1",  1, MaxLinks},
    {"KOff[%d]", ControlKind::Number, "K%d off", "/s", "%g", "FxnK%doff", FxnRate,
     "Backward rate constant in s-1 or M-1s-1", 1, MaxLinks},
};

constexpr ControlDecl LinkRowControls[] = {
    {"DependOn[%d]",  ControlKind::Button,  "K%d on...",  "", "", "FxnDepend%dOn",  FxnDependOn,  DependHelp,
     1, MaxLinks},
    {"DependOff[%d]", ControlKind::Button,  "K%d off...", "", "", "FxnDepend%dOff", FxnDependOff, DependHelp,
     1, MaxLinks},
    {"Kd[%d]",        ControlKind::Readout, "Kd%d",       "", "Kd=%.1eM", "", nullptr,
     "Dissociation constant of link K%d. It is shown when one of its rates depends on the stimulus.", 1, MaxLinks},
};

constexpr ControlDecl ReadoutControls[] = {
    {"GridConductance[%d]", ControlKind::Readout, "", "", "%.0fpS\n", "", nullptr,
     "Conductance of state %d. It is shown when it is above 0.", 1, MaxStates},
    {"ModelForm",   ControlKind::Readout, "Form",   "",   "",       "", nullptr,
     "Form of the scheme for the next run: the grid (2D) or the table (3D)."},
    {"SweepLength", ControlKind::Readout, "Length", "",   "%.3ems", "", nullptr,
     "Length of the sweep: number of points times interval."},
};

constexpr ControlDecl FileNameControls[] = {
    {"ModelFileName", ControlKind::Readout, "Model", "", "", "FxnConfigFilename", nullptr,
     "Name of configuration file currently loaded (blank if none loaded)."},
};

constexpr ControlDecl CommandControls[] = {
    {"OpenConductance", ControlKind::Button, "Conductances...", "", "", "FxnConductance", Run<FxnConductance>,
     "Single channel conductance (pS)."},
    {"OpenStartState",  ControlKind::Button, "Start state...",  "", "", "FxnStartState",  Run<FxnStartState>,
     "Set proportion of receptors in each state at start of simulation."},
    {"ShowTableForm",   ControlKind::Button, "Table model",     "", "", "FxnTableModel",  Run<FxnTableModel>,
     "Show the table and use it for runs. In the table any state can lead to any other."},
    {"ShowGridForm",    ControlKind::Button, "Grid model",      "", "", "FxnMainModel",   Run<FxnMainModel>,
     "Show the grid and use it for runs."},
    {"ClearGridForm",   ControlKind::Button, "Clear grid",      "", "", "FxnClear2DModel", Run<FxnClear2DModel>,
     "Clear the grid: rates, dependences, conductances, states, labels and title. The table does not "
     "change."},
    {"ClearBothForms",  ControlKind::Button, "Clear all",       "", "", "FxnClearModel",  Run<FxnClearModel>,
     "Clear the grid and the table: rates, dependences, conductances, states, labels and title."},
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
        DependsOnStimulus(Model.Depend, low, high) || DependsOnStimulus(Model.Depend, high, low);
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
  ReadControls(MainPanelName, RatesGroup);
  ReadControls(MainPanelName, TextsGroup);
}

void WriteGridRates() {
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
    } else if (!DependsOnStimulus(Model.Depend, low, high) && !DependsOnStimulus(Model.Depend, high, low)) {
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
