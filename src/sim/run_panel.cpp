// Run settings, run, stop and refresh on MainPanel, with the graph of the monitored response.
#include "sim/run_panel.h"

#include <algorithm>
#include <array>
#include <optional>

#include "io/trace_store.h"
#include "model/model.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "screen/screen.h"
#include "sim/result_store.h"
#include "sim/run.h"
#include "stimulus/stimulus.h"

namespace zelvane {
namespace {

constexpr char MainPanelName[] = "MainPanel";
constexpr char RunGroup[] = "run";
constexpr char SimulatorWords[] = "Fixed-step integrator|Monte Carlo|Adaptive integrator";
constexpr char UnitWords[] =
    "Number of Channels Open|Total Conductance pS|Macroscopic Current pA|Probability";

/// Titles of the units that recordings have beside those, from TraceMicrovolts on.
constexpr std::array RecordedUnitTitles = {"Potential uV", "Potential mV", "Macroscopic Current nA"};

constexpr char LengthTitle[] = "! New length specified";
constexpr char ExtendQuestion[] = "Extend voltage protocol with new Vhold?";
constexpr char VoltageTitle[] = "! New timeinterval specified";
constexpr char ReplaceQuestion[] = "Replace voltage protocol with new Vhold?";
constexpr char NoPoints[] = "A run needs at least one point.";
constexpr char NoInterval[] = "The time between points must be above 0 ms.";

/// Fields that a run of cooperative subunits forces.
constexpr std::array ForcedFields = {"StartAtEquilibrium", "NumRuns",     "NumIntervals",
                                     "ReseedSimulation",   "AutoAnalyze", "ShowAllTraces"};

bool OnScreen() {
  return FindPanel(MainPanelName) != nullptr;
}

Graph& MainGraph() {
  return GraphNamed(MainPanelName);
}

void ShowTimeAxis() {
  MainGraph().x.decimals = AxisDecimals(static_cast<float>(Model.NumPoints) * Model.ADInterval);
}

void ShowUnitsOf(int units) {
  const auto word = static_cast<std::size_t>(std::clamp(units, UnitsChannels, UnitsProbability));
  SetAxisTitle(MainGraph(), 'y', ControlNamed("DisplayUnits").choices[word]);
}

void ShowLength() {
  ShowSweepLength();
  ShowTimeAxis();
}

void ShowForcedFields() {
  for (const char* name : ForcedFields) ShowNumber(name, FieldNumber(ControlNamed(name).field));
}

/// Puts back what a field held before a commit that no run could use.
void Refuse(const ControlEvent& event, const char* reason) {
  SetFieldNumber(event.control->field, event.previous);
  ShowNumber(event.control->name, event.previous);
  MessagePopup(ErrorTitle, reason);
}

// -- Callbacks --

void FxnNumPoints(const ControlEvent& event) {
  if (Model.NumPoints < 1) {
    Refuse(event, NoPoints);
    return;
  }
  LimitNumPoints();
  const int former = static_cast<int>(event.previous);
  if (Model.NumPoints != former) Trace.TraceValid = 0;
  if (Model.NumPoints >= former && ConfirmPopup(LengthTitle, ExtendQuestion)) {
    FillVoltage(std::max(former, 1) - 1, Model.NumPoints);
  }
  ShowLength();
  StimRebuild();
}

void FxnADInterval(const ControlEvent& event) {
  if (!(Model.ADInterval > 0.0F)) {
    Refuse(event, NoInterval);
    return;
  }
  ClearTrace();
  ShowLength();
  StimRebuild();
}

void FxnVoltage(const ControlEvent& /*event*/) {
  if (ConfirmPopup(VoltageTitle, ReplaceQuestion)) FillVoltage(0, Model.NumPoints);
}

void FxnUnits(const ControlEvent& /*event*/) {
  ShowDisplayUnits();
  Trace.TraceUnits = Model.DisplayUnits;
}

void FxnMultipleSubunits(const ControlEvent& /*event*/) {
  ForceMultiSubunit();
  ShowForcedFields();
}

void FxnStopRun(const ControlEvent& /*event*/) {
  Result.StopRequested = 1;
}

/// A setting that another panel shows too.
void FxnSharedSetting(const ControlEvent& event) {
  ShowField(event.control->name);
}

void FxnAcquireData(const ControlEvent& /*event*/) {
  AcquireData();
}

void FxnSimRefresh(const ControlEvent& /*event*/) {
  RefreshTrace();
}

constexpr auto Number = ControlKind::Number;
constexpr auto Switch = ControlKind::Switch;
constexpr auto Choice = ControlKind::Choice;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

constexpr char GaussianChannelsHelp[] =
    "Make the number of channels a Gaussian distribution with the indicated STD.";

// clang-format off
constexpr ControlDecl RunControls[] = {
    // name                kind    label                  unit   format command                   action
    {"SimulatorKind",      Choice, "Simulator",           "",    "%d",  "FxnIntegrateMonteCarlo", nullptr,
     "Toggle between Monte Carlo simulator and Numerical Integration (10e-6 step size).", 0, 0, SimulatorWords},
    {"NumPoints",          Number, "Points",              "",    "%d",  "FxnNumPoints",           FxnNumPoints,
     "Number of time points to simulate."},
    {"ADInterval",         Number, "Interval",            "ms",  "%g",  "FxnADInterval",          FxnADInterval,
     "Time interval between simulated data points (in ms)."},
    {"NumRuns",            Number, "Runs",                "",    "%d",  "FxnNumRuns",             nullptr,
     "Number of runs to simulate."},
    {"NumIntervals",       Number, "Intervals",           "",    "%d",  "FxnRunInterval",         nullptr,
     "Number of interstimulus intervals of the same length as simulation"},
    {"NumChannels",        Number, "Channels",            "",    "%d",  "FxnNumChannels",         nullptr,
     "Number of channels to simulate."},
    {"ChannelsGaussian",   Switch, "Vary the channels",   "",    "%d",  "FxnAmpSTD",              nullptr,
     GaussianChannelsHelp, 0, 0, "off|on"},
    {"ChannelsSTD",        Number, "STD of channels",     "",    "%g",  "FxnChannelsSTD",         nullptr,
     GaussianChannelsHelp},
    {"MultiSubunit",       Switch, "Subunits",            "",    "%d",  "FxnMultipleSubunits",    FxnMultipleSubunits,
     "Simulate cooperative subunits of one channel: the channels are taken as its subunits.", 0, 0, "off|on"},
    {"OpenState",          Number, "Open state",          "",    "%d",  "FxnOpenState",           nullptr,
     "State whose exits are counted in the event statistics of a Monte Carlo simulation."},

    // -- Integrators --
    {"MaxStepSize",        Number, "Max. step",           "ms",  "%g",  "FxnMaxStepSize",         nullptr,
     "Largest step of the fixed-step integrator (in ms). It is halved when an occupancy leaves its range."},
    {"Precision",          Number, "Precision",           "",    "%g",  "FxnPrecision",           nullptr,
     "Error tolerance of the adaptive integrator, as a fraction of each occupancy."},

    // -- Start --
    {"StartAtEquilibrium", Switch, "Start at equilibrium", "",   "%d",  "FxnEquilProb",           nullptr,
     "Calculate equilibrium probabilities at time=0 as starting conditions.", 0, 0, "off|on"},
    {"FitStartAtEquilibrium", Switch, "Fit starts at equilibrium", "", "%d", "FxnFitQ",           nullptr,
     "Calculate equilibrium probabilities at time=0 as starting conditions before each iteration or use preset "
     "values.", 0, 0, "off|on"},
    {"ReseedSimulation",   Switch, "Reseed",              "",    "%d",  "FxnReseedSimulation",    nullptr,
     "Use final conditions at end of simulation as starting conditions for next simulation", 0, 0, "off|on"},

    // -- Electrical --
    {"VHold",              Number, "Holding potential",   "mV",  "%g",  "FxnVoltage",             FxnVoltage,
     "Holding potential (voltage clamp assumed) in mV."},
    {"VRev",               Number, "Reversal potential",  "mV",  "%g",  "FxnVoltageRev",          nullptr,
     "Reversal potential for Ohmic channels (mV)."},
    {"Valence",            Number, "Valence",             "",    "%d",  "FxnPermeantCharge",      nullptr,
     "Charge or valence of permeant ion."},

    // -- Display --
    {"DisplayUnits",       Choice, "Units",               "",    "%d",  "FxnUnits",               FxnUnits,
     "Switches output units for monitored state between probability, \nnumber of open channels, pA recorded under "
     "voltage clamp, or pS", 0, 0, UnitWords},
    {"ShowAllTraces",      Switch, "Superimpose traces",  "",    "%d",  "FxnShowAllTraces",       nullptr,
     "Superimpose all traces from mutli-run simulation.", 0, 0, "off|on"},
    {"AutoAnalyze",        Switch, "Analyze each run",    "",    "%d",  "FxnAutoAnalyze",         nullptr,
     "Analyze multi-run simulations and save results to ascii comma-delimited text.", 0, 0, "off|on"},
    {"AutoFilter",         Switch, "Filter",              "",    "%d",  "FxnAutoFilter",          nullptr,
     "Automatically impose Gaussian Filter; Cutoff Frequency is from the Tools/Filter menu.", 0, 0, "off|on"},
    {"AutoFilterFc",       Number, "Corner",              "kHz", "%g",  "FxnAutoFc",              FxnSharedSetting,
     "Filter the main data display with a Gaussian Filter corrected for a phase shift."},
    {"AutoNoise",          Switch, "Noise",               "",    "%d",  "FxnAutoNoise",           nullptr,
     "Automatically add Gaussian Noise; STD of selected units.", 0, 0, "off|on"},
    {"AutoNoiseSTD",       Number, "STD of noise",        "",    "%g",  "FxnAutoNoiseSTD",        FxnSharedSetting,
     "Enter the standard Deviatoin of noise (Gaussian) that is to be added to the trace."},
    {"StateMonitored[%d]", Switch, "Monitor %d",          "",    "%d",  "FxnMonitoredStates",     nullptr,
     "State(s) to be displayed during simulation as a graph. When display \nunits are set to pS or pA, only states "
     "with non-zero conductance are displayed.", 1, MaxStates, "off|on"},

    // -- Commands and readouts --
    {"Run",                Button, "Run",                 "",    "",    "AcquireData",            FxnAcquireData,
     "Executes model defined by rate constants shown above\nand parameters shown to left of the screen"},
    {"StopRun",            Button, "Stop",                "",    "",    "FxnStopRun",             FxnStopRun,
     "Stop simulation immediately.", 0, 0, "", 0, true},
    {"SimRefresh",         Button, "Refresh",             "",    "",    "FxnSimRefresh",          FxnSimRefresh,
     "Refresh the plot for indicated states after simulation.\nOccupancy of all states is calculated and each state "
     "can be viewed using Refresh after simulation."},
    {"DataName",           Readout, "Data",               "",    "",    "",                       nullptr,
     "Name of the model or file that the trace on display came from."},
    {"RunText",            Readout, "",                   "",    "",    "",                       nullptr,
     "How far a Monte Carlo simulation has come."},
};

constexpr MenuDecl RunMenu[] = {
    {"Run/Run",     "AcquireData",   AcquireData,  "F5"},
    {"Run/Refresh", "FxnSimRefresh", RefreshTrace, "Ctrl+R"},
};
// clang-format on

// -- Dimming --

void (*DimBelow)() = nullptr;  // the rule that the panel came with

void DimRunControls() {
  if (DimBelow != nullptr) DimBelow();
  const bool subunits = Model.MultiSubunit != 0;
  const bool oneByOne = Model.SimulatorKind == MonteCarlo && !subunits;
  const bool manyRuns = Model.NumRuns >= 2 && Model.SimulatorKind != FixedStepIntegrator && !subunits;
  const bool ohmic = Model.DisplayUnits == UnitsConductance || Model.DisplayUnits == UnitsCurrent;
  SetDimmed("MaxStepSize", Model.SimulatorKind != FixedStepIntegrator);
  SetDimmed("Precision", Model.SimulatorKind != AdaptiveIntegrator);
  SetDimmed("NumRuns", !oneByOne);
  SetDimmed("NumIntervals", !oneByOne);
  SetDimmed("ReseedSimulation", !oneByOne);
  SetDimmed("AutoAnalyze", !manyRuns);
  SetDimmed("ShowAllTraces", !manyRuns);
  SetDimmed("StartAtEquilibrium", subunits);
  SetDimmed("Valence", !ohmic);
  SetDimmed("VRev", !ohmic);
}

// -- Plot --

Colour SimulatorColour() {
  switch (Model.SimulatorKind) {
    case MonteCarlo:
      return Black;
    case AdaptiveIntegrator:
      return DarkRed;
    default:
      return DarkBlue;
  }
}

/// Widens the full ranges of the graph by its newest plot; the first plot sets them.
void WidenFullRange(Graph& graph) {
  const Plot& newest = graph.plots.back();
  const bool first = graph.plots.size() == 1;
  const auto widen = [first](double& fullMin, double& fullMax, const std::optional<DataRange>& range) {
    if (!range) return;
    fullMin = first ? range->min : std::min(fullMin, range->min);
    fullMax = first ? range->max : std::max(fullMax, range->max);
  };
  widen(graph.fullXMin, graph.fullXMax, PlotRange(newest, 'x'));
  widen(graph.fullYMin, graph.fullYMax, PlotRange(newest, 'y'));
}

/// A cursor beyond the data could not be grabbed: it comes to its place by thirds of the time on the axis.
void BringCursors(Graph& graph) {
  const DataRange x = ViewRange(graph, 'x');
  const double count = static_cast<double>(graph.cursors.size()) + 1.0;
  double place = 0.0;
  for (Cursor& cursor : graph.cursors) {
    place += 1.0;
    if (cursor.x < x.min || cursor.x > x.max) cursor.x = x.min + (x.max - x.min) * place / count;
  }
}

/// Traces pile up run after run. The oldest go when all together hold more samples than this.
constexpr std::size_t MaxPlottedSamples = 4U * MaxStimPoints;

void DropOldestPlots(Graph& graph, std::size_t toCome) {
  std::size_t samples = toCome;
  for (const Plot& plot : graph.plots) samples += plot.y.size();
  while (!graph.plots.empty() && samples > MaxPlottedSamples) {
    samples -= graph.plots.front().y.size();
    graph.plots.erase(graph.plots.begin());
  }
}

void AddMainGraph() {
  Graph& graph = AddGraph(MainPanelName, MainPanelName, "Time (ms)", "", 2);
  graph.x.max = 100.0;
  graph.y.max = 100.0;
  graph.cursors[0] = {33.0, 66.0, true, DarkBlue};
  graph.cursors[1] = {66.0, 33.0, true, DarkBlue};
  ShowDisplayUnits();
  ShowTimeAxis();
}

}  // namespace

void AddRunControls() {
  AddControls(MainPanelName, RunGroup, RunControls);
  AddMainGraph();
  Panel& panel = PanelNamed(MainPanelName);
  DimBelow = panel.dim;
  panel.dim = DimRunControls;
}

void AddRunMenu() {
  AddMenu(RunMenu);
}

void ReadRunParameters() {
  if (!OnScreen()) return;
  ReadControls(MainPanelName, RunGroup);
  LimitNumPoints();
  ForceMultiSubunit();
  if (Model.MultiSubunit != 0) ShowForcedFields();
}

void WriteRunParameters() {
  WriteControls(MainPanelName, RunGroup);
  ShowDisplayUnits();
  ShowLength();
}

void AcquireData() {
  ReadRunParameters();
  RunSimulation(Model.NumPoints);
}

void PlotTrace(bool erase) {
  if (Model.FitActive != 0 || !OnScreen()) return;
  Graph& graph = MainGraph();
  if (erase) ClearPlots(graph);
  ShowTraceUnits();
  ShowTimeAxis();
  const auto samples = static_cast<std::size_t>(std::clamp(Model.NumPoints, 0, MaxStimPoints));
  DropOldestPlots(graph, samples);
  PlotWave(graph, PlotStyle::Line, SimulatorColour(), Trace.SimTrace.first(samples), 0.0,
           static_cast<double>(Model.ADInterval));
  WidenFullRange(graph);
  if (graph.x.automatic) BringCursors(graph);
}

void RemoveTracePlots() {
  if (OnScreen()) ClearPlots(MainGraph());
}

void ShowDisplayUnits() {
  if (OnScreen()) ShowUnitsOf(Model.DisplayUnits);
}

void ShowTraceUnits() {
  if (!OnScreen()) return;
  if (Trace.TraceUnits <= UnitsProbability) {
    ShowUnitsOf(Trace.TraceUnits);
    return;
  }
  const auto unit = static_cast<std::size_t>(std::min(Trace.TraceUnits, TraceNanoamps) - TraceMicrovolts);
  SetAxisTitle(MainGraph(), 'y', RecordedUnitTitles[unit]);
}

void ShowDataName() {
  if (OnScreen()) ShowText("DataName", Model.ModelFileName);
}

void ShowRunText() {
  if (OnScreen()) ShowText("RunText", Result.RunText);
}

}  // namespace zelvane
