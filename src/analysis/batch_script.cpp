#include "analysis/batch_script.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "analysis/dose_response.h"
#include "analysis/dose_store.h"
#include "analysis/series.h"
#include "formats/input_file.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "run/run.h"
#include "screen/popups.h"
#include "screen/window_reporter.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

constexpr std::size_t LongestScript = 1U << 20U;  // bytes; its 22 lines are far shorter
constexpr char NotOpened[] = "The script cannot be read: %s.";
constexpr char FewerNames[] = "The script announces %d stimulus files and names %d.";
constexpr char RowWithoutFile[] = "Row %d is a run with the stimulus before it: its file could not be read.";
constexpr char RunsEnded[] = "The script ended in row %d, whose run was refused or failed.";

/// Returns the samples of a profile that the run used.
std::span<const float> RunSamples(int profile) {
  const std::span<const float> samples = Stimulus.Profile[Index(profile)];
  return samples.first(std::min(samples.size(), Index(std::max(Model.NumPoints, 0))));
}

/// Runs the model with one file and stores its pair.
Outcome RunRow(const std::string& path, int profile, int row) {
  if (StimFileRead(path) != Outcome::Done) Note(FormatText(RowWithoutFile, row + 1));
  const Outcome run = RunSimulation(Model.NumPoints, ChosenStart(), WindowReporter());
  if (run != Outcome::Done) return run;
  AnalyzeTrace();
  Dose.DoseResponse[Index(row)] = Analysis.Measures.PeakValue - Analysis.Measures.Baseline;
  Dose.DoseConc[Index(row)] = StimulusValue(profile);
  Dose.DoseFitted = 0;
  CountDosePairs();
  DosesToShow.Tell();
  return Outcome::Done;
}

Outcome RunRows(const BatchScript& script, const std::string& folder,
                const std::function<Outcome(int row)>& afterRun) {
  const int rows = std::min(script.count, static_cast<int>(script.names.size()));
  for (int row = 0; row < rows; ++row) {
    ShowProgress(static_cast<double>(row) / rows, FormatText("Script: file %d of %d", row + 1, rows));
    Outcome outcome = RunRow(folder + script.names[Index(row)], script.profile, row);
    if (outcome == Outcome::Done && afterRun) outcome = afterRun(row);
    if (outcome == Outcome::Refused || outcome == Outcome::Failed) Note(FormatText(RunsEnded, row + 1));
    if (outcome != Outcome::Done) return outcome;
    ProcessSystemEvents();
    if (StopAsked() && row + 1 < rows) return Outcome::Stopped;
  }
  if (rows < script.count) Note(FormatText(FewerNames, script.count, rows));
  return Outcome::Done;
}

std::string FolderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  return folder.empty() || folder.ends_with('/') ? folder : folder + '/';
}

}  // namespace

float StimulusValue(int profile) {
  float value = Stimulus.Profile[1][0];
  const std::span<const float> samples = RunSamples(profile);
  for (std::size_t j = 1; j < samples.size(); ++j) {
    if (std::fabs(samples[j]) > value) value = samples[j];
  }
  return value;
}

Outcome RunBatchScript(const std::string& path, const std::function<Outcome(int row)>& afterRun) {
  RunSettingsWanted.Tell();
  Stimulus.ScriptRunning = 1;
  ScriptBegins.Tell();
  const auto text = ReadBytes(path, LongestScript);
  Outcome outcome = Outcome::Refused;
  if (text) {
    const auto script = ParseBatchScript(*text);
    if (!script) {
      FileErrorPopup(WrongFileFormat);
      return Outcome::Refused;
    }
    if (script->count < 0) return Outcome::Refused;
    ForgetStop();
    const SeriesOfRuns series;
    outcome = RunRows(*script, FolderOf(path), afterRun);
  } else {
    Note(FormatText(NotOpened, path.c_str()));
  }
  SeedFromPairs();
  DosesToShow.Tell();
  return outcome;
}

}  // namespace zelvane
