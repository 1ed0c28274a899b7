// Circuit, corrections and filters on RsCorrectionPanel.
#include "rscm/rscm_panel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "model/model_events.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "rscm/rs_correct.h"
#include "rscm/rs_file.h"
#include "rscm/rscm_store.h"
#include "screen/screen.h"
#include "trace/filtered_trace.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "RsCorrectionPanel";
constexpr char TraceGraph[] = "RsCorrectionPanel.trace";
constexpr char IvGraph[] = "RsCorrectionPanel.iv";
constexpr char CircuitGroup[] = "circuit";

constexpr char ConductanceQuestion[] = "Data must be conductance trace in pS (output pA).";
constexpr char VoltageQuestion[] =
    "Data must be voltage step trace in mV; the output pA (e.g. for capacity transient in whole cell "
    "configuration).";
constexpr char CurrentQuestion[] = "Data must be voltage-clamp current trace in pA (output in pA).";
constexpr char AlreadyFiltered[] = "Data has already been subject to series resistance filtering";
constexpr char AlreadyCorrected[] = "Data has already been corrected for series resistance errors";
constexpr char RestUnfiltered[] =
    "Only the first %d points were filtered: as many as the record last made has. The others are as they "
    "were.";
constexpr char NoRelation[] = "No IV curve loaded for correction.";
constexpr char Corrected[] = "RsCm Corrected";
constexpr char Uncorrected[] = "RsCm UnCorrected";
constexpr char ConductanceTitle[] = "RC-Filt(pA)";
constexpr char VoltageTitle[] = "pA(Vm step)";
constexpr char LinearIv[] = "linear";
constexpr char LoadTitle[] = "Import model IV curve (V,relative current) for RsCm correction";

constexpr float TwoPi = 6.283185308F;

/// Units for the codes of Trace.TraceUnits.
constexpr std::array<const char*, 7> UnitNames = {"#", "pS", "pA", "Po", "uV", "mV", "nA"};

const char* FilteredTitle = ConductanceTitle;  // title after the filter of the present trace

// -- Showing --

/// Shows a text that has changed: this runs after every commit.
void ShowNew(std::string_view control, const std::string& text) {
  if (ControlNamed(control).text != text) ShowText(control, text);
}

/// Shows the state of the trace on every panel with a readout for it.
void ShowStatus() {
  const bool corrected = Trace.RsCorrected != 0;
  for (Control& control : Screen.controls) {
    if (control.name != "RsCmStatus") continue;
    control.text = corrected ? Corrected : Uncorrected;
    control.colour = corrected ? "green" : "red";
  }
}

void ShowLagTau() {
  const float tau = 1.0F / (RsCm.RcLagFc * TwoPi);
  ShowNew("RcLagTau", std::isfinite(tau) ? FormatNumber("%.4g", static_cast<double>(tau)) : std::string{});
}

/// Shows the switch when it has changed, for example by a model file.
void ShowAuto() {
  static int shown = 0;
  if (shown != RsCm.RsCmAuto) ShowField("RsCmAuto");
  shown = RsCm.RsCmAuto;
}

void ShowReadouts() {
  ShowNew("RcADInterval", FormatNumber("%g", static_cast<double>(Model.ADInterval)));
  if (const Control* name = FindControl("DataName")) ShowNew("RcFileName", name->text);
  ShowLagTau();
  ShowAuto();
  ShowStatus();
}

void PlotRelation() {
  Graph& graph = GraphNamed(IvGraph);
  ClearPlots(graph);
  const auto count = Index(std::clamp(RsCm.RcIvCount, 0, MaxIvPoints));
  const std::vector<double> volts(RsCm.RcIvVolt.begin(),
                                  RsCm.RcIvVolt.begin() + static_cast<std::ptrdiff_t>(count));
  PlotPoints(graph, PlotStyle::Line, Black, volts, std::span(RsCm.RcIvCurrent).first(count));
  ShowText("RcIvCount", FormatText("%d", RsCm.RcIvCount));
}

const char* UnitTitle() {
  const bool known = Trace.TraceUnits >= 0 && Trace.TraceUnits < static_cast<int>(UnitNames.size());
  return known ? UnitNames[Index(Trace.TraceUnits)] : "";
}

// -- Opening and closing --

void OpenPanel() {
  if (RsCm.RcIvCount == 0) SetLinearIv();
  if (RsCm.RcIvLoaded == 0) ShowText("RcIvFileName", LinearIv);
  WriteControls(PanelName, CircuitGroup);
  ShowField("RsCmAuto");
  PlotRelation();
  ShowTask(PanelName);
  RefreshRsCmView();
  TraceFilterUpdate();
}

void LeavePanel() {
  ReadControls(PanelName, CircuitGroup);
  LeaveTask(PanelName);
}

// -- Commands --

void FxnDoneRC(const ControlEvent&) {
  LeavePanel();
}

void FxnLagCorr(const ControlEvent&) {
  ShowLagTau();
}

