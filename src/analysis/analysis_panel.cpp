// AnalysisPanel: settings of the measures, readouts and the commands that measure.
#include "analysis/analysis_panel.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "analysis/analyze.h"
#include "analysis/exponential_fit.h"
#include "analysis/measures.h"
#include "analysis/shown_counts.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "numerics/rounding.h"
#include "parameters/fit_limits_panel.h"
#include "parameters/fit_modes.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/index.h"
#include "screen/screen.h"
#include "trace/trace_events.h"
#include "trace/trace_graph.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char SettingsGroup[] = "settings";
constexpr char ResultsGroup[] = "results";

constexpr char PanelHelp[] =
    "Measure the response in the trace: baseline, peak, rise, decay, latencies and area, for one sweep or "
    "for all sweeps of a recording.";
constexpr char WaveformFitQuestion[] =
    "Do you want to re-initiate waveform fitting?\nIf not, AnalysisMode and FitLimits to analyze peak, rise "
    "time, decay times etc.";
constexpr char LiveColour[] = "mark";  // of readouts with live values
constexpr char NoFit[] = "No exponential fit ran.";

// -- The choice of the exponential fit --

constexpr double OtherFit = 4.0;  // place of the word that stands for a fit of another subject

/// Returns the place of a FitMode among the words of its field.
double ChosenExponential(double mode) {
  return mode >= 0.0 && mode <= FitRise ? mode : OtherFit;
}

double FitModeOfChoice(double choice) {
  return choice == OtherFit ? Parameters.FitMode : choice;
}

struct OtherFitWord {
  int mode;
  const char* word;
};
constexpr OtherFitWord OtherFitWords[] = {
    {FitDoseResponse, "dose-response"}, {FitSublevels, "sublevels"}, {FitCurrentVariance, "current-variance"},
    {FitDwells, "dwell times"},         {FitSpectrum, "spectrum"},   {FitWaveforms, "waveforms"}};

/// Gives the field of the exponential fit a word for the fit of another subject while that is the present one.
void ShowOtherFit() {
  Control& control = ControlNamed("FitMode");
  control.choices.resize(static_cast<std::size_t>(OtherFit));
  for (const auto& [mode, word] : OtherFitWords) {
    if (mode == Parameters.FitMode) control.choices.emplace_back(word);
  }
}

// -- Callbacks --

void FxnBaselinePts(const ControlEvent&) {
  ReadAnalysisPanel();
  CutStretch(Analysis.BaselineStart, Analysis.BaselinePts);
  FollowSettings();
}

void FxnPeakSearchPts(const ControlEvent&) {
  ReadAnalysisPanel();
  CutStretch(Analysis.StartAnalysis, Analysis.PeakSearchPts);
  FollowSettings();
}

void FxnPosition(const ControlEvent&) {
  PlaceAnalysisCursors();
  ShowLiveMeasures(StoredMeasureSettings());
}

void FxnSetting(const ControlEvent&) {
  ShowLiveMeasures(StoredMeasureSettings());
}

/// Keeps the settings of the fit in their ranges.
void FxnFitSetting(const ControlEvent& event) {
  AnalysisFitStore& f = AnalysisFit;
  f.AnalysisFitPts = std::clamp(f.AnalysisFitPts, 1, MaxFormulaPoints);
  f.AnalysisParse = std::max(f.AnalysisParse, 1);
  f.FitStartPts = std::max(f.FitStartPts, 0);
  f.AnalysisNumIterations = std::max(f.AnalysisNumIterations, 1);
  f.AnalysisNumRestarts = std::max(f.AnalysisNumRestarts, 0);
  f.AnalysisTolerance = std::max(f.AnalysisTolerance, 0.0);
  ShowField(event.control->name);
  ShowLiveMeasures(StoredMeasureSettings());
}

void FxnShowResidual(const ControlEvent&) {
  ShowAnalysisMarks();
}

void FxnTraceUnits(const ControlEvent&) {
  if (Trace.TraceUnits <= TraceProbability) {
    Model.DisplayUnits = Trace.TraceUnits;
    ShowField("DisplayUnits");
  }
  ShowTraceUnits();
  ShowMeasures();
  ShowBetweenCursors();
}

