#include "analysis/run_analysis.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <utility>

#include "analysis/analyze.h"
#include "analysis/results_files.h"
#include "analysis/series.h"
#include "model/model.h"
#include "run/result_store.h"
#include "screen/memory_guard.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char ExportTitle[] = "Export Analysis Results";
constexpr MessageTitle AppendTitle{MessageKind::Warning, "! File Present; Append"};
constexpr char AppendText[] = "The results of this simulation are added to the end of ";
constexpr float SmallestVariance = 0.0001F;

RunAverages& Averages() {
  static RunAverages averages;
  return averages;
}

/// Appends a number as "%.6e" writes it.
void AppendExponential(std::string& text, float value) {
  char digits[32];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, static_cast<double>(value),
                                    std::chars_format::scientific, 6)
                          .ptr);
}

}  // namespace

void AddToAverages(RunAverages& averages, std::span<const float> trace) {
  if (averages.runs == 0) {
    averages.mean.assign(trace.size(), 0.0F);
    averages.variance.assign(trace.size(), 0.0F);
  }
  const std::size_t points = std::min(trace.size(), averages.mean.size());
  for (std::size_t i = 0; i < points; ++i) averages.mean[i] += trace[i];
  for (std::size_t i = 0; averages.runs > 0 && i < std::min(points, averages.previous.size()); ++i) {
    const float difference = trace[i] - averages.previous[i];
    averages.variance[i] += difference * difference;
  }
  averages.previous.assign(trace.begin(), trace.end());
  ++averages.runs;
}

void FinishAverages(RunAverages& averages) {
  if (averages.runs < 2) return;
  for (float& value : averages.mean) value /= static_cast<float>(averages.runs);
  for (float& value : averages.variance) value /= static_cast<float>(averages.runs - 1);
}

std::string VarianceText(const RunAverages& averages) {
  std::string text;
  for (std::size_t i = 0; i < averages.mean.size(); ++i) {
    if (averages.mean[i] == 0.0F || !(averages.variance[i] > SmallestVariance)) continue;
    AppendExponential(text, averages.mean[i]);
    text += ", ";
    AppendExponential(text, averages.variance[i]);
    text += ",\n";
  }
  return text;
}

bool BeginRunAnalysis() {
  const auto path =
      FileSelectPopup({.title = ExportTitle, .defaultName = "*.res", .filter = "*.res", .save = true});
  if (!path) return false;
  std::error_code error;
  if (std::filesystem::exists(*path, error)) MessagePopup(AppendTitle, AppendText + *path);
  BeginSeries();
  Averages() = RunAverages{};
  EndMeasuresFile();
  Result.ResultsFileName = *path;
  Analysis.MeasuresFileName = *path;
  Analysis.MeasuresFileOpen = 1;
  Analysis.MeasuresCount = 0;
  MeasuresFileChanged.Tell();
  return true;
}

void AnalyzeRun() {
  MeasureSettingsWanted.Tell();
  if (MeasureTrace() == Outcome::Done) {
    MeasuresChanged.Tell();
    AppendMeasures(Saving::Automatic);
  }
  AddToAverages(Averages(), RecordedTrace());
}

void EndRunAnalysis() {
  EndSeries();
  RunAverages& averages = Averages();
  if (averages.runs > 1) {
    FinishAverages(averages);
    const std::string path = SiblingFile(Result.ResultsFileName, ".var");
    SaveText(path, VarianceText(averages));
  }
  averages = RunAverages{};
  EndMeasuresFile();
  MeasuresFileChanged.Tell();
}

void ConnectRunAnalysis() {
  static bool analyzes = false;  // whether to analyse the runs of this series
  analyzes = false;
  SeriesBegins.Add([] { analyzes = Model.AutoAnalyze != 0 && HasSeveralRuns() && BeginRunAnalysis(); });
  SeriesRun.Add([](int) {
    if (analyzes) AnalyzeRun();
  });
  SeriesEnds.Add([] {
    if (std::exchange(analyzes, false)) EndRunAnalysis();
  });
  MemoryRanOut.Add([] {  // the rows in the file stay
    if (!std::exchange(analyzes, false)) return;
    Averages() = RunAverages{};
    Analysis.MeasuresFileOpen = 0;
    MeasuresFileChanged.Tell();
  });
}

}  // namespace zelvane