/// Shows a message when the recording is longer than the record, because the filters cover only the record.
void TellOfRest() {
  if (Model.NumPoints > Model.RecordPoints) {
    MessagePopup(NoticeTitle, FormatText(RestUnfiltered, Model.RecordPoints));
  }
}

/// Asks, reads the panel and filters, unless the trace is already filtered.
void FilterTrace(const char* question, Outcome (*filter)(), const char* title) {
  if (!ConfirmPopup(NoticeTitle, question)) return;
  ReadControls(PanelName, CircuitGroup);
  if (Trace.RcFiltered != 0) {
    MessagePopup(NoticeTitle, AlreadyFiltered);
  } else if (filter() == Outcome::Done) {
    Trace.RcFiltered = 1;
    FilteredTitle = title;
    TellOfRest();
  }
  TellTraceCame();
}

void CorrectTrace(Outcome (*correct)(float, float, float)) {
  ReadControls(PanelName, CircuitGroup);
  if (Trace.RsCorrected != 0) {
    MessagePopup(NoticeTitle, AlreadyCorrected);
  } else if (correct(RsCm.RcFracVolt, RsCm.RcFracCap, RsCm.RcLagFc) == Outcome::Done) {
    Trace.RsCorrected = 1;
  }
}

void RC_FilterConductanceButton(const ControlEvent&) {
  FilterTrace(ConductanceQuestion, RcFilterConductance, ConductanceTitle);
}

void RC_FilterVoltageButton(const ControlEvent&) {
  FilterTrace(VoltageQuestion, RcFilterVoltage, VoltageTitle);
}

void RC_FilterCorrectLinearButton(const ControlEvent&) {
  if (!ConfirmPopup(NoticeTitle, CurrentQuestion)) return;
  CorrectTrace(RsCorrectLinear);
  TellTraceCame();
}

void RC_FilterCorrectNonlinearButton(const ControlEvent&) {
  if (!ConfirmPopup(NoticeTitle, CurrentQuestion)) return;
  if (RsCm.RcIvLoaded == 0) {
    MessagePopup(NoticeTitle, NoRelation);
  } else {
    CorrectTrace(RsCorrectNonlinear);
  }
  TellTraceCame();
}

void FxnFileCorrect(const ControlEvent&) {
  const Outcome outcome = FileCorrect([] { ReadControls(PanelName, CircuitGroup); });
  if (outcome != Outcome::Refused) TellTraceCame();
}

void RC_LoadIVButton(const ControlEvent&) {
  const auto path =
      FileSelectPopup({.title = LoadTitle, .defaultName = "*.iv", .filter = "*.iv;*.*", .save = false});
  if (!path) return;
  const IvFile file = LoadIvFile(*path);
  if (file == IvFile::Unreadable) return;
  PlotRelation();
  ShowText("RcIvFileName", file == IvFile::InUse ? *path : LinearIv);
}