void AN_Expmodel(const ControlEvent&) {
  FollowFitMode();
}

void FxnFitParams(const ControlEvent&) {
  ReadAnalysisPanel();
  ShowFitLimits(ChosenExponential(Parameters.FitMode) == OtherFit ? FitDecay : Parameters.FitMode);
}

void AN_AnalyzeButton(const ControlEvent&) {
  if (Trace.TraceValid == 0) return;
  if (Parameters.FitMode == FitWaveforms) {
    MessagePopup(NoticeTitle, WaveformFitQuestion);
    return;
  }
  ForgetStop();
  AnalyzeTrace();
}

void FxnAnalysisDone(const ControlEvent&) {
  LeaveTask(AnalysisPanelName);
}

void FxnAnalysisButton(const ControlEvent&) {
  OpenAnalysisPanel();
}

void CloseAnalysisPanel() {
  LeaveTask(AnalysisPanelName);
}

void DimAnalysisPanel() {
  SetDimmed("PeakOption", Analysis.PeakAvePts <= 1);
  SetDimmed("YMinGain", Analysis.AutoRescale != 0);
  SetDimmed("YMaxGain", Analysis.AutoRescale != 0);
}

constexpr auto Number = ControlKind::Number;
constexpr auto Switch = ControlKind::Switch;
constexpr auto Choice = ControlKind::Choice;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

constexpr char FitAmpHelp[] =
    "The amplitude from the fitted exponential decay function (instant rise)\n\ni(t)=Amplitude1 "
    "Exp(-time/tau1) + "
    "Amplitude2 Exp(-time/tau2) + offset.";
constexpr char FitTauHelp[] =
    "The decay time constant in ms from the fitted exponential decay function (instant "
    "rise)\n\ni(t)=Amplitude1 "
    "Exp(-time/tau1) + Amplitude2 Exp(-time/tau2) + offset.";
constexpr char FitOffsetHelp[] =
    "The offset from the fitted exponential decay function (instant rise)\n\ni(t)=Amplitude1 Exp(-time/tau1) "
    "+ "
    "Amplitude2 Exp(-time/tau2) + offset.";
constexpr char GoodnessHelp[] =
    "The goodness of fit (R2) is calculated from 1.0 - SSfit / SStot, where SS is sum of "
    "squares.\n\nNormalized "
    "residuals is sum of squares difference divided by #fitted points.";

