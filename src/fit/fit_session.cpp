#include "fit/fit_session.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "analysis/analysis_store.h"
#include "fit/fit_events.h"
#include "fit/fit_export.h"
#include "fit/fit_log.h"
#include "fit/fit_objective.h"
#include "fit/fit_panel.h"
#include "fit/fit_progress.h"
#include "fit/fit_questions.h"
#include "fit/fit_rows.h"
#include "fit/fit_vertices.h"
#include "fit/session_store.h"
#include "fit/wave_compare.h"
#include "fit/wave_load.h"
#include "fit/wave_set_panels.h"
#include "model/model_events.h"
#include "model/model_file.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/zero_pages.h"
#include "run/run_panel.h"
#include "screen/popups.h"
#include "stimulus/profile_builder.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_store.h"
#include "trace/trace.h"
#include "trace/trace_events.h"

namespace zelvane {
namespace {

constexpr char SaveTitle[] = "Concluded Waveform Fitting";
constexpr char SaveQuestion[] = "Save parameter file?";
constexpr char LastRunStopped[] =
    "The last run took long and was stopped: the best values are in the model, the curves are of other values.";
constexpr char ExportTitle[] = "?";
constexpr char ExportQuestion[] = "Do you want to export fitted curves to ascii file?";

/// Marks the fit as active, and brings back what it borrows: the length of the run and that of the display.
class ActiveFit {
 public:
  ActiveFit() : points_(Model.NumPoints), viewed_(Analysis.ViewedPoints) { Model.FitActive = 1; }
  ActiveFit(const ActiveFit&) = delete;
  ActiveFit& operator=(const ActiveFit&) = delete;
  ~ActiveFit() {
    Model.FitActive = 0;
    Model.NumPoints = points_;
    Analysis.ViewedPoints = viewed_;
    FitSession.finalRun = false;
    FitSession.stopped = false;
  }

