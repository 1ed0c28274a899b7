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

void RebuildAndPlot(const ControlEvent&) {
  StimRebuild();
  StimPlot();
}

void AutoDrugVoltage(const ControlEvent&) {
  StimReadControls();
  FollowAutomaticStep();
  ShowNumber("StimTarget", Stimulus.StimTarget);
  StimRebuild();
  StimPlot();
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
  StimPlot();
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
    // name             kind     label                   unit      format    command                action
    {"StimMode",        Choice,  "Mode",                 "",       "%g",     "ChangeStimMode",      RebuildAndPlot,
     ModeHelp, 0, 0, "AUTOMATIC|MANUAL|EXPONENTIAL|USER|NOT AVAILABLE", StimAutomatic},
    {"StimTarget",      Choice,  "Stimulus shown",       "",       "%g",     "FxnCurrentStim",      RebuildAndPlot,
     TargetHelp, 0, 0, "Voltage|Drug1|Drug2|Drug3|Drug4|Drug5|Drug6"},
    {"StimLogAxis",     Switch,  "Y axis",               "",       "%g",     "FxnLogLin",           FxnLogLin,
     "Linear or logarithmic axis of the stimulus.", 0, 0, "Linear|Logarithmic"},
    {"StimSweepLength", Readout, "Length of sweep",      "",       "%.3ems", "",                    nullptr,
     "Length of the simulation."},
    {"StimConfigFile",  Readout, "Model file",           "",       "",       "",                    nullptr,
     ConfigFileHelp},
    {"EraseStim",       Button,  "Erase",                "",       "",       "EraseStim",           Run<EraseStim>,
     "Set the stimulus shown to zero over the length of the simulation."},
    {"StimDone",        Button,  "Done",                 "",       "",       "FxnStimDone",         FxnStimDone,
     "Close Stimulus Panel"},
};

constexpr ControlDecl AutomaticControls[] = {
    {"AutoDrugOrVolt",  Switch,  "Step of",              "",       "%g",     "AutoDrugVoltage",     AutoDrugVoltage,
     AutoTargetHelp, 0, 0, "Drug1|Voltage"},
    {"AutoValue",       Number,  "Amplitude",            "V or M", "%g",     "FxnAutoStepAmp",      RebuildAndPlot,
     "Amplitude of the automatic step, in volts or molar."},
    {"AutoStart",       Number,  "Start",                "ms",     "%g",     "FxnAutoStepStart",    RebuildAndPlot,
     "Time (ms) at which the automatic step starts."},
    {"AutoStop",        Number,  "Stop",                 "ms",     "%g",     "FxnAutoStepStop",     RebuildAndPlot,
     "Time (ms) at which the automatic step stops."},
    {"AutoFilterOn",    Switch,  "Filter Drug1",         "",       "%g",     "AutoFilterOn",        RebuildAndPlot,
     AutoFilterHelp, 0, 0, "Off|On"},
};

constexpr ControlDecl ManualControls[] = {
    {"StepAmp",         Number,  "Amplitude",            "V or M", "%g",     "FxnManualStepAmp",    Rebuild,
     "Amplitude of the step, in volts or molar."},
    {"StepStart",       Number,  "Start",                "ms",     "%g",     "FxnManualStepStart",  FxnManualStepEdge,
     "Time (ms) at which the step starts."},
    {"StepStop",        Number,  "Stop",                 "ms",     "%g",     "FxnManualStepStop",   FxnManualStepEdge,
     "Time (ms) at which the step stops."},
    {"StepDuration",    Number,  "Duration",             "ms",     "%g",     "FxnManualDuration",   FxnManualDuration,
     "Length (ms) of the step. A new length changes the stop time."},
    {"StepRamp",        Switch,  "Shape",                "",       "%g",     "FxnManualRamp",       Rebuild,
     "Step with a flat top, or linear ramp from zero to the amplitude.", 0, 0, "Flat|Ramp"},
    {"CreateStim",      Button,  "Add step",             "",       "",       "CreateStim",          Run<CreateStim>,
     CreatorHelp},
    {"StepRiseTau",     Number,  "Rise time constant",   "ms",     "%g",     "FxnManualRiseTau",    Rebuild,
     RiseTauHelp},
    {"StepDecayTau",    Number,  "Decay time constant",  "ms",     "%g",     "FxnManualDecayTau",   Rebuild,
     DecayTauHelp},
    {"CreateExpStim",   Button,  "Add edged step",       "",       "",       "CreateExpStim",       Run<CreateExpStim>,
     CreatorHelp},
};