// clang-format off
constexpr ControlDecl SettingControls[] = {
    {.name = "BaselineStart", .kind = Number, .label = "Start Baseline", .unit = "ms", .format = "%g",
     .command = "FxnBaselineStart", .action = FxnPosition,
     .help = "Time (ms) at which the baseline begins: cursor 1 on the plot. The measure starts at the whole "
     "millisecond before it."},
    {.name = "BaselinePts", .kind = Number, .label = "Length of baseline", .unit = "ms", .format = "%g",
     .command = "FxnBaselinePts", .action = FxnBaselinePts,
     .help = "Length (ms) of the baseline. The baseline is the mean of its samples. The variance needs at least "
     "two samples.",
     .toShown = CountToMs, .toStored = MsToCount},
    {.name = "StartAnalysis", .kind = Number, .label = "Start Analysis", .unit = "ms", .format = "%g",
     .command = "FxnStartAnalysis", .action = FxnPosition,
     .help = "Time (ms) at which the search for the peak begins. The integral begins here too."},
    {.name = "PeakSearchPts", .kind = Number, .label = "Length of peak search", .unit = "ms", .format = "%g",
     .command = "FxnPeakSearchPts", .action = FxnPeakSearchPts,
     .help = "Length (ms) of the search for the peak. The peak is the sample, or the group of samples, farthest "
     "from the baseline.",
     .toShown = CountToMs, .toStored = MsToCount},
    {.name = "PeakAvePts", .kind = Number, .label = "Peak Average Pts", .format = "%d", .command = "FxnPeakAvePts", .action = FxnSetting,
     .help = "Number of consecutive samples to average for the peak. More samples reduce the bias of the peak in "
     "a noisy trace."},
    {.name = "PeakOption", .kind = Choice, .label = "Peak stands at", .format = "%d", .command = "FxnPeakOption", .action = FxnSetting,
     .help = "Position of the peak among the averaged samples: the first, the middle one, or the sample after the "
     "last.",
     .choices = "first|middle|end"},
    {.name = "RiseStartFrac", .kind = Number, .label = "Rise from", .format = "%g", .command = "FxnRiseStartFrac", .action = FxnSetting,
     .help = "Fraction of the amplitude at which the rise time begins, such as 0.1."},
    {.name = "RiseEndFrac", .kind = Number, .label = "Rise to", .format = "%g", .command = "FxnRiseEndFrac", .action = FxnSetting,
     .help = "Fraction of the amplitude at which the rise time ends, such as 0.9."},
    {.name = "FracDecay", .kind = Number, .label = "Fraction decayed", .format = "%g", .command = "FxnFracDecay", .action = FxnSetting,
     .help = "Decay time and width use the level at which this fraction of the amplitude is lost. With 0.5 the "
     "width is the half-width. With 0.632 the decay time of an exponential is its time constant."},
    {.name = "LatencyPos", .kind = Number, .label = "Latency from", .unit = "ms", .format = "%g",
     .command = "FxnLatencyPos", .action = FxnPosition,
     .help = "Time (ms) at which latencies begin, for example that of the stimulus: cursor 9 on the plot."},
    {.name = "LatencyFrac", .kind = Number, .label = "Latency to fraction", .format = "%g",
     .command = "FxnLatencyFrac", .action = FxnSetting, .help = "Fraction of the amplitude at which the latency of the rise ends."},
    {.name = "FitMode", .kind = Choice, .label = "Exponential fit", .format = "%d", .command = "AN_Expmodel", .action = AN_Expmodel,
     .help = "Switch exponential fitting model between single or dual components.",
     .choices = "none|decay|two decays|rise", .toShown = ChosenExponential, .toStored = FitModeOfChoice},
    {.name = "AnalysisFitPts", .kind = Number, .label = "Num Fit Pts", .format = "%d", .command = "FxnNumFitPts",
     .action = FxnFitSetting,
     .help = "Number of data points used by simplex algorithm in fitting routine.\nTotal fit range is defined by the product "
            "of Parse and Num Fit Pts."},
    {.name = "AnalysisParse", .kind = Number, .label = "Parse", .format = "%d", .command = "FxnParseWaveform", .action = FxnFitSetting,
     .help = "Number of data points to skip in between each fitted data point.\nTotal fit range is defined by the product of "
            "Parse and Num Fit Pts."},
    {.name = "DualSpeedPts", .kind = Number, .label = "Dual speed points", .format = "%d", .command = "FxnDualSpeed",
     .action = FxnFitSetting,
     .help = "Fit exponential decay using two different time intervals.\nThe specified number of points are used point-by-point "
     "for fitting,\nafter which an interval defined by Parse is used to separate fitted points."},
    {.name = "FitStartPts", .kind = Number, .label = "Skip at start", .unit = "samples", .format = "%d",
     .command = "FxnFitStart", .action = FxnFitSetting,
     .help = "Skip the specified number fo data points after the peak amplitude before starting to use data points for fitting."},
    {.name = "FitExtrapolate", .kind = Switch, .label = "Extrapolate amplitude", .format = "%d", .command = "FxnExtrapolate",
     .action = FxnSetting,
     .help = "Extrapolate Peak amplitude to start of peak search (left red cursor).", .choices = "off|on"},
    {.name = "AnalysisNumIterations", .kind = Number, .label = "Iterations", .format = "%d", .command = "FxnNumIterations",
     .action = FxnFitSetting,
     .help = "Number of evaluations to complete for each call to simplex algorithm.  A single fitting session implements the "
     "simplex routine Num Restart times"},
    {.name = "AnalysisNumRestarts", .kind = Number, .label = "Restarts", .format = "%d", .command = "FxnNumRestarts",
     .action = FxnFitSetting,
     .help = "Number of times to restart the simplex algorithm during each Fitting session."},
    {.name = "AnalysisTolerance", .kind = Number, .label = "Tolerance", .format = "%g", .command = "FxnTolerance",
     .action = FxnFitSetting,
     .help = "Factional tolerance, which reflects difference between various internal simplex solutions.\nWhen the specified "
     "unitless fraction is reached, the simplex has converged."},
    {.name = "AutoSaveMeasures", .kind = Switch, .label = "Save each analysis", .format = "%d",
     .command = "FxnAutoSaveMeasures",
     .help = "Append every analysis to the measures file (*.res). A spreadsheet can read this file.", .choices = "off|on"},
    {.name = "VerifyMeasures", .kind = Switch, .label = "Ask before saving", .format = "%d",
     .command = "FxnVerifyMeasures", .help = "Ask before each automatic save.", .choices = "off|on"},
};