 private:
  int points_;
  int viewed_;
  ConsoleAsNotes notes_;
};

void ShowValues() {
  WriteGridRates();
  WriteTableRates();
  RefreshLinks();
  StimPanelRefresh();
}

/// Empties the profiles of a fit. One waveform gives all seven of its own at once.
void PrepareProfiles() {
  for (const std::span<float> profile : Stimulus.Profile) ReleaseZeroPages(profile.first(MaxWaveformPoints));
  if (Fit.FitWaveCount != 1) return;
  for (const FitWaveform& wave : Fit.Wave) {
    if (wave.WaveLoaded == 0) continue;
    for (std::size_t p = 0; p < wave.WaveStim.size(); ++p)
      std::copy_n(wave.WaveStim[p].begin(), Index(std::clamp(wave.StimLength, 0, MaxWaveformPoints)),
                  Stimulus.Profile[p].begin());
  }
}

/// Empties Drug1 of the profiles and of the waveforms.
void ClearDrug() {
  ReleaseZeroPages(Stimulus.Profile[1].first(MaxWaveformPoints));
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) ReleaseZeroPages(Fit.Wave[w].WaveStim[1]);
}

/// The windows of a fit of the stimulus are those of its start.
void SetStimulusWindows() {
  Fit.Waveform[1].SimFitStart = 100.0F * Model.ADInterval;
  Fit.Waveform[1].SimBaselineStart = 5.0F * Model.ADInterval;
  for (FitWindow& window : Fit.Waveform) window.NumBaselinePts = 10;
  WriteFitPanel();
}

/// Prepares stimulus, length and waveforms. The user has answered all questions.
void PrepareSession() {
  FitSession.before = FittedValuesNow();
  FitSession.hasBefore = true;
  FitSession.takenBack = false;
  Fit.FitWaveCount = LoadedWaves();  // a list may have counted fewer
  TellTraceWillChange();
  Stimulus.StimMode = Fit.FitKind == FitOfRates ? StimUser : StimManual;
  Stimulus.StimFromFile = 1;  // the profiles are from files, and no rebuilding may ask for them
  PrepareProfiles();
  if (Fit.FitKind == FitOfStimulus) ClearDrug();
  StimPanelRefresh();
  Model.NumPoints = static_cast<int>(std::clamp<std::int64_t>(
      TimeIndex(Fit.Waveform[1].DataFitStart, Model.ADInterval) + Fit.Waveform[1].NumFitPts, 1,
      MaxWaveformPoints));
  ClearSamples(MaxStimPoints);
  ValidPairs();
  FitDataBuild();
  PrepareObjective();
  FitSession.told = {};
  Parameters.FitTolerance = Fit.WaveFitTolerance;
}

std::string ColumnText(int column) {
  const SimplexTable& table = Vertices.simplex;
  std::string text;
  for (int i = 1; i <= table.NumParams; ++i) text += FormatText("%0.3e, ", table.At(i, column));
  return text +
         FormatText("low=%d,ssq=%.3e fres=%.3e\n", table.BestVertex, table.At(0, column), table.FitResidual);
}

/// Shows the fit at the start of a pass. Returns true when the user wants to stop.
bool PassOfSession() {
  if (StopInPass()) return true;
  const SimplexTable& table = Vertices.simplex;
  if (FitLogIsOpen()) {
    FitLog(FormatText("eval#%d k's= ", table.NumEvals) + ColumnText(table.BestVertex));
  } else {
    AddFitLogLine(EvaluationText(FitSession.lastColumn));
  }
  ShowFitProgress(false);
  return false;
}

/// Puts the best vertex into the model with one more run.
void RunBestVertex() {
  FitSession.stopped = false;
  FitSession.finalRun = true;
  FitSession.finalBegan = std::chrono::steady_clock::now();
  if (Fit.FitKind == FitOfRates) {
    RateVertexRun(Vertices.simplex.BestVertex);
  } else {
    StimVertexRun(Vertices.simplex.BestVertex);
  }
  FitSession.finalRun = false;
  if (FitSession.stopped) Note(LastRunStopped);
}

/// Runs the simplex of a fit of waveforms. Returns its result code.
int WaveSimplex() {
  SimplexTable& table = Vertices.simplex;
  SimplexRules rules;
  rules.evaluate = Fit.FitKind == FitOfRates ? RateVertexEval : StimVertexEval;
  rules.positive = true;
  rules.ofRates = true;
  rules.iterations = Fit.FitNumIterations;
  rules.tolerance = Parameters.FitTolerance;
  rules.beginPass = PassOfSession;
  rules.stopAsked = StopInPass;
  Vertices.FitResultCode = FitRunning;
  const SimplexEnd end = RunSimplex(table, rules);
  if (end == SimplexEnd::Stopped) return FitUserBreak;
  return end == SimplexEnd::Converged ? FitConverged : FitMaxIterations;
}

/// Lists the vertices after a run and puts the best of them into the model.
void FinishSimplex() {
  SimplexTable& table = Vertices.simplex;
  for (int c = 0; c < table.NumVertices; ++c)
    AddFitLogLine(FormatText("Rank vertex=%d ssq=%.2e", c, table.At(0, c)));
  table.BestVertex = BestColumn(table);
  AddFitLogLine(FormatText("Best vertex=%d ssq=%.2e", table.BestVertex, table.At(0, table.BestVertex)));
  RunBestVertex();
  FitLog("DONE k's= " + ColumnText(table.BestVertex));
  ShowFitProgress(true);
}

/// Takes the parameters of the best stimulus to the stimulus page, and reports them.
void ReportStimulus() {
  const auto value = [](int i) {
    return static_cast<float>(Vertices.simplex.At(i, Vertices.simplex.BestVertex));
  };
  const auto line = [](const char* format, float x) {
    AddFitLogLine(FormatText(format, static_cast<double>(x)));
  };
  Stimulus.ExpAmp1 = value(1);
  Stimulus.ExpTau1 = value(2);
  line("Stimulus Concentration Amplitudce1 (M)=%.4e", Stimulus.ExpAmp1);
  line("Stimulus Concentration Decay Tau1 (ms)=%.4e", Stimulus.ExpTau1);
  FitLog(FormatText("Stimulus Concentration Amplitudce (M)=%.4e\n", static_cast<double>(Stimulus.ExpAmp1)));
  FitLog(FormatText("Stimulus Concentration Decay Tau1 (ms)=%.4e\n", static_cast<double>(Stimulus.ExpTau1)));
  if (Stimulus.ExpComponents == 2) {
    Stimulus.ExpAmp2 = value(3);
    Stimulus.ExpTau2 = value(4);
    line("Stimulus Concentration Amplitudce2 (M)=%.4e", Stimulus.ExpAmp2);
    line("Stimulus Concentration Decay Tau2 (ms)=%.4e", Stimulus.ExpTau2);
  } else if (Stimulus.ExpRiseFlag != 0) {
    Stimulus.ExpRiseTau = value(3);
    line("Stimulus Concentration Rise Tau (ms)=%.4e", Stimulus.ExpRiseTau);
    FitLog(
        FormatText("Stimulus Concentration Rise Tau (ms)=%.4e\n", static_cast<double>(Stimulus.ExpRiseTau)));
  }
}

/// Reports a run of the simplex. Its best column becomes column 0.
void ReportRun() {
  SimplexTable& table = Vertices.simplex;
  for (int r = 0; r <= table.NumParams; ++r) table.At(r, 0) = table.At(r, table.BestVertex);
  const double best = table.At(0, table.BestVertex);
  const double perPoint = FitSession.points > 0 ? best / FitSession.points : 0.0;
  FitLog(
      FormatText("numevals=%d normresids=%.2e numrestarts=%d\n", table.NumEvals, perPoint, Fit.RestartCount));
  FlushFitLog();
  AddFitLogLine(FormatText("numevals=%d resids=%.2e normresids=%.2e numrestarts=%d\n", table.NumEvals, best,
                           perPoint, Fit.RestartCount));
  Fit.FitNormResidual = perPoint;
  if (Fit.FitKind == FitOfStimulus) ReportStimulus();
  ShowValues();
}

/// Runs the simplex as often as the restarts demand. Returns the last result code.
int RunRestarts() {
  Fit.RestartCount = 2;
  int result = FitUserBreak;
  do {
    Vertices.FitResultCode = FitBuilding;
    const int restart = Fit.RestartCount++;
    if (Fit.FitKind == FitOfRates) {
      RateVertexBuild(restart);
    } else {
      StimVertexBuild(restart);
    }
    result = FitSession.stopped ? FitUserBreak : WaveSimplex();
    FinishSimplex();
    ReportRun();
    TraceGone.Tell();
  } while (result != FitUserBreak && Fit.RestartCount < Fit.FitNumRestarts + 2);
  return result;
}

void OfferExport() {
  if (ConfirmPopup(ExportTitle, ExportQuestion)) ExportFit(RowsOfCurves());
}

void OfferResults() {
  FitPlot();
  if (ConfirmPopup(SaveTitle, SaveQuestion)) {
    AddFitLogLine(FormatText("Bestvertex=%d inserted and saved", Vertices.simplex.BestVertex));
    SaveParameters();
  }
  OfferExport();
}

Outcome StartFit(int kind) {
  if (NoWaveLoaded()) return Outcome::Refused;
  Fit.FitKind = kind;
  if (kind == FitOfStimulus) SetStimulusWindows();
  if (const Outcome answered = AskBeforeFit(); answered != Outcome::Done) return answered;
  if (const Outcome opened = OpenFitLog(); opened != Outcome::Done) return opened;
  if (kind == FitOfStimulus && FitLogIsOpen()) AddFitLogLine("Loaded...\n");
  int result = FitUserBreak;
  {
    const ActiveFit active;
    PrepareSession();
    BeginFitProgress();
    Fit.LogLines.clear();
    Vertices.FitResultCode = FitBuilding;
    Vertices.simplex.NumEvals = 0;
    FitBegan.Tell();
    result = RunRestarts();
    FitSession.after = FittedValuesNow();
    FitSession.seconds = FitSeconds();
    if (!FitSession.answers) OfferResults();
    Vertices.FitResultCode = result;
    FitLog(FormatText("Result Code = %d\n", result));
    CloseFitLog();
  }
  RunLengthTaken.Tell();
  RunSettingsChanged.Tell();
  FitEnded.Tell();
  ForgetStop();
  return result == FitUserBreak ? Outcome::Stopped : Outcome::Done;
}

/// Compares the present values with the waveforms.
Outcome Compare() {
  const ActiveFit active;
  PrepareSession();
  BeginFitProgress();
  FitBegan.Tell();
  FitComparing.Tell(true);
  if (Fit.FitKind == FitOfRates) {
    RateVertexBuild(-1);
  } else {
    StimVertexBuild(-1);
  }
  FitComparing.Tell(false);
  const Outcome outcome = FitSession.stopped ? Outcome::Stopped : Outcome::Done;
  Vertices.FitResultCode = FitOneStep;
  Vertices.simplex.NumEvals = 1;
  ShowFitProgress(true);
  FitSession.after = FittedValuesNow();
  FitPlot();
  return outcome;
}

Outcome RunOneStep(int kind) {
  if (NoWaveLoaded()) return Outcome::Refused;
  Fit.FitKind = kind;
  if (kind == FitOfRates && !FirstPeakIsLargest()) return Outcome::Refused;
  if (kind == FitOfStimulus) SetStimulusWindows();
  if (const Outcome answered = AskBeforeStep(); answered != Outcome::Done) return answered;
  const Outcome outcome = Compare();
  RunLengthTaken.Tell();
  RunSettingsChanged.Tell();
  ShowValues();
  if (kind == FitOfRates) OfferExport();
  FitEnded.Tell();
  ForgetStop();
  return outcome;
}

}  // namespace

