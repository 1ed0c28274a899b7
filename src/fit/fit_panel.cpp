// Settings and commands of FitPanel.
#include "fit/fit_panel.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "fit/fit_panels.h"
#include "fit/fit_session.h"
#include "fit/fit_store.h"
#include "fit/wave_compare.h"
#include "fit/wave_set.h"
#include "fit/wave_set_panels.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "parameters/fit_modes.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char SettingsGroup[] = "settings";
constexpr char WavesGroup[] = "waveforms";
constexpr char SetGroup[] = "set";
constexpr char ViewGroup[] = "view";
constexpr char ResultsGroup[] = "results";

constexpr char PanelHelp[] =
    "Fit the rates of the scheme, or an exponential stimulus, to recorded waveforms. Load up to 15 recordings, each "
    "with the stimulus that evoked it, set their windows, and start.";
constexpr char LogTitle[] = "Write Fitting Log ASCII File";
constexpr char LogFilter[] = "*.log";
constexpr int MostFitPts = 1'000'000;

// -- Reading --

FitWindow& ShownWindow() {
  Fit.FitShownWave = std::clamp(Fit.FitShownWave, 1, MaxFitWaveforms);
  return Fit.Waveform[Index(Fit.FitShownWave)];
}

void LimitWindow(FitWindow& window) {
  window.NumFitPts = std::clamp(window.NumFitPts, 0, MostFitPts);
  window.NumBaselinePts = std::clamp(window.NumBaselinePts, 0, MaxWaveformPoints);
  window.NumAlignPts = std::clamp(window.NumAlignPts, 0, MaxWaveformPoints);
}

/// Keeps the averaged window of the peak within the array of a waveform.
void LimitPeakAverage(float simFitStart) {
  const double start = static_cast<double>(simFitStart);
  if (start + Fit.FitPeakAve >= MaxWaveformPoints) {
    Fit.FitPeakAve =
        static_cast<int>(std::clamp(MaxWaveformPoints - start - 1.0, 1.0, double{MaxWaveformPoints}));
  }
  Fit.FitPeakAve = std::max(Fit.FitPeakAve, 1);
}

void LimitSettings() {
  for (FitWindow& window : Fit.Waveform) LimitWindow(window);
  Fit.FitAlignRange = 1;
  Fit.FitParse = std::max(Fit.FitParse, 1);
  Fit.FitDualSpeed = std::max(Fit.FitDualSpeed, 0);
  Fit.FitPeakSearchPts = std::clamp(Fit.FitPeakSearchPts, 0, MaxWaveformPoints);
  Fit.FitTotalCurves = std::clamp(Fit.FitTotalCurves, 1, MaxFitWaveforms);
  Fit.FitShowCurves = std::clamp(Fit.FitShowCurves, 1, MaxFitWaveforms);
  LimitPeakAverage(ShownWindow().SimFitStart);
}

/// Reads the panel. All waveforms get the windows of `source`, unless each has its own.
void ReadPanelWith(int source) {
  ReadControls(FitPanelName, SettingsGroup);
  ReadControls(FitPanelName, WavesGroup);
  if (Fit.FitAlignChoice == 0) {
    const FitWindow windows = Fit.Waveform[Index(source)];
    std::fill(Fit.Waveform.begin() + 1, Fit.Waveform.end(), windows);
  }
  LimitSettings();
  WriteControls(FitPanelName, SettingsGroup);
  WriteControls(FitPanelName, WavesGroup);
}

// -- Settings --

void FxnWindow(const ControlEvent& event) {
  ReadPanelWith(event.index);
  FitPanelPlot();
}

void FxnSetting(const ControlEvent&) {
  ReadFitPanel();
  FitPanelPlot();
}

void FxnWaveTolerance(const ControlEvent&) {
  Parameters.FitTolerance = Fit.WaveFitTolerance;
}

void FxnShowFitCurves(const ControlEvent&) {
  ReadFitPanel();
  FitPlot();
}

void FxnTotNumFitCurves(const ControlEvent&) {
  ReadFitPanel();
  Fit.FitShowCurves = Fit.FitTotalCurves;
  OfferedLines = Fit.FitTotalCurves;
  ShowField("FitShowCurves");
  FitPlot();
}

void FxnShowCurrentFitTrace(const ControlEvent&) {
  Fit.FitShownWave = std::clamp(Fit.FitShownWave, 1, MaxFitWaveforms);
  ShowField("FitShownWave");
  FitPanelPlot();
  FitPlot();
}

void FxnShowWaveConc(const ControlEvent&) {
  FitPanelPlot();
}