/// Not among the settings that commands read from the panel: a run or a recording changes it too.
constexpr ControlDecl UnitControls[] = {
    {.name = "TraceUnits", .kind = Choice, .label = "Units of the trace", .format = "%d", .command = "FxnTraceUnits",
     .action = FxnTraceUnits,
     .help = "Units of the trace. A recording in ABF names them; choose them for a text recording. #, pS, pA and Po "
     "become the display units of the model too.", .choices = "#|pS|pA|Po|uV|mV|nA"},
};

constexpr ControlDecl ResultControls[] = {
    {.name = "Baseline", .kind = Readout, .label = "Baseline (pA)", .format = "%.5g",
     .help = "Mean of the samples of the baseline."},
    {.name = "BaselineVar", .kind = Readout, .label = "Var (pA2)", .format = "%.5g",
     .help = "Variance of the samples of the baseline."},
    {.name = "PeakValue", .kind = Readout, .label = "Peak (pA)", .format = "%.5g",
     .help = "Mean of the samples farthest from the baseline. The baseline is not subtracted."},
    {.name = "Amplitude", .kind = Readout, .label = "Amp", .format = "%.5g", .help = "Peak less baseline."},
    {.name = "RiseTime", .kind = Readout, .label = "Risetime", .unit = "ms", .format = "%.5g",
     .help = "Time between the two rise levels, interpolated between samples."},
    {.name = "RisePoints", .kind = Readout, .label = "Risepts", .format = "%g",
     .help = "Number of samples between the rise levels."},
    {.name = "RiseSlope", .kind = Readout, .label = "Slope", .format = "%.5g",
     .help = "Slope per ms of the straight line through the samples between the rise levels. It needs at least "
     "three samples."},
    {.name = "DecayTime", .kind = Readout, .label = "FracDecay", .unit = "ms", .format = "%.5g",
     .help = "Time from the peak until the trace has lost the fraction that you set. It is empty when the trace "
     "does not decay so far."},
    {.name = "FracWidth", .kind = Readout, .label = "Width", .unit = "ms", .format = "%.5g",
     .help = "Width of the response at the level of the decay time."},
    {.name = "LatencyRise", .kind = Readout, .label = "LatRise", .unit = "ms", .format = "%.5g",
     .help = "Time from the latency cursor until the rising response reaches the fraction that you set."},
    {.name = "LatencyPeak", .kind = Readout, .label = "LatPeak", .unit = "ms", .format = "%.5g",
     .help = "Time from the latency cursor to the peak."},
    {.name = "Integral", .kind = Readout, .label = "Integral(pAms)", .format = "%.5g",
     .help = "Area between trace and baseline from Start Analysis over Num Fit Pts x Parse samples. The bar at "
     "the foot of the plot shows this part."},
    {.name = "Coastline", .kind = Readout, .label = "Coastline", .format = "%.5g",
     .help = "Sum of the sizes of all steps from sample to sample over the same part."},
    {.name = "FitAmp1", .kind = Readout, .label = "Amp1 (pA)", .format = "%.5g", .command = "FxnExponentialAmp",
     .help = FitAmpHelp},
    {.name = "FitTau1", .kind = Readout, .label = "Tau (ms)", .unit = "ms", .format = "%.5g",
     .command = "FxnExponentialTau", .help = FitTauHelp},
    {.name = "FitAmp2", .kind = Readout, .label = "Amp2 (pA)", .format = "%.5g", .command = "FxnExponentialAmp2",
     .help = FitAmpHelp},
    {.name = "FitTau2", .kind = Readout, .label = "Tau2 (ms)", .unit = "ms", .format = "%.5g",
     .command = "FxnExponentialTau2", .help = FitTauHelp},
    {.name = "FitOffset", .kind = Readout, .label = "Offset (pA)", .format = "%.5g",
     .command = "FxnExponentialOffset", .help = FitOffsetHelp},
    {.name = "FitGoodness", .kind = Readout, .label = "Goodness of fit", .format = "%.6g",
     .command = "FxnNormResiduals", .help = GoodnessHelp},
    {.name = "AnalysisNormResidual", .kind = Readout, .label = "Residual (pA2)", .format = "%.5g", .help = GoodnessHelp},
    {.name = "AnalysisFitNote", .kind = Readout, .label = "Fit", .format = "", .command = "FxnFitResult",
     .help = "Result from most recent fitting session (Converge, Maximum Iterations, User Break, One Step)."},
};