constexpr ControlDecl ExponentialControls[] = {
    {"ExpStart",        Number,  "Start",                "ms",     "%g",     "FxnExpStart",         Rebuild,
     "Time (ms) at which the waveform starts."},
    {"ExpOffset",       Number,  "Offset",               "V or M", "%g",     "FxnExpOffset",        Rebuild,
     "Offset (steady-state value) from the start of the waveform to the end of the record."},
    {"ExpComponents",   Choice,  "Decay components",     "",       "%g",     "ExpComponents",       Rebuild,
     "Number of exponential components of the decay.", 0, 0, "1|2", 1},
    {"ExpAmp1",         Number,  "Amplitude 1",          "V or M", "%g",     "FxnExpAmp1",          Rebuild,
     "Amplitude of the first decay component, in volts or molar."},
    {"ExpTau1",         Number,  "Decay time constant 1", "ms",    "%g",     "FxnExpTau1",          Rebuild,
     "Time constant (ms) of the first decay component. With 0 the button adds nothing."},
    {"ExpAmp2",         Number,  "Amplitude 2",          "V or M", "%g",     "FxnExpAmp2",          Rebuild,
     "Amplitude of the second decay component, in volts or molar."},
    {"ExpTau2",         Number,  "Decay time constant 2", "ms",    "%g",     "FxnExpTau2",          Rebuild,
     "Time constant (ms) of the second decay component. With 0 the button adds nothing."},
    {"ExpRiseFlag",     Switch,  "Rise",                 "",       "%g",     "ExpRise",             Rebuild,
     "Instantaneous or exponential rise of the waveform.", 0, 0, "Instantaneous|Exponential"},
    {"ExpRiseTau",      Number,  "Rise time constant",   "ms",     "%g",     "FxnExpRiseTau",       Rebuild,
     "Time constant (ms) of the exponential rise. With 0 the button adds nothing."},
    {"CreateExp",       Button,  "Add exponential",      "",       "",       "CreateExp",           Run<CreateExp>,
     CreatorHelp},
};

constexpr ControlDecl TrainControls[] = {
    {"TrainCount",      Number,  "Pulses",               "",       "%g",     "FxnTrainUpdate",      FxnTrainUpdate,
     "Number of pulses of the train."},
    {"TrainDelay",      Number,  "First pulse at",       "ms",     "%g",     "FxnTrainUpdate",      FxnTrainUpdate,
     "Time (ms) at which the first pulse starts."},
    {"TrainInterval",   Number,  "Interval",             "ms",     "%g",     "FxnTrainUpdate",      FxnTrainUpdate,
     "Time (ms) from the start of one pulse to the start of the next."},
    {"TrainExpFlag",    Switch,  "Shape of pulses",      "",       "%g",     "FxnTrainExp",         Rebuild,
     "Kind of pulse: step, or exponential waveform.", 0, 0, "Steps|Exponentials"},
    {"TrainRiseFlag",   Switch,  "Edges of steps",       "",       "%g",     "FxnTrainRise",        Rebuild,
     "Kind of step in the train: square, or with exponential edges.", 0, 0, "Square|Exponential"},
    {"TrainLength",     Readout, "Length of train",      "ms",     "%g",     "",                    nullptr,
     "Length of the train: number of pulses times interval."},
    {"TrainFrequency",  Readout, "Frequency",            "Hz",     "%g",     "",                    nullptr,
     "Pulses per second of the train."},
    {"CreateTrain",     Button,  "Add train",            "",       "",       "CreateTrain",         Run<CreateTrain>,
     CreatorHelp},
};

constexpr ControlDecl FilterControls[] = {
    {"FilterFc",        Number,  "Corner",               "kHz",    "%g",     "FxnStimFc",           RebuildAndPlot,
     "-3 dB corner (kHz) of the Gaussian filter."},
    {"FilterStim",      Button,  "Filter",               "",       "",       "FilterStim",          Run<FilterStim>,
     "Filter the stimulus shown with the Gaussian filter."},
};

constexpr ControlDecl MainPanelButton[] = {
    {"StimulusButton",  Button,  "Stimulus...",          "",       "",       "FxnStimulusButton",   FxnStimulusButton,
     StimulusButtonHelp},
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