void FxnFitNormalized(const ControlEvent&) {
  ReadFitPanel();
  NormalizeWaves();
  WriteFitPanel();
  FitPanelPlot();
}

void FxnFitPrintLog(const ControlEvent&) {
  if (Fit.FitLogOn != 0)
    AskForFitLog();
  else
    ShowText("FitLogFileShown", "");
}

// -- Commands --

void FxnUpdateFitPlot(const ControlEvent&) {
  ReadFitPanel();
  FitPanelPlot();
  FitPlot();
}

void FxnRefreshFitPanel(const ControlEvent&) {
  ReadFitPanel();
  WriteFitPanel();
  FitPanelPlot();
}

void ClosePanelOfFit() {
  ReadFitPanel();
  HidePanel(FitPanelName);
}

void FxnDoneWaveFit(const ControlEvent&) {
  ClosePanelOfFit();
}

void FxnWaveFit(const ControlEvent&) {
  OpenFitPanel();
}

void PrintFitPanel(const ControlEvent&) {
  PrintPanel(FitPanelName);
}

// -- Dimming --

/// Shows the fields of the waveform on display only.
void ShowOneWindow() {
  const int shown = std::clamp(Fit.FitShownWave, 1, MaxFitWaveforms);
  for (Control* control : PanelNamed(FitPanelName).controls) {
    if (control->group == WavesGroup) control->visible = control->index == shown;
  }
}

void DimFitPanel() {
  ShowOneWindow();
  SetDimmed("FitNormalized", Fit.WavesNormalized != 0);
  SetDimmed("FitFilterFc", Fit.FitFilterOn == 0);
  for (Control* control : PanelNamed(FitPanelName).controls) {
    if (control->group != SetGroup || control->index == 0) continue;
    control->dimmed = control->index > OfferedLines && Fit.Wave[Index(control->index)].WaveLoaded == 0;
  }
}

constexpr auto Number = ControlKind::Number;
constexpr auto Switch = ControlKind::Switch;
constexpr auto Choice = ControlKind::Choice;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl WindowControls[] = {
    {.name = "DataBaselineStart[%d]", .kind = Number, .label = "Data baseline from", .unit = "ms", .format = "%g",
     .command = "FxnWaveBaselinePosition", .action = FxnWindow,
     .help = "Position from which to start baseline calculation.", .first = 1, .last = MaxFitWaveforms},
    {.name = "DataFitStart[%d]", .kind = Number, .label = "Data fit from", .unit = "ms", .format = "%g",
     .command = "FxnWaveStartAnalysis", .action = FxnWindow,
     .help = "Time (ms) in the recording at which the comparison starts.", .first = 1, .last = MaxFitWaveforms},
    {.name = "SimBaselineStart[%d]", .kind = Number, .label = "Simulation baseline from", .unit = "ms",
     .format = "%g", .command = "FxnWaveBaselinePosition", .action = FxnWindow,
     .help = "Position from which to start baseline calculation.", .first = 1, .last = MaxFitWaveforms},
    {.name = "SimFitStart[%d]", .kind = Number, .label = "Simulation fit from", .unit = "ms", .format = "%g",
     .command = "FxnWaveStartAlignment", .action = FxnWindow,
     .help = "Position from which to start waveform alignment.", .first = 1, .last = MaxFitWaveforms},
    {.name = "NumBaselinePts[%d]", .kind = Number, .label = "Baseline points", .format = "%d",
     .command = "FxnWaveBaselinePts", .action = FxnWindow,
     .help = "Number of data points from which to calculate baseline amplitude.", .first = 1,
     .last = MaxFitWaveforms},
    {.name = "NumAlignPts[%d]", .kind = Number, .label = "Alignment points", .format = "%d",
     .command = "FxnWaveNumAlignmentPts", .action = FxnWindow,
     .help = "Number of data points over which to search for optimal alingment.", .first = 1,
     .last = MaxFitWaveforms},
    {.name = "NumFitPts[%d]", .kind = Number, .label = "Fit points", .format = "%d", .command = "FxnWaveNumFitPts",
     .action = FxnWindow, .help = "Numer of data points to include in fitting.", .first = 1,
     .last = MaxFitWaveforms},
};