constexpr ControlDecl ResidualControls[] = {
    {.name = "ShowFitResidual", .kind = Switch, .label = "Show residual", .format = "%d", .command = "FxnShowResidual",
     .action = FxnShowResidual,
     .help = "Show the residual below the response: trace less fitted curve, at the points of the exponential fit.",
     .choices = "off|on"},
};

constexpr ControlDecl StatusControls[] = {
    {.name = "AnalysisFitStatus", .kind = Readout, .label = "Fit parameters", .format = "",
     .help = "Shows whether limits or fixed parameters are in force in an exponential fit, and whether its seeds are found "
     "automatically."},
    {.name = "AnalysisDataName", .kind = Readout, .label = "Data", .format = "",
     .help = "Name of the recording or model of the trace."},
    {.name = "AnalysisEpisodes", .kind = Readout, .label = "Episodes", .format = "",
     .help = "Episode in view, and number of episodes in the file."},
    {.name = "AnalysisRsStatus", .kind = Readout, .format = "",
     .help = "Shows whether the trace is corrected for series resistance and membrane capacitance."},
};

constexpr ControlDecl CommandControls[] = {
    {.name = "AnalyzeButton", .kind = Button, .label = "Analyze", .format = "", .command = "AN_AnalyzeButton",
     .action = AN_AnalyzeButton, .help = "Measure the response in view and add a row to the table."},
    {.name = "FitParams", .kind = Button, .label = "Fit parameters...", .format = "", .command = "FxnFitParams",
     .action = FxnFitParams,
     .help = "Show summary panel for fixed or floating parameters for least squares non-linear fitting.\nThe same panel "
     "also shows the parameter limits and starting guesses used for fitting."},
    {.name = "AnalysisDone", .kind = Button, .label = "Done", .format = "", .command = "FxnAnalysisDone",
     .action = FxnAnalysisDone, .help = "Close the analysis panel. The program keeps table and settings."},
};

constexpr ControlDecl MainPanelButton[] = {
    {.name = "AnalysisButton", .kind = Button, .label = "Analysis...", .format = "", .command = "FxnAnalysisButton",
     .action = FxnAnalysisButton,
     .help = "Go to the analysis panel. It measures the response and collects the measures of many sweeps in a "
     "table."},
};

constexpr MenuDecl AnalysisMenu[] = {{"Analysis/Measure Response...", "Analysis", OpenAnalysisPanel}};
// clang-format on

// -- Labels that follow the units --

constexpr std::array<const char*, 7> UnitWords = {"#", "pS", "pA", "Po", "uV", "mV", "nA"};

