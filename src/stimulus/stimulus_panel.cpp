// The stimulus panel: its controls, what they show, and which are open in the present mode.
#include <algorithm>
#include <span>
#include <string>

#include "model/model.h"
#include "model/model_events.h"
#include "model/model_panels.h"
#include "platform/index.h"
#include "screen/screen.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_store.h"
#include "stimulus/stimulus_views.h"

namespace zelvane {
namespace {

constexpr char StimulusPanelName[] = "StimulusPanel";

constexpr char DurationTooLong[] = "This duration is too long.";

constexpr char PanelHelp[] = "Build the voltage and the drug concentrations that drive the model.";
constexpr char StimulusButtonHelp[] =
    "Go to Stimulus Panel in order to create custom stimulus protocol (mV or mM) with which to drive model";
constexpr char CreatorHelp[] =
    "New stimulus will be added to existing stimulus protocol.\nErase first for new stimulus.";
constexpr char ModeHelp[] =
    "AUTOMATIC: makes one step of voltage or Drug1, and makes it again after each change of a parameter.\n"
    "MANUAL: adds steps and trains to the protocol.\n"
    "EXPONENTIAL: adds exponential waveforms to the protocol.\n"
    "USER: the protocol comes from a stimulus file.";
constexpr char TargetHelp[] = "Voltage or drug on the graph. The buttons below change it.";
constexpr char AutoTargetHelp[] = "Choose Drug1 or the voltage for the automatic step.";
constexpr char AutoFilterHelp[] =
    "Filter the automatic step of Drug1 with the Gaussian filter. It works while Drug1 is shown.";
constexpr char RiseTauHelp[] =
    "Time constant (ms) of the rise of an exponentially edged step; 0 for no delay.";
constexpr char DecayTauHelp[] =
    "Time constant (ms) of the decay of an exponentially edged step; 0 for no delay.";
constexpr char ConfigFileHelp[] = "Name of configuration file currently loaded (blank if none loaded).";

// -- What the panel shows besides its fields --

double StepDuration() {
  return static_cast<double>(Stimulus.StepStop) - static_cast<double>(Stimulus.StepStart);
}

void ShowTrain() {
  ShowNumber("TrainLength", Stimulus.TrainCount * static_cast<double>(Stimulus.TrainInterval));
  if (Stimulus.TrainInterval > 0.0F) {
    ShowNumber("TrainFrequency", 1000.0 / static_cast<double>(Stimulus.TrainInterval));
  } else {
    ShowText("TrainFrequency", "");
  }
}

/// Shows the profile with the step of the automatic mode, voltage or Drug1.
void FollowAutomaticStep() {
  if (Stimulus.StimMode != StimAutomatic || Model.FitActive != 0) return;
  Stimulus.StimTarget = Stimulus.AutoDrugOrVolt == 1 ? 0 : 1;
}

// -- Dimming --

/// A field that only one mode may edit.
struct ModeField {
  const char* control;
  int mode;
};
constexpr ModeField ModeFields[] = {
    {"AutoValue", StimAutomatic},       {"AutoStart", StimAutomatic},    {"AutoStop", StimAutomatic},
    {"AutoDrugOrVolt", StimAutomatic},  {"AutoFilterOn", StimAutomatic}, {"StepAmp", StimManual},
    {"StepStart", StimManual},          {"StepStop", StimManual},        {"StepDuration", StimManual},
    {"StepRamp", StimManual},           {"StepRiseTau", StimManual},     {"StepDecayTau", StimManual},
    {"TrainCount", StimManual},         {"TrainDelay", StimManual},      {"TrainInterval", StimManual},
    {"TrainExpFlag", StimManual},       {"TrainRiseFlag", StimManual},   {"ExpStart", StimExponential},
    {"ExpOffset", StimExponential},     {"ExpAmp1", StimExponential},    {"ExpTau1", StimExponential},
    {"ExpComponents", StimExponential}, {"ExpAmp2", StimExponential},    {"ExpTau2", StimExponential},
    {"ExpRiseFlag", StimExponential},   {"ExpRiseTau", StimExponential},
};

/// Dims the panel. Mode, target, axis and buttons are open in every mode; USER mode has no other open field.
void DimStimulusPanel() {
  for (const ModeField& field : ModeFields) SetDimmed(field.control, Stimulus.StimMode != field.mode);
  if (Stimulus.ExpComponents != 2) SetDimmed("ExpAmp2", true);
  if (Stimulus.ExpComponents != 2) SetDimmed("ExpTau2", true);
  if (Stimulus.ExpRiseFlag == 0) SetDimmed("ExpRiseTau", true);
  SetDimmed("FilterFc", Stimulus.StimMode < StimAutomatic || Stimulus.StimMode > StimExponential);
}

// -- Callbacks --

void Rebuild(const ControlEvent&) {
  StimRebuild();
}

void AutoDrugVoltage(const ControlEvent&) {
  StimReadControls();
  FollowAutomaticStep();
  ShowNumber("StimTarget", Stimulus.StimTarget);
  StimRebuild();
}

void FxnManualStepEdge(const ControlEvent&) {
  StimReadControls();
  ShowNumber("StepDuration", StepDuration());
}

void FxnManualDuration(const ControlEvent& event) {
  StimReadControls();
  const double stop = static_cast<double>(Stimulus.StepStart) + event.control->number;
  if (NumberSuits(FieldType::Float, stop)) {
    Stimulus.StepStop = static_cast<float>(stop);
    ShowNumber("StepStop", Stimulus.StepStop);
  } else {
    MessagePopup(ErrorTitle, DurationTooLong);
  }
  ShowNumber("StepDuration", StepDuration());
}

void FxnTrainUpdate(const ControlEvent&) {
  StimReadControls();
  ShowTrain();
}

void FxnLogLin(const ControlEvent&) {
  StimReadControls();
  StimPlot();
}

void OpenStimulusPanel() {
  FollowAutomaticStep();
  StimPanelRefresh();
  ShowTask(StimulusPanelName);
  StimRebuild();
}

void FxnStimulusButton(const ControlEvent&) {
  OpenStimulusPanel();
}
void FxnStimDone(const ControlEvent&) {
  LeaveTask(StimulusPanelName);
}
void CloseStimulusPanel() {
  LeaveTask(StimulusPanelName);
}

constexpr ControlKind Number = ControlKind::Number;
constexpr ControlKind Switch = ControlKind::Switch;
constexpr ControlKind Choice = ControlKind::Choice;
constexpr ControlKind Button = ControlKind::Button;
constexpr ControlKind Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl DisplayControls[] = {
    {.name = "StimMode", .kind = Choice, .label = "Mode", .format = "%g", .command = "ChangeStimMode",
     .action = Rebuild, .help = ModeHelp, .choices = "AUTOMATIC|MANUAL|EXPONENTIAL|USER|NOT AVAILABLE",
     .choiceBase = StimAutomatic},
    {.name = "StimTarget", .kind = Choice, .label = "Stimulus shown", .format = "%g", .command = "FxnCurrentStim",
     .action = Rebuild, .help = TargetHelp, .choices = "Voltage|Drug1|Drug2|Drug3|Drug4|Drug5|Drug6"},
    {.name = "StimLogAxis", .kind = Switch, .label = "Y axis", .format = "%g", .command = "FxnLogLin",
     .action = FxnLogLin, .help = "Linear or logarithmic axis of the stimulus.", .choices = "Linear|Logarithmic"},
    {.name = "StimSweepLength", .kind = Readout, .label = "Length of sweep", .format = "%.3ems",
     .help = "Length of the simulation."},
    {.name = "StimConfigFile", .kind = Readout, .label = "Model file", .format = "", .help = ConfigFileHelp},
    {.name = "EraseStim", .kind = Button, .label = "Erase", .format = "", .command = "EraseStim",
     .action = Run<EraseStim>, .help = "Set the stimulus shown to zero over the length of the simulation."},
    {.name = "StimDone", .kind = Button, .label = "Done", .format = "", .command = "FxnStimDone",
     .action = FxnStimDone, .help = "Close Stimulus Panel"},
};

constexpr ControlDecl AutomaticControls[] = {
    {.name = "AutoDrugOrVolt", .kind = Switch, .label = "Step of", .format = "%g", .command = "AutoDrugVoltage",
     .action = AutoDrugVoltage, .help = AutoTargetHelp, .choices = "Drug1|Voltage"},
    {.name = "AutoValue", .kind = Number, .label = "Amplitude", .unit = "V or M", .format = "%g",
     .command = "FxnAutoStepAmp", .action = Rebuild,
     .help = "Amplitude of the automatic step, in volts or molar."},
    {.name = "AutoStart", .kind = Number, .label = "Start", .unit = "ms", .format = "%g",
     .command = "FxnAutoStepStart", .action = Rebuild,
     .help = "Time (ms) at which the automatic step starts."},
    {.name = "AutoStop", .kind = Number, .label = "Stop", .unit = "ms", .format = "%g", .command = "FxnAutoStepStop",
     .action = Rebuild, .help = "Time (ms) at which the automatic step stops."},
    {.name = "AutoFilterOn", .kind = Switch, .label = "Filter Drug1", .format = "%g", .command = "AutoFilterOn",
     .action = Rebuild, .help = AutoFilterHelp, .choices = "Off|On"},
};

constexpr ControlDecl ManualControls[] = {
    {.name = "StepAmp", .kind = Number, .label = "Amplitude", .unit = "V or M", .format = "%g",
     .command = "FxnManualStepAmp", .action = Rebuild, .help = "Amplitude of the step, in volts or molar."},
    {.name = "StepStart", .kind = Number, .label = "Start", .unit = "ms", .format = "%g",
     .command = "FxnManualStepStart", .action = FxnManualStepEdge, .help = "Time (ms) at which the step starts."},
    {.name = "StepStop", .kind = Number, .label = "Stop", .unit = "ms", .format = "%g",
     .command = "FxnManualStepStop", .action = FxnManualStepEdge, .help = "Time (ms) at which the step stops."},
    {.name = "StepDuration", .kind = Number, .label = "Duration", .unit = "ms", .format = "%g",
     .command = "FxnManualDuration", .action = FxnManualDuration,
     .help = "Length (ms) of the step. A new length changes the stop time."},
    {.name = "StepRamp", .kind = Switch, .label = "Shape", .format = "%g", .command = "FxnManualRamp",
     .action = Rebuild, .help = "Step with a flat top, or linear ramp from zero to the amplitude.",
     .choices = "Flat|Ramp"},
    {.name = "CreateStim", .kind = Button, .label = "Add step", .format = "", .command = "CreateStim",
     .action = Run<CreateStim>, .help = CreatorHelp},
    {.name = "StepRiseTau", .kind = Number, .label = "Rise time constant", .unit = "ms", .format = "%g",
     .command = "FxnManualRiseTau", .action = Rebuild, .help = RiseTauHelp},
    {.name = "StepDecayTau", .kind = Number, .label = "Decay time constant", .unit = "ms", .format = "%g",
     .command = "FxnManualDecayTau", .action = Rebuild, .help = DecayTauHelp},
    {.name = "CreateExpStim", .kind = Button, .label = "Add edged step", .format = "", .command = "CreateExpStim",
     .action = Run<CreateExpStim>, .help = CreatorHelp},
};

constexpr ControlDecl ExponentialControls[] = {
    {.name = "ExpStart", .kind = Number, .label = "Start", .unit = "ms", .format = "%g", .command = "FxnExpStart",
     .action = Rebuild, .help = "Time (ms) at which the waveform starts."},
    {.name = "ExpOffset", .kind = Number, .label = "Offset", .unit = "V or M", .format = "%g",
     .command = "FxnExpOffset", .action = Rebuild,
     .help = "Offset (steady-state value) from the start of the waveform to the end of the record."},
    {.name = "ExpComponents", .kind = Choice, .label = "Decay components", .format = "%g", .command = "ExpComponents",
     .action = Rebuild, .help = "Number of exponential components of the decay.", .choices = "1|2", .choiceBase = 1},
    {.name = "ExpAmp1", .kind = Number, .label = "Amplitude 1", .unit = "V or M", .format = "%g",
     .command = "FxnExpAmp1", .action = Rebuild,
     .help = "Amplitude of the first decay component, in volts or molar."},
    {.name = "ExpTau1", .kind = Number, .label = "Decay time constant 1", .unit = "ms", .format = "%g",
     .command = "FxnExpTau1", .action = Rebuild,
     .help = "Time constant (ms) of the first decay component. With 0 the button adds nothing."},
    {.name = "ExpAmp2", .kind = Number, .label = "Amplitude 2", .unit = "V or M", .format = "%g",
     .command = "FxnExpAmp2", .action = Rebuild,
     .help = "Amplitude of the second decay component, in volts or molar."},
    {.name = "ExpTau2", .kind = Number, .label = "Decay time constant 2", .unit = "ms", .format = "%g",
     .command = "FxnExpTau2", .action = Rebuild,
     .help = "Time constant (ms) of the second decay component. With 0 the button adds nothing."},
    {.name = "ExpRiseFlag", .kind = Switch, .label = "Rise", .format = "%g", .command = "ExpRise", .action = Rebuild,
     .help = "Instantaneous or exponential rise of the waveform.", .choices = "Instantaneous|Exponential"},
    {.name = "ExpRiseTau", .kind = Number, .label = "Rise time constant", .unit = "ms", .format = "%g",
     .command = "FxnExpRiseTau", .action = Rebuild,
     .help = "Time constant (ms) of the exponential rise. With 0 the button adds nothing."},
    {.name = "CreateExp", .kind = Button, .label = "Add exponential", .format = "", .command = "CreateExp",
     .action = Run<CreateExp>, .help = CreatorHelp},
};

constexpr ControlDecl TrainControls[] = {
    {.name = "TrainCount", .kind = Number, .label = "Pulses", .format = "%g", .command = "FxnTrainUpdate",
     .action = FxnTrainUpdate, .help = "Number of pulses of the train."},
    {.name = "TrainDelay", .kind = Number, .label = "First pulse at", .unit = "ms", .format = "%g",
     .command = "FxnTrainUpdate", .action = FxnTrainUpdate, .help = "Time (ms) at which the first pulse starts."},
    {.name = "TrainInterval", .kind = Number, .label = "Interval", .unit = "ms", .format = "%g",
     .command = "FxnTrainUpdate", .action = FxnTrainUpdate,
     .help = "Time (ms) from the start of one pulse to the start of the next."},
    {.name = "TrainExpFlag", .kind = Switch, .label = "Shape of pulses", .format = "%g", .command = "FxnTrainExp",
     .action = Rebuild, .help = "Kind of pulse: step, or exponential waveform.", .choices = "Steps|Exponentials"},
    {.name = "TrainRiseFlag", .kind = Switch, .label = "Edges of steps", .format = "%g", .command = "FxnTrainRise",
     .action = Rebuild, .help = "Kind of step in the train: square, or with exponential edges.",
     .choices = "Square|Exponential"},
    {.name = "TrainLength", .kind = Readout, .label = "Length of train", .unit = "ms", .format = "%g",
     .help = "Length of the train: number of pulses times interval."},
    {.name = "TrainFrequency", .kind = Readout, .label = "Frequency", .unit = "Hz", .format = "%g",
     .help = "Pulses per second of the train."},
    {.name = "CreateTrain", .kind = Button, .label = "Add train", .format = "", .command = "CreateTrain",
     .action = Run<CreateTrain>, .help = CreatorHelp},
};

constexpr ControlDecl FilterControls[] = {
    {.name = "FilterFc", .kind = Number, .label = "Corner", .unit = "kHz", .format = "%g", .command = "FxnStimFc",
     .action = Rebuild, .help = "-3 dB corner (kHz) of the Gaussian filter."},
    {.name = "FilterStim", .kind = Button, .label = "Filter", .format = "", .command = "FilterStim",
     .action = Run<FilterStim>, .help = "Filter the stimulus shown with the Gaussian filter."},
};

constexpr ControlDecl MainPanelButton[] = {
    {.name = "StimulusButton", .kind = Button, .label = "Stimulus...", .format = "", .command = "FxnStimulusButton",
     .action = FxnStimulusButton, .help = StimulusButtonHelp},
};

constexpr MenuDecl StimulusMenu[] = {{"Stimulus/Edit Stimulus...", "Stimulus", OpenStimulusPanel}};
// clang-format on

/// The sections of the panel, in their order.
struct Section {
  const char* group;
  std::span<const ControlDecl> controls;
};
constexpr Section Sections[] = {{"display", DisplayControls}, {"automatic", AutomaticControls},
                                {"manual", ManualControls},   {"exponential", ExponentialControls},
                                {"train", TrainControls},     {"filter", FilterControls}};

std::string TargetTitle(int target) {
  if (target == 0) return "Voltage (V)";
  const std::string& label = Model.DrugLabel[Index(target)];
  return (label.empty() ? FormatText("Drug%d", target) : label) + " (M)";
}

/// Reads NumPoints as MainPanel shows it, so that a creator uses the visible length. A fit sets the length of
/// its own simulations and keeps it.
void ReadNumPoints() {
  const Control* shown = FindControl("NumPoints");
  if (shown != nullptr && shown->field && Model.FitActive == 0) SetFieldNumber(shown->field, shown->number);
  LimitNumPoints();
}

}  // namespace

void StimReadControls() {
  for (const Section& section : Sections) ReadControls(StimulusPanelName, section.group);
  ReadNumPoints();
  RunLengthTaken.Tell();
}

void StimPanelRefresh() {
  if (!(Stimulus.TrainInterval > 0.0F)) Stimulus.TrainInterval = 1.0F;
  for (const Section& section : Sections) WriteControls(StimulusPanelName, section.group);
  ShowNumber("StepDuration", StepDuration());
  ShowTrain();
  ShowMultiStimTable();
}

void ShowStimulusFacts() {
  ShowSweepLength();
  ShowNumber("StimSweepLength", Model.NumPoints * static_cast<double>(Model.ADInterval));
  ShowNumber("StimTarget", Stimulus.StimTarget);
  ShowText("StimConfigFile", Model.ModelFileName);
  UpdateDimming();
}

void StimPlot() {
  Graph& graph = GraphNamed(StimulusPanelName);
  const int target = std::clamp(Stimulus.StimTarget, 0, MaxDrugs);
  const auto points = Index(std::clamp(Model.NumPoints, 0, MaxStimPoints));
  SetAxisTitle(graph, 'y', TargetTitle(target));
  SetAxisLog(graph, 'y', Stimulus.StimLogAxis != 0);
  ClearPlots(graph);
  // The simulators hold each sample until the next, so a stair shows the stimulus as it acts.
  PlotWave(graph, PlotStyle::Stair, Black, Stimulus.Profile[Index(target)].first(points), 0.0,
           static_cast<double>(Model.ADInterval));
}

void AddStimulusPanel() {
  AddPanel({.name = StimulusPanelName,
            .title = "Stimulus",
            .tag = "ST",
            .dim = DimStimulusPanel,
            .close = CloseStimulusPanel,
            .help = PanelHelp});
  for (const Section& section : Sections) AddControls(StimulusPanelName, section.group, section.controls);
  AddGraph(StimulusPanelName, StimulusPanelName, "Time (ms)", TargetTitle(Stimulus.StimTarget));
  AddMultiStimTable();
  AddControls(MainPanelName, "stimulus", MainPanelButton);
  AddMenu(StimulusMenu);
  ModelFileToSave.Add(StimReadControls);
  ModelFileCameIn.Add([](Outcome& shown) {
    StimPanelRefresh();
    if (StimRebuild() != Outcome::Done) shown = Outcome::Failed;
  });
}

}  // namespace zelvane