constexpr ControlDecl SettingControls[] = {
    {.name = "FitParse", .kind = Number, .label = "Parse", .format = "%d", .command = "FxnWaveParse",
     .action = FxnSetting, .help = "Compare every n-th point for sum of squaes difference."},
    {.name = "FitDualSpeed", .kind = Number, .label = "Points without parsing", .format = "%d",
     .command = "FxnWaveDualSpeed", .action = FxnSetting,
     .help = "Indicates the number of data points at the outset that will be compared without parsing."},
    {.name = "FitPeakSearchPts", .kind = Number, .label = "Peak search points", .format = "%d",
     .command = "FxnFitPeakSearchPts", .action = FxnSetting,
     .help = "Number of data points to search forward for peak; algorithm must be able to find peaks for alignment."},
    {.name = "FitPeakAve", .kind = Number, .label = "Peak average points", .format = "%d",
     .command = "FxnFitPeakAve", .action = FxnSetting,
     .help = "Number of points for running average of peak when searching for peak."},
    {.name = "FitAlign", .kind = Switch, .label = "Align", .format = "%d", .command = "FxnFitAlign",
     .help = "Automatically align rising phase using least squares algorithm or use specified starting point for "
     "alignment.", .choices = "off|on"},
    {.name = "FitAlignChoice", .kind = Choice, .label = "Positions", .format = "%d", .command = "FxnAlignChoice",
     .action = FxnSetting,
     .help = "Specify whether to use same index for baseline, alignment for all waveforms or to use unique indices "
     "for each waveform.", .choices = "same for all waveforms|one set for each waveform"},
    {.name = "FitAlignRange", .kind = Number, .label = "Align range", .format = "%d", .command = "FxnAlignRange",
     .action = FxnSetting, .help = "Number of risetimes over which the alignment of waveforms is examined."},
    {.name = "FitFilterOn", .kind = Switch, .label = "Filter simulations", .format = "%d",
     .command = "FxnAutoFitFilter",
     .help = "Filter each simulated trace with a Gaussian filter before it is compared.", .choices = "off|on"},
    {.name = "FitFilterFc", .kind = Number, .label = "Filter corner", .unit = "kHz", .format = "%g",
     .command = "FxnFitFilterFc", .help = "Corner frequency (kHz, -3 dB) of the filter of the simulated traces."},
    {.name = "FitNumIterations", .kind = Number, .label = "Iterations", .format = "%d",
     .command = "FxnWaveNumIterations",
     .help = "Indicates the number of iterations the fitting algorithm will run."},
    {.name = "FitNumRestarts", .kind = Number, .label = "Restarts", .format = "%d", .command = "FxnWaveNumRestarts",
     .help = "Indicates how many times the algorithm will restart using the best result to create with fresh seeds."},
    {.name = "FitTolerance", .kind = Number, .label = "Tolerance", .format = "%g", .command = "FxnWaveTolerance",
     .action = FxnWaveTolerance,
     .help = "Numerical precision within simplex at which convergence is declared."},
    {.name = "FitStepSize", .kind = Number, .label = "Step size", .format = "%g", .command = "FxnWaveStepSize",
     .help = "This number controls the difference between various seeds tested at the start of fitting."},
    {.name = "FitSeedSpread", .kind = Number, .label = "Seed spread", .format = "%g", .command = "FxnFitSeedSpread",
     .help = "Spread of the seeds of a restart around the best result of the run before, as a fraction."},
};

/// Not read with the settings: each acts when it is committed.
constexpr ControlDecl ViewControls[] = {
    {.name = "FitNormalized", .kind = Switch, .label = "Normalised", .format = "%d", .command = "FxnFitNormalized",
     .action = FxnFitNormalized, .help = "Normalize all simulated and loaded traces to the first waveform.",
     .choices = "off|on"},
    {.name = "FitShowCurves", .kind = Number, .label = "Curves shown", .format = "%d", .command = "FxnShowFitCurves",
     .action = FxnShowFitCurves,
     .help = "Indicates how many (consecutively from #1) waveforms are displayed during fitting."},
    {.name = "FitTotalCurves", .kind = Number, .label = "Waveform lines", .format = "%d",
     .command = "FxnTotNumFitCurves", .action = FxnTotNumFitCurves,
     .help = "Number of waveforms (1 to 15) that the panel offers. The lines beyond it are dimmed."},
    {.name = "FitShownWave", .kind = Number, .label = "Waveform shown", .format = "%d",
     .command = "FxnShowCurrentFitTrace", .action = FxnShowCurrentFitTrace,
     .help = "Indicates which of the different waveforms is currently displayed."},
    {.name = "FitShownProfile", .kind = Choice, .label = "Profile shown", .format = "%d",
     .command = "FxnShowWaveConc", .action = FxnShowWaveConc,
     .help = "Show voltage, Drug1, Drug2, or Drug3 profile. The fitting algorithm uses at most three drug profiles.",
     .choices = "Voltage|Drug1|Drug2|Drug3"},
    {.name = "FitLogOn", .kind = Switch, .label = "Log file", .format = "%d", .command = "FxnFitPrintLog",
     .action = FxnFitPrintLog, .help = "Print fitting results to a log file.", .choices = "off|on"},
    {.name = "FitLogFileShown", .kind = Readout, .label = "Log", .format = "", .help = "Name of the log file."},
};