struct UnitLabel {
  const char* control;
  const char* withUnit;  // %s = the unit
  const char* plain;     // for numbers without a unit
};
constexpr UnitLabel UnitLabels[] = {{"Baseline", "Baseline (%s)", "Baseline(#)"},
                                    {"BaselineVar", "Var (%s2)", "Var (#2)"},
                                    {"PeakValue", "Peak (%s)", "Peak (#)"},
                                    {"Integral", "Integral(%sms)", "Integral(#ms)"},
                                    {"FitAmp1", "Amp1 (%s)", "Amp1 (#)"},
                                    {"FitAmp2", "Amp2 (%s)", "Amp2 (#)"},
                                    {"FitOffset", "Offset (%s)", "Exp Offset (#)"},
                                    {"AnalysisNormResidual", "Residual (%s2)", "Residual (#2)"}};

void ShowUnits() {
  ShowOtherFit();
  ShowField("TraceUnits");
  const std::string unit = TraceUnitWord();
  for (const UnitLabel& label : UnitLabels) {
    std::string text = unit.empty() ? label.plain : label.withUnit;
    if (!unit.empty()) text.replace(text.find("%s"), 2, unit);
    ControlNamed(label.control).label = text;
  }
  const bool one = Parameters.FitMode == FitDecay || Parameters.FitMode == FitRise;
  ControlNamed("FitTau1").label = one ? "Tau (ms)" : "Tau1 (ms)";
  Graph& graph = GraphNamed(AnalysisPanelName);
  SetAxisTitle(graph, 'y', unit.empty() ? "Amplitude (#)" : "Amplitude (" + unit + ')');
  SetAxisTitle(GraphNamed(AnalysisResidualName), 'y',
               unit.empty() ? "Residual (#)" : "Residual (" + unit + ')');
}

void ShowFitStatus() {
  ShowText("AnalysisFitStatus", AnalysisFitStatusWord());
}

void ShowStatus() {
  ShowFitStatus();
  ShowText("AnalysisDataName", DataFileName());
  ShowNumber("SectionNumber", Trace.EpisodeIndex);
  ShowText("AnalysisEpisodes", FormatText("%d of %d", Trace.EpisodeIndex, Trace.EpisodeCount));
  ShowText("AnalysisRsStatus", Trace.RsCorrected != 0 ? "RsCm Corrected" : "RsCm UnCorrected");
  SetColour("AnalysisRsStatus", Trace.RsCorrected != 0 ? "green" : "red");
}

/// Shows a result, or an empty readout when it was not measured.
void ShowResult(const char* control, double value, bool measured) {
  if (measured)
    ShowNumber(control, value);
  else
    ShowText(control, "");
}

const char* FitNote(const ShownMeasures& shown, bool ran) {
  if (ran) return FitResultWord(Vertices.FitResultCode);
  return IsExponentialFit(Parameters.FitMode) && shown.measures.measured != 0 ? NoFit : "";
}

void ShowFit(const ShownMeasures& shown) {
  const bool ran = Analysis.FittedMode != 0 && !shown.live;
  const bool two = ran && Analysis.FittedMode == FitTwoDecays;
  ShowResult("FitAmp1", AnalysisFit.FitAmp1, ran);
  ShowResult("FitTau1", AnalysisFit.FitTau1, ran);
  ShowResult("FitAmp2", AnalysisFit.FitAmp2, two);
  ShowResult("FitTau2", AnalysisFit.FitTau2, two);
  ShowResult("FitOffset", AnalysisFit.FitOffset, ran);
  ShowResult("FitGoodness", static_cast<double>(AnalysisFit.FitGoodness), ran);
  ShowResult("AnalysisNormResidual", AnalysisFit.AnalysisNormResidual, ran);
  ShowText("AnalysisFitNote", FitNote(shown, ran));
}

/// Reads the panel for a measure, and the limits of an exponential fit, which the engine takes from their copy.
void ReadMeasureSettings() {
  ReadAnalysisPanel();
  if (!IsExponentialFit(Parameters.FitMode)) return;
  FitLimitsRefresh();
  FitLimitsRead();
}

}  // namespace

