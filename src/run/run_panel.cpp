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
    {.name = "SimulatorKind", .kind = Choice, .label = "Simulator", .format = "%d",
     .command = "FxnIntegrateMonteCarlo",
     .help = "Toggle between Monte Carlo simulator and Numerical Integration (10e-6 step size).",
     .choices = SimulatorWords},
    {.name = "NumPoints", .kind = Number, .label = "Points", .format = "%d", .command = "FxnNumPoints",
     .action = FxnNumPoints, .help = "Number of time points to simulate."},
    {.name = "ADInterval", .kind = Number, .label = "Interval", .unit = "ms", .format = "%g",
     .command = "FxnADInterval", .action = FxnADInterval,
     .help = "Time interval between simulated data points (in ms)."},
    {.name = "NumRuns", .kind = Number, .label = "Runs", .format = "%d", .command = "FxnNumRuns",
     .help = "Number of runs to simulate."},
    {.name = "NumIntervals", .kind = Number, .label = "Intervals", .format = "%d", .command = "FxnRunInterval",
     .help = "Number of interstimulus intervals of the same length as simulation"},
    {.name = "NumChannels", .kind = Number, .label = "Channels", .format = "%d", .command = "FxnNumChannels",
     .help = "Number of channels to simulate."},
    {.name = "ChannelsGaussian", .kind = Switch, .label = "Vary the channels", .format = "%d", .command = "FxnAmpSTD",
     .help = GaussianChannelsHelp, .choices = "off|on"},
    {.name = "ChannelsSTD", .kind = Number, .label = "STD of channels", .format = "%g", .command = "FxnChannelsSTD",
     .help = GaussianChannelsHelp},
    {.name = "MultiSubunit", .kind = Switch, .label = "Subunits", .format = "%d", .command = "FxnMultipleSubunits",
     .action = FxnMultipleSubunits,
     .help = "Simulate cooperative subunits of one channel. Each channel is one subunit.", .choices = "off|on"},
    {.name = "OpenState", .kind = Number, .label = "Open state", .format = "%d", .command = "FxnOpenState",
     .help = "The event statistics of a Monte Carlo simulation count the exits of this state."},

    // -- Integrators --
    {.name = "MaxStepSize", .kind = Number, .label = "Max. step", .unit = "ms", .format = "%g",
     .command = "FxnMaxStepSize",
     .help = "Largest step of the fixed-step integrator (in ms). The integrator halves it when an occupancy "
     "leaves its range."},
    {.name = "Precision", .kind = Number, .label = "Precision", .format = "%g", .command = "FxnPrecision",
     .help = "Error tolerance of the adaptive integrator, as a fraction of each occupancy."},

    // -- Start --
    {.name = "StartAtEquilibrium", .kind = Switch, .label = "Start at equilibrium", .format = "%d",
     .command = "FxnEquilProb", .help = "Calculate equilibrium probabilities at time=0 as starting conditions.",
     .choices = "off|on"},
    {.name = "FitStartAtEquilibrium", .kind = Switch, .label = "Fit starts at equilibrium", .format = "%d",
     .command = "FxnFitQ",
     .help = "Calculate equilibrium probabilities at time=0 as starting conditions before each iteration or use preset "
     "values.", .choices = "off|on"},
    {.name = "ReseedSimulation", .kind = Switch, .label = "Reseed", .format = "%d", .command = "FxnReseedSimulation",
     .help = "Use final conditions at end of simulation as starting conditions for next simulation",
     .choices = "off|on"},

    // -- Electrical --
    {.name = "VHold", .kind = Number, .label = "Holding potential", .unit = "mV", .format = "%g",
     .command = "FxnVoltage", .action = FxnVoltage, .help = "Holding potential (voltage clamp assumed) in mV."},
    {.name = "VRev", .kind = Number, .label = "Reversal potential", .unit = "mV", .format = "%g",
     .command = "FxnVoltageRev", .help = "Reversal potential for Ohmic channels (mV)."},
    {.name = "Valence", .kind = Number, .label = "Valence", .format = "%d", .command = "FxnPermeantCharge",
     .help = "Charge or valence of permeant ion."},

    // -- Display --
    {.name = "DisplayUnits", .kind = Choice, .label = "Units", .format = "%d", .command = "FxnUnits",
     .action = FxnUnits,
     .help = "Switches output units for monitored state between probability, \nnumber of open channels, pA recorded under "
     "voltage clamp, or pS", .choices = UnitWords},
    {.name = "ShowAllTraces", .kind = Switch, .label = "Superimpose traces", .format = "%d",
     .command = "FxnShowAllTraces", .help = "Superimpose all traces from mutli-run simulation.", .choices = "off|on"},
    {.name = "AutoAnalyze", .kind = Switch, .label = "Analyze each run", .format = "%d", .command = "FxnAutoAnalyze",
     .help = "Analyze multi-run simulations and save results to ascii comma-delimited text.", .choices = "off|on"},
    {.name = "AutoFilter", .kind = Switch, .label = "Filter", .format = "%d", .command = "FxnAutoFilter",
     .help = "Automatically impose Gaussian Filter; Cutoff Frequency is from the Tools/Filter menu.",
     .choices = "off|on"},
    {.name = "AutoFilterFc", .kind = Number, .label = "Corner", .unit = "kHz", .format = "%g", .command = "FxnAutoFc",
     .action = FxnSharedSetting,
     .help = "Filter the main data display with a Gaussian Filter corrected for a phase shift."},
    {.name = "AutoNoise", .kind = Switch, .label = "Noise", .format = "%d", .command = "FxnAutoNoise",
     .help = "Automatically add Gaussian Noise; STD of selected units.", .choices = "off|on"},
    {.name = "AutoNoiseSTD", .kind = Number, .label = "STD of noise", .format = "%g", .command = "FxnAutoNoiseSTD",
     .action = FxnSharedSetting,
     .help = "Enter the standard Deviatoin of noise (Gaussian) that is to be added to the trace."},
    {.name = "StateMonitored[%d]", .kind = Switch, .label = "Monitor %d", .format = "%d",
     .command = "FxnMonitoredStates",
     .help = "State(s) to be displayed during simulation as a graph. When display \nunits are set to pS or pA, only states "
     "with non-zero conductance are displayed.", .first = 1, .last = MaxStates, .choices = "off|on"},

    // -- Commands and readouts --
    {.name = "Run", .kind = Button, .label = "Run", .format = "", .command = "AcquireData",
     .action = Run<AcquireData>,
     .help = "Executes model defined by rate constants shown above\nand parameters shown to left of the screen"},
    {.name = "StopRun", .kind = Button, .label = "Stop", .format = "", .command = "FxnStopRun", .action = FxnStopRun,
     .help = "Stop simulation immediately.", .whileBusy = true},
    {.name = "SimRefresh", .kind = Button, .label = "Refresh", .format = "", .command = "FxnSimRefresh",
     .action = FxnSimRefresh,
     .help = "Refresh the plot for indicated states after simulation.\nOccupancy of all states is calculated and each state "
     "can be viewed using Refresh after simulation."},
    {.name = "DataName", .kind = Readout, .label = "Data", .format = "",
     .help = "Name of the model or the file of the trace on display."},
    {.name = "RunText", .kind = Readout, .format = "", .help = "Progress of a Monte Carlo simulation."},
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
  const bool ohmic = Model.DisplayUnits == UnitsConductance || Model.DisplayUnits == UnitsCurrent;
  SetDimmed("MaxStepSize", Model.SimulatorKind != FixedStepIntegrator);
  SetDimmed("Precision", Model.SimulatorKind != AdaptiveIntegrator);
  SetDimmed("NumRuns", !oneByOne);
  SetDimmed("NumIntervals", !oneByOne);
  SetDimmed("ReseedSimulation", !oneByOne);
  SetDimmed("AutoAnalyze", !HasSeveralRuns());
  SetDimmed("ShowAllTraces", !HasSeveralRuns());
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
  RunLengthTaken.Tell();
  ForceMultiSubunit();
  if (Model.MultiSubunit != 0) ShowForcedFields();
}

void WriteRunParameters() {
  RunLengthTaken.Tell();
  WriteControls(MainPanelName, RunGroup);
  ShowDisplayUnits();
  ShowLength();
}

Outcome AcquireData() {
  ReadRunParameters();
  ReadActiveRates();
  ForgetStop();
  return RunSimulation(Model.NumPoints, ChosenStart(), WindowReporter());
}

void ShowDataName() {
  ShowText("DataName", Model.ModelFileName);
}

void ShowRunText() {
  ShowText("RunText", Result.RunText);
}

}  // namespace zelvane