constexpr ControlDecl ResultControls[] = {
    {.name = "FitResultCode", .kind = Readout, .label = "Result code", .format = "%d",
     .help = "Result of the last fit: 1 converged, 2 last iteration, 3 stopped, -1 one step; 5 and 4 while it runs."},
    {.name = "FitResultWord", .kind = Readout, .label = "Result", .format = "", .command = "FxnWaveFitResult",
     .help = "Result from most recent fitting session (Converge, Maximum Iterations, User Break, One Step)."},
    {.name = "NumEvals", .kind = Readout, .label = "Evaluations", .format = "%d",
     .help = "Number of evaluations of the last run of the simplex."},
    {.name = "FitNormResidual", .kind = Readout, .label = "Norm. residual", .format = "%.4e",
     .help = "Lowest sum of squares divided by the number of compared points."},
    {.name = "FitResidual", .kind = Readout, .label = "Spread", .format = "%.4e",
     .help = "Fractional spread of the sums of squares of the simplex. The fit ends when it is below the tolerance."},
    {.name = "FitEvalsPerSecond", .kind = Readout, .label = "Evals a second", .format = "%.4g",
     .help = "Speed of the fit."},
    {.name = "FitElapsed", .kind = Readout, .label = "Elapsed", .unit = "s", .format = "%.1f",
     .help = "Time since the start of the fit."},
};

/// Tells the session to stop: the toggle is on until the next session clears it.
void FxnStopFit(const ControlEvent& event) {
  if (event.control->number != 0.0) StopFit();
}

constexpr ControlDecl SessionControls[] = {
    {.name = "FitStart", .kind = Button, .label = "Fit rates", .format = "", .command = "FxnStartFitButton",
     .action = Run<StartRateFit>,
     .help = "Initiate simplex fitting of current model RATE CONSTANTS to waveform(s)."},
    {.name = "FitStartStim", .kind = Button, .label = "Fit stimulus", .format = "",
     .command = "FxnStartFitStimButton", .action = Run<StartStimFit>,
     .help = "Initiate simplex fitting of EXPONENTIAL STIMULUS PROFILE to waveform(s)."},
    {.name = "FitOneStep", .kind = Button, .label = "One step", .format = "", .command = "FxnOneStep",
     .action = Run<OneStep>,
     .help = "Run current model ONE TIME for each loaded concentration and compare results to loaded waveforms."},
    {.name = "FitStimModel", .kind = Button, .label = "One step, stimulus", .format = "",
     .command = "FxnFitStimModelButton", .action = Run<OneStimStep>,
     .help = "Run current model ONE TIME for EXPONENTIAL STIMULUS PROFILE and compare results to loaded waveforms."},
    {.name = "FitStop", .kind = Switch, .label = "Stop", .format = "%d", .command = "FxnStopFit",
     .action = FxnStopFit, .help = "Stop the fit. The best rates so far are kept.", .choices = "off|on",
     .whileBusy = true},
    {.name = "FitTakeBack", .kind = Button, .label = "Take back", .format = "", .command = "FxnFitTakeBack",
     .action = Run<TakeBackFit>,
     .help = "Bring back the rates of the time before the fit. A second press brings back its result."},
    {.name = "FitKeep", .kind = Button, .label = "Save...", .format = "", .command = "FxnFitKeep",
     .action = Run<KeepFit>, .help = "Save the model with the fitted rates."},
};

constexpr ControlDecl CommandControls[] = {
    {.name = "FitUpdate", .kind = Button, .label = "Update", .format = "", .command = "FxnUpdateFitPlot",
     .action = FxnUpdateFitPlot, .help = "Draw the plots of the fit again with the settings on the panel."},
    {.name = "FitRefresh", .kind = Button, .label = "Refresh", .format = "", .command = "FxnRefreshFitPanel",
     .action = FxnRefreshFitPanel, .help = "Refresh screen with data traces."},
    {.name = "FitPrint", .kind = Button, .label = "Print", .format = "", .command = "PrintFitPanel",
     .action = PrintFitPanel, .help = "Print the current panel as it is seen on the screen."},
    {.name = "FitDone", .kind = Button, .label = "Done", .format = "", .command = "FxnDoneWaveFit",
     .action = FxnDoneWaveFit, .help = "Close Waveform Fitting Panel"},
};