Outcome StartRateFit() {
  return StartFit(FitOfRates);
}

Outcome StartStimFit() {
  return StartFit(FitOfStimulus);
}

Outcome OneStep() {
  return RunOneStep(FitOfRates);
}

Outcome OneStimStep() {
  return RunOneStep(FitOfStimulus);
}

void StopFit() {
  RequestStop();
}

Outcome RunRateFit(const FitAnswers& answers) {
  struct Answered {  // also when the memory runs out
    ~Answered() { FitSession.answers.reset(); }
  } const answered;
  FitSession.answers = answers;
  return StartFit(FitOfRates);
}

void CompareOnce() {
  const int result = Vertices.FitResultCode;
  Compare();
  Vertices.FitResultCode = result;
  FitEnded.Tell();
}

FittedValues FittedValuesNow() {
  FittedValues values{Model.KOn, Model.KOff, Model.TableRate, {}};
  values.stimulus = {
      0.0F, Stimulus.ExpAmp1, Stimulus.ExpTau1, Stimulus.ExpAmp2, Stimulus.ExpTau2, Stimulus.ExpRiseTau};
  return values;
}

void PutFittedValues(const FittedValues& values) {
  Model.KOn = values.KOn;
  Model.KOff = values.KOff;
  Model.TableRate = values.TableRate;
  Stimulus.ExpAmp1 = values.stimulus[1];
  Stimulus.ExpTau1 = values.stimulus[2];
  Stimulus.ExpAmp2 = values.stimulus[3];
  Stimulus.ExpTau2 = values.stimulus[4];
  Stimulus.ExpRiseTau = values.stimulus[5];
  ShowValues();
}

int RowsOfCurves() {
  int rows = 0;
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    if (Fit.Wave[w].WaveLoaded != 0) rows = std::max(rows, Fit.Waveform[w].NumFitPts);
  }
  return rows;
}

double RateIn(const FittedValues& values, int code) {
  if (IsRateOfTable(code)) {
    const FitRow of = RowOfCode(0, code);
    return static_cast<double>(values.TableRate[Index(of.from)][Index(of.to)]);
  }
  return code > 0 ? values.KOn[Index(code)] : values.KOff[Index(-code)];
}

Outcome TakeBackFit() {
  if (!FitSession.hasBefore) return Outcome::Refused;
  const FittedValues present = FittedValuesNow();
  PutFittedValues(FitSession.before);
  FitSession.before = present;
  FitSession.takenBack = !FitSession.takenBack;
  return Outcome::Done;
}

Outcome KeepFit() {
  return SaveParameters();
}

}  // namespace zelvane