void AddAnalysisPanel() {
  AddPanel({.name = AnalysisPanelName,
            .title = "Analysis",
            .tag = "AN",
            .close = CloseAnalysisPanel,
            .help = PanelHelp});
  AddControls(AnalysisPanelName, SettingsGroup, SettingControls);
  AddControls(AnalysisPanelName, "units", UnitControls);
  AddControls(AnalysisPanelName, ResultsGroup, ResultControls);
  AddControls(AnalysisPanelName, "residual", ResidualControls);
  AddControls(AnalysisPanelName, "status", StatusControls);
  AddControls(AnalysisPanelName, "commands", CommandControls);
  // A readout shows a result only if it was measured, whatever its field holds.
  for (Control* control : PanelNamed(AnalysisPanelName).controls) {
    if (control->group == ResultsGroup) control->field = FieldRef{};
  }
  AddLiveMeasures();  // before the view, whose listeners show what it keeps
  AddAnalysisView();
  AddMainCursorReadouts();
  AddAnalysisTable();
  AddAnalysisSections();
  PanelNamed(AnalysisPanelName).dim.push_back(DimAnalysisPanel);  // last, because the rule needs the controls
  AddControls(MainPanelName, "analysis", MainPanelButton);
  AddMenu(AnalysisMenu);
  MeasureSettingsWanted.Add(ReadMeasureSettings);
  FitModeChanged.Add(ShowUnits);
  FitPointsReduced.Add([] { ShowField("AnalysisFitPts"); });
  AnalysisFitSwitchesRead.Add(ShowFitStatus);
  ModelFileToSave.Add(ReadAnalysisPanel);
  MeasuresChanged.Add(ShowMeasures);
}

void OpenAnalysisPanel() {
  ShowTask(AnalysisPanelName);
  WriteAnalysisPanel();
  RefreshAnalysisView();
}

void ReadAnalysisPanel() {
  ReadControls(AnalysisPanelName, SettingsGroup);
  FollowFitMode();
}

void ShowAnalysisSettings() {
  WriteControls(AnalysisPanelName, SettingsGroup);
}

void FollowSettings() {
  ShowAnalysisSettings();
  PlaceAnalysisCursors();
  ShowLiveMeasures(StoredMeasureSettings());
}

std::string TraceUnitWord() {
  const bool known = Trace.TraceUnits > 0 && Trace.TraceUnits < static_cast<int>(UnitWords.size());
  return known ? UnitWords[Index(Trace.TraceUnits)] : "";
}

void WriteAnalysisPanel() {
  ShowAnalysisSettings();
  ShowUnits();
  ShowStatus();
  ShowMeasuresFile();
  PlaceAnalysisCursors();
}

void ShowMeasures() {
  const ShownMeasures shown = MeasuresOnPanel();
  const ResponseMeasures& m = shown.measures;
  const auto show = [&](const char* control, float value, unsigned bit) {
    ShowResult(control, static_cast<double>(value), (m.measured & bit) != 0);
    SetColour(control, shown.live ? LiveColour : "");
  };
  show("Baseline", m.Baseline, MeasuredBaseline);
  show("BaselineVar", m.BaselineVar, MeasuredVariance);
  show("PeakValue", m.PeakValue, MeasuredPeak);
  show("Amplitude", m.PeakValue - m.Baseline, MeasuredAmplitude);
  show("RiseTime", m.RiseTime, MeasuredRise);
  show("RisePoints", static_cast<float>(m.RisePoints), MeasuredRise);
  show("RiseSlope", m.RiseSlope, MeasuredSlope);
  show("DecayTime", m.DecayTime, MeasuredDecay);
  show("FracWidth", m.FracWidth, MeasuredWidth);
  show("LatencyRise", m.LatencyRise, MeasuredLatencyRise);
  show("LatencyPeak", m.LatencyPeak, MeasuredLatencyPeak);
  show("Integral", m.Integral, MeasuredIntegral);
  show("Coastline", m.Coastline, MeasuredIntegral);
  ShowUnits();
  ShowStatus();
  ShowFit(shown);
}

}  // namespace zelvane