constexpr ControlDecl MainPanelButton[] = {
    {.name = "WaveFitButton", .kind = Button, .label = "Fit...", .format = "", .command = "FxnWaveFit",
     .action = FxnWaveFit,
     .help = "Go to the waveform fitting panel. It fits the rates of the scheme to recordings."},
};

constexpr MenuDecl FitMenu[] = {{"Fit/Fit Waveforms...", "FitWaveforms", OpenFitPanel}};
// clang-format on

/// Draws the plots again after a stimulus file, which may have changed the interval.
void ReplotForInterval() {
  if (Model.FitActive != 0) return;
  FitPanelPlot();
  FitPlot();
}

void RenewLog(TextBox& box) {
  box.lines.assign(Fit.LogLines.rbegin(), Fit.LogLines.rend());
}

void AddGraphs() {
  Graph& data = AddGraph(FitPanelName, FitDataGraph, "Time (ms)", "Recording", FitCursorCount);
  for (Cursor& cursor : data.cursors) cursor.enabled = false;
  AddGraph(FitPanelName, FitStimulusGraph, "Time (ms)", "Voltage (V)");
  AddGraph(FitPanelName, FitCurvesGraph, "Time (ms)", "Data");
  AddGraph(FitPanelName, FitResidualGraph, "Time (ms)", "Residual");
  AddGraph(FitPanelName, FitProgressGraph, "Evaluations", "Residual");
}

}  // namespace

void AddFitPanel() {
  AddPanel(
      {.name = FitPanelName, .title = "Fit", .close = ClosePanelOfFit, .help = PanelHelp, .overTask = true});
  AddControls(FitPanelName, SetGroup, WaveControls());
  AddControls(FitPanelName, WavesGroup, WindowControls);
  AddControls(FitPanelName, SettingsGroup, SettingControls);
  AddControls(FitPanelName, ViewGroup, ViewControls);
  AddControls(FitPanelName, ResultsGroup, ResultControls);
  AddControls(FitPanelName, "session", SessionControls);
  AddControls(FitPanelName, "commands", CommandControls);
  ControlNamed("FitTolerance").field = FindField("WaveFitTolerance");
  AddGraphs();
  AddFitViewControls();
  AddTextBox(FitPanelName, FitLogBoxName).renew = RenewLog;
  AddControls(MainPanelName, "fit", MainPanelButton);
  AddMenu(FitMenu);
  PanelNamed(FitPanelName).dim.push_back(DimFitPanel);  // last, because the rule needs the controls
  OfferedLines = MaxFitWaveforms;
  ModelFileToSave.Add([] { ReadFitPanel(); });
  ModelFileCameIn.Add([](Outcome&) { ShowModelOfFit(); });
  RunSettingsReplaced.Add(ReplotForInterval);
  FollowSessions();
}

void OpenFitPanel() {
  WriteFitPanel();
  ShowPanel(FitPanelName);
  FitPanelPlot();
  FitPlot();
}

void ReadFitPanel() {
  ReadPanelWith(std::clamp(Fit.FitShownWave, 1, MaxFitWaveforms));
}

void WriteFitPanel() {
  for (const char* group : {SetGroup, WavesGroup, SettingsGroup, ViewGroup})
    WriteControls(FitPanelName, group);
  ShowText("FitLogFileShown", Fit.FitLogOn != 0 ? FileNameOf(Fit.FitLogFile) : "");
  ShowFitResults();
}

void ShowFitResults(std::string_view colour) {
  ShowText("FitResultWord", FitResultWord(Vertices.FitResultCode));
  for (const char* name : {"FitResultCode", "NumEvals", "FitNormResidual"}) SetColour(name, colour);
  WriteControls(FitPanelName, ResultsGroup);
}

bool AskForFitLog() {
  const auto path =
      FileSelectPopup({.title = LogTitle, .defaultName = LogFilter, .filter = LogFilter, .save = true});
  Fit.FitLogOn = path ? 1 : 0;
  if (path) Fit.FitLogFile = *path;
  ShowField("FitLogOn");
  ShowText("FitLogFileShown", path ? FileNameOf(*path) : "");
  return path.has_value();
}

Outcome SwitchNormalized() {
  Fit.FitNormalized = 1;
  const Outcome outcome = NormalizeWaves();
  ShowField("FitNormalized");
  FitPanelPlot();
  return outcome;
}

}  // namespace zelvane
