#include "analysis/analyze.h"

#include <algorithm>

#include "analysis/analysis_fit_store.h"
#include "analysis/exponential_fit.h"
#include "analysis/measures.h"
#include "analysis/results_files.h"
#include "analysis/results_table.h"
#include "analysis/series.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "screen/memory_guard.h"
#include "screen/popups.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr MessageTitle AnalysisErrorTitle{MessageKind::Error, "! Analysis Error"};
constexpr MessageTitle AnalysisWarningTitle{MessageKind::Warning, "! Analysis Warning"};
constexpr char FractionsInWrongOrder[] = "Position for starting risetime calculation > ending position.";
constexpr char PeakBeforeStart[] = "Position of peak before position at which to start analysis.";
constexpr char StartAfterEnd[] = "Position at which to start analysis is after the end of the trace.";
constexpr char SaveQuestion[] = "Save measurements to ascii file?";

std::span<const float> Recorded(std::span<const float> trace) {
  const auto points = Index(std::max(Model.NumPoints, 0));
  return trace.first(std::min(points, trace.size()));
}

void TellOf(RiseFault fault) {
  const auto tell = [](const MessageTitle& title, const char* text) {
    if (FirstInSeries(text)) MessagePopup(title, text);
  };
  if (fault == RiseFault::FractionsInWrongOrder) tell(AnalysisErrorTitle, FractionsInWrongOrder);
  if (fault == RiseFault::StartAfterEnd) tell(AnalysisWarningTitle, StartAfterEnd);
  if (fault == RiseFault::PeakBeforeStart) tell(AnalysisWarningTitle, PeakBeforeStart);
}

}  // namespace

MeasureSettings StoredMeasureSettings() {
  MeasureSettings settings;
  settings.intervalMs = Model.ADInterval;
  settings.baselineStart = Analysis.BaselineStart;
  settings.baselinePts = Analysis.BaselinePts;
  settings.startAnalysis = Analysis.StartAnalysis;
  settings.peakSearchPts = Analysis.PeakSearchPts;
  settings.peakAvePts = Analysis.PeakAvePts;
  settings.peakOption = Analysis.PeakOption;
  settings.riseStartFrac = Analysis.RiseStartFrac;
  settings.riseEndFrac = Analysis.RiseEndFrac;
  settings.fracDecay = Analysis.FracDecay;
  settings.latencyPos = Analysis.LatencyPos;
  settings.latencyFrac = Analysis.LatencyFrac;
  settings.integralPts = static_cast<std::int64_t>(AnalysisFit.AnalysisFitPts) *
                         static_cast<std::int64_t>(AnalysisFit.AnalysisParse);
  return settings;
}

std::span<const float> RecordedTrace() {
  return Recorded(Trace.SimTrace);
}

std::string DataFilePath() {
  return Trace.TraceFromFile != 0 ? Trace.TraceFileName : Model.ModelFileName;
}

std::string DataFileName() {
  return FileNameOf(DataFilePath());
}

int DataEpisode() {
  return Trace.TraceFromFile != 0 ? Trace.EpisodeIndex : 1;
}

void MeasureBaseline(int start, int count) {
  BaselineOf(RecordedTrace(), start, count, Analysis.Measures);
  MeasuresChanged.Tell();
}

void PeakSearch(std::span<const float> trace, int positions, int start, float baseline, int width) {
  PeakOf(Recorded(trace), positions, start, baseline, width, StoredMeasureSettings(), Analysis.Measures);
  MeasuresChanged.Tell();
}

float MeasureIntegral(std::span<const float> trace, int start, int count, float baseline) {
  return IntegralOf(Recorded(trace), start, count, baseline, Model.ADInterval, Analysis.Measures);
}

void MeasureRise() {
  if (Model.ADInterval == 0.0F) return;
  TellOf(RiseOf(RecordedTrace(), StoredMeasureSettings(), Analysis.Measures));
}

void MeasureDecay() {
  DecayOf(RecordedTrace(), StoredMeasureSettings(), Analysis.Measures);
}

Outcome MeasureTrace() {
  Analysis.Measures.measured = 0;
  if (Model.ADInterval == 0.0F) return Outcome::Refused;
  Analysis.MeasuredWith = StoredMeasureSettings();
  Analysis.MeasuredFile = DataFilePath();
  Analysis.MeasuredEpisode = DataEpisode();
  Analysis.Analysed = 1;
  TellOf(MeasureResponse(RecordedTrace(), Analysis.MeasuredWith, Analysis.Measures));
  FitResponse();
  return Outcome::Done;
}

void ForgetMeasures() {
  if (Analysis.Measures.measured == 0 && Analysis.FittedMode == 0) return;
  Analysis.Measures.measured = 0;
  Analysis.FittedMode = 0;
  AnalysisFit.Curve = {};
  MeasuresForgotten.Tell();
}

void ConnectMeasures() {
  TraceWillChange.Add(ForgetMeasures);
  MemoryRanOut.Add(EndSeries);
}

Outcome ReanalyzeTrace() {
  MeasureSettingsWanted.Tell();
  const Outcome outcome = MeasureTrace();
  MeasuresChanged.Tell();
  ResponseToShow.Tell();
  return outcome;
}

Outcome AnalyzeTrace() {
  const Outcome outcome = ReanalyzeTrace();
  if (outcome != Outcome::Done) return outcome;
  if (Analysis.AutoSaveMeasures != 0 && (Analysis.VerifyMeasures == 0 || ConfirmPopup("", SaveQuestion))) {
    SaveAnalysis(Saving::Automatic);
  }
  if (TableAddRow(Analysis.TableRow)) ++Analysis.TableRow;
  return outcome;
}

}  // namespace zelvane
