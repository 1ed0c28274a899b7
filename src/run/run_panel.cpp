// Run settings, run, stop and refresh on MainPanel.
#include "run/run_panel.h"

#include <algorithm>
#include <string_view>

#include "model/model.h"
#include "model/model_events.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "run/result_store.h"
#include "run/run.h"
#include "run/run_panels.h"
#include "screen/screen.h"
#include "screen/window_reporter.h"
#include "stimulus/stimulus.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_graph.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char RunGroup[] = "run";
constexpr char SimulatorWords[] = "Fixed-step integrator|Monte Carlo|Adaptive integrator";
constexpr char UnitWords[] =
    "Number of Channels Open|Total Conductance pS|Macroscopic Current pA|Probability";

constexpr char LengthTitle[] = "! New length specified";
constexpr char ExtendQuestion[] = "Extend voltage protocol with new Vhold?";
constexpr char VoltageTitle[] = "! New timeinterval specified";
constexpr char ReplaceQuestion[] = "Replace voltage protocol with new Vhold?";
constexpr char NoPoints[] = "A run needs at least one point.";
constexpr char NoInterval[] = "The time between points must be above 0 ms.";

void ShowLength() {
  ShowSweepLength();
  ShowTimeAxis();
}

void ShowForcedFields() {
  for (const std::string_view name : FieldsForcedByMultiSubunit)
    ShowNumber(name, FieldNumber(ControlNamed(name).field));
}

/// Restores the old value of a field after a commit that a run cannot use.
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
  RequestStop();
}

/// Shows a setting that other panels show too.
void FxnSharedSetting(const ControlEvent& event) {
  ShowField(event.control->name);
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
     "Simulate cooperative subunits of one channel. Each channel is one subunit.", 0, 0, "off|on"},
    {"OpenState",          Number, "Open state",          "",    "%d",  "FxnOpenState",           nullptr,
     "The event statistics of a Monte Carlo simulation count the exits of this state."},

    // -- Integrators --
    {"MaxStepSize",        Number, "Max. step",           "ms",  "%g",  "FxnMaxStepSize",         nullptr,
     "Largest step of the fixed-step integrator (in ms). The integrator halves it when an occupancy "
     "leaves its range."},
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
    {"Run",                Button, "Run",                 "",    "",    "AcquireData",            Run<AcquireData>,
     "Executes model defined by rate constants shown above\nand parameters shown to left of the screen"},
    {"StopRun",            Button, "Stop",                "",    "",    "FxnStopRun",             FxnStopRun,
     "Stop simulation immediately.", 0, 0, "", 0, true},
    {"SimRefresh",         Button, "Refresh",             "",    "",    "FxnSimRefresh",          FxnSimRefresh,
     "Refresh the plot for indicated states after simulation.\nOccupancy of all states is calculated and each state "
     "can be viewed using Refresh after simulation."},
    {"DataName",           Readout, "Data",               "",    "",    "",                       nullptr,
     "Name of the model or the file of the trace on display."},
    {"RunText",            Readout, "",                   "",    "",    "",                       nullptr,
     "Progress of a Monte Carlo simulation."},
};

constexpr MenuDecl RunMenu[] = {
    {"Run/Run",     "AcquireData",   Run<AcquireData>,  "F5"},
    {"Run/Refresh", "FxnSimRefresh", RefreshTrace, "Ctrl+R"},
};
// clang-format on

// -- Dimming --

void DimRunControls() {
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

}  // namespace

void AddRunPanels() {
  AddControls(MainPanelName, RunGroup, RunControls);
  AddTraceGraph();
  PanelNamed(MainPanelName).dim.push_back(DimRunControls);
  RunSettingsWanted.Add(ReadRunParameters);
  RunSettingsChanged.Add(WriteRunParameters);
  ModelFileToSave.Add(ReadRunParameters);
  ModelFileCameIn.Add([](Outcome& /*shown*/) { WriteRunParameters(); });
  RunSettingsReplaced.Add([] {
    ShowDisplayUnits();
    ShowLength();
  });
  RunBegins.Add(ShowDataName);
  RunCompleted.Add([](Outcome& /*saved*/) {
    if (Model.MultiSubunit != 0) ShowSweepLength();
  });
  RunTextChanged.Add(ShowRunText);
  AddStatisticsControls();
  AddMenu(RunMenu);
  AddValuesTablePanel();
}

void ReadRunParameters() {
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

Outcome AcquireData() {
  ReadRunParameters();
  ReadActiveRates();
  ForgetStop();
  const RunStart start = Model.StartAtEquilibrium != 0 ? RunStart::AtEquilibrium : RunStart::AsSet;
  return RunSimulation(Model.NumPoints, start, WindowReporter());
}

void ShowDataName() {
  ShowText("DataName", Model.ModelFileName);
}

void ShowRunText() {
  ShowText("RunText", Result.RunText);
}

}  // namespace zelvane