constexpr auto Number = ControlKind::Number;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl CircuitControls[] = {
    {.name = "RcRs", .kind = Number, .label = "Series resistance", .unit = "Ohm", .format = "%g",
     .command = "FxnRCRs", .help = "Whole cell series resistance in Ohms"},
    {.name = "RcCm", .kind = Number, .label = "Capacitance", .unit = "F", .format = "%g", .command = "FxnRCCm",
     .help = "Whole cell capacitance in Farads"},
    {.name = "RcRm", .kind = Number, .label = "Input resistance", .unit = "Ohm", .format = "%g", .command = "FxnRCRm",
     .help = "Input resistance in Ohms"},
    {.name = "RcVhold", .kind = Number, .label = "Holding potential", .unit = "V", .format = "%g",
     .command = "FxnRCVhold", .help = "Holding potential in Volts"},
    {.name = "RcVrev", .kind = Number, .label = "Reversal potential", .unit = "V", .format = "%g",
     .command = "FxnRCVreversal", .help = "Reversal potential for linear correction in Volts"},
    {.name = "RcFracVolt", .kind = Number, .label = "Voltage error", .format = "%g", .command = "FxnFracVolt",
     .help = "Fraction of series resistance voltage error to correct"},
    {.name = "RcFracCap", .kind = Number, .label = "Capacitive current", .format = "%g", .command = "FxnFracCap",
     .help = "Fraction of series resistance capacitative current error to correct"},
    {.name = "RcLagFc", .kind = Number, .label = "Lag corner", .unit = "Hz", .format = "%g", .command = "FxnLagCorr",
     .action = FxnLagCorr, .help = "Fc in Hz for 1 pole filter applied to capacitative current correction"},
};
constexpr ControlDecl StateControls[] = {
    {.name = "RsCmAuto", .kind = ControlKind::Switch, .label = "Correct on reading", .format = "%d",
     .command = "FxnRsCmAuto",
     .help = "Correct every trace for series resistance when it is read. Uses the linear correction and the "
     "settings of this panel.",
     .choices = "off|on"},
    {.name = "RsCmStatus", .kind = Readout, .label = "State", .format = "",
     .help = "Shows whether the trace on display is corrected for series resistance."},
    {.name = "RcLagTau", .kind = Readout, .label = "Lag time constant", .unit = "s", .format = "",
     .command = "FxnLagTau", .help = "Tau lag = 1 / (2 PI dt Fc)"},
    {.name = "RcADInterval", .kind = Readout, .label = "Interval", .unit = "ms", .format = "",
     .command = "FxnRCADInterval", .help = "Time interval in ms"},
    {.name = "RcFileName", .kind = Readout, .label = "Data", .format = "", .command = "FxnRCFilename",
     .help = "Filename for filtering or Rs correction"},
    {.name = "RcIvFileName", .kind = Readout, .label = "IV curve", .format = "", .command = "FxnIVFilename",
     .help = "Filename for nonlinear normalized IV for filter correction"},
    {.name = "RcIvCount", .kind = Readout, .label = "Points", .format = "%d", .help = "Number of points of the IV curve."},
};
constexpr ControlDecl CommandControls[] = {
    {.name = "RcCorrectLinear", .kind = Button, .label = "Correct (linear IV)", .format = "",
     .command = "RC_FilterCorrectLinearButton", .action = RC_FilterCorrectLinearButton,
     .help = "Correct current trace (pA) for RC filtering assuming linear IV"},
    {.name = "RcCorrectNonlinear", .kind = Button, .label = "Correct (measured IV)", .format = "",
     .command = "RC_FilterCorrectNonlinearButton", .action = RC_FilterCorrectNonlinearButton,
     .help = "Correct current trace (pA) for RC filtering assuming nonlinear IV; IV must be loaded"},
    {.name = "RcFromConductance", .kind = Button, .label = "Filter conductance", .format = "",
     .command = "RC_FilterConductanceButton", .action = RC_FilterConductanceButton,
     .help = "Subject conductance waveform to whole cell filtering; output is in pA"},
    {.name = "RcFromVoltage", .kind = Button, .label = "Filter voltage step", .format = "",
     .command = "RC_FilterVoltageButton", .action = RC_FilterVoltageButton,
     .help = "Convert voltage step to capacitative transient; output is in pA"},
    {.name = "RcLoadIv", .kind = Button, .label = "Load IV curve...", .format = "", .command = "RC_LoadIVButton",
     .action = RC_LoadIVButton,
     .help = "Load IV curve for nonlinear correction from two column column delimited ASCII file (3-2048 values) in V and relative current"},
    {.name = "RcFileCorrect", .kind = Button, .label = "Correct a file...", .format = "", .command = "FxnFileCorrect",
     .action = FxnFileCorrect,
     .help = "Read an ABF file, correct all of it (linear IV), and save it as another ABF file."},
    {.name = "DoneRC", .kind = Button, .label = "Done", .format = "", .command = "FxnDoneRC", .action = FxnDoneRC,
     .help = "Close RsCm window."},
};
constexpr MenuDecl RsCmMenu[] = {{"Tools/Series resistance...", "RsCmFilterFxn", OpenPanel}};
// clang-format on

void CorrectIfAsked() {
  if (RsCm.RsCmAuto == 0) return;
  CorrectTraceRead();
  Trace.RsCorrected = 1;
}

}  // namespace

void AddRsCorrectionPanel() {
  AddPanel({.name = PanelName,
            .title = "Series resistance",
            .tag = "RC",
            .dim = ShowReadouts,
            .close = LeavePanel,
            .help =
                "Correct a current for series resistance and membrane capacitance, or show how they filter a "
                "conductance or a voltage step."});
  AddControls(PanelName, CircuitGroup, CircuitControls);
  AddControls(PanelName, "state", StateControls);
  AddControls(PanelName, "commands", CommandControls);
  AddGraph(PanelName, TraceGraph, "Time (ms)", "");
  AddGraph(PanelName, IvGraph, "Voltage (V)", "Relative current");
  RecordingToCorrect.Add(CorrectIfAsked);
  TraceChanged.Add(RefreshRsCmView);
  ModelFileToSave.Add([] { StoreTyped("RsCmAuto"); });
  AddMenu(RsCmMenu);
}

void CorrectTraceRead() {
  ReadControls(PanelName, CircuitGroup);
  RsCorrectTrace();
}

void RefreshRsCmView() {
  Graph& graph = GraphNamed(TraceGraph);
  ClearPlots(graph);
  const auto samples = std::clamp(Model.NumPoints, 0, static_cast<int>(Trace.SimTrace.size()));
  PlotWave(graph, PlotStyle::Line, Black, Trace.SimTrace.first(Index(samples)), 0.0,
           static_cast<double>(Model.ADInterval));
  SetAxisTitle(graph, 'y', Trace.RcFiltered != 0 ? FilteredTitle : UnitTitle());
  ShowReadouts();
}

}  // namespace zelvane
