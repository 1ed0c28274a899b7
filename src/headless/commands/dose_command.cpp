#include "headless/commands/dose_command.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <ostream>

#include "analysis/analysis_panel.h"
#include "analysis/batch_script.h"
#include "analysis/dose_response.h"
#include "analysis/dose_runs.h"
#include "analysis/dose_store.h"
#include "headless/commands/dose_summary.h"
#include "headless/commands/job_settings.h"
#include "headless/words.h"
#include "model/model_store.h"
#include "parameters/parameters_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "platform/safe_file.h"
#include "screen/fields.h"
#include "screen/popups.h"
#include "stimulus/stimulus_store.h"
#include "trace/trace_export.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char Interrupted[] = "stopped; nothing was written";
constexpr char WindowSet[] =
    "Baseline, peak search and integral follow the pulse, because the peak search of the model does not meet it.";
constexpr int FirstDoses = 13;
constexpr double DecadesBelow = 3.0;
constexpr const char* MeasureWords[] = {"peak", "steady", "area"};
constexpr const char* UnitWords[] = {"", "pS", "pA", ""};

/// Returns `count` concentrations with equal ratios.
std::vector<float> Spaced(double low, double high, int count) {
  std::vector<float> values;
  for (int k = 0; k < count; ++k) {
    const double part = count > 1 ? static_cast<double>(k) / (count - 1) : 0.0;
    values.push_back(static_cast<float>(low * std::pow(high / low, part)));
  }
  return values;
}

std::optional<std::vector<float>> ParseSpaced(std::string_view text) {
  const std::size_t first = text.find(':');
  const std::size_t second = text.find(':', first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  const auto low = ParseNumber(text.substr(0, first));
  const auto high = ParseNumber(text.substr(first + 1, second - first - 1));
  const auto count = WholeNumber(text.substr(second + 1));
  if (!low || !high || !count || *count < 1 || *count > MaxDosePairs) return std::nullopt;
  if (!(*low > 0.0) || !(*high >= *low) || !NumberSuits(FieldType::Float, *high)) return std::nullopt;
  return Spaced(*low, *high, *count);
}

/// Reads a model, the settings and their stimulus. Returns JobDone when a run is possible.
int Prepare(const std::string& model, const std::vector<std::string>& settings,
            const std::optional<Seeds>& seeds, const std::optional<int>& points, const JobStreams& streams) {
  StartJob(seeds);
  if (ReadJobModel(model, streams) != Outcome::Done) return JobFailed;
  if (!ApplySettings(settings, streams.err)) return JobMisused;
  if (points) Model.NumPoints = *points;
  Parameters.FitMode = 0;  // no exponential is fitted to the responses
  return ShowJobStores() == Outcome::Done ? JobDone : JobFailed;
}

std::string UnitsOfResponse(int measure) {
  const bool known = Trace.TraceUnits >= 0 && Index(Trace.TraceUnits) < std::size(UnitWords);
  std::string unit = known ? UnitWords[Index(Trace.TraceUnits)] : "";
  if (measure != DoseArea) return unit;
  return unit.empty() ? "ms" : unit + " ms";
}

bool WriteText(const std::string& path, const std::string& text, const JobStreams& streams) {
  if (ReplaceFile(path, text)) return true;
  TellUnwritten(path, streams);
  return false;
}

/// Returns why the runs did not end, after a message of their own.
int Unfinished(Outcome outcome, const JobStreams& streams) {
  if (outcome == Outcome::Stopped || StopAsked(streams)) streams.err << Interrupted << '\n';
  return JobFailed;
}

}  // namespace

std::optional<std::vector<float>> ParseConcentrations(std::string_view text) {
  if (text.find(':') != std::string_view::npos) return ParseSpaced(text);
  std::vector<float> values;
  while (true) {
    const std::size_t comma = text.find(',');
    const auto value = ParseNumber(text.substr(0, comma));
    if (!value || !(*value >= 0.0) || !NumberSuits(FieldType::Float, *value)) return std::nullopt;
    values.push_back(static_cast<float>(*value));
    if (values.size() > MaxDosePairs) return std::nullopt;
    if (comma == std::string_view::npos) return values;
    text.remove_prefix(comma + 1);
  }
}

int DoseCommand(const DoseOptions& options, const JobStreams& streams) {
  if (!options.outFile.empty() && ExtensionOf(options.outFile) != ".csv") {
    streams.err << options.outFile << ": the name of a curve ends in .csv\n";
    return JobMisused;
  }
  const JobScreen screen(streams);
  const int prepared = Prepare(options.model, options.settings, options.seeds, options.points, streams);
  if (prepared != JobDone) return prepared;
  const PulseSpan pulse = PulseOf(options.drug);
  std::vector<float> doses = options.concentrations;
  if (pulse.largest > 0.0F) {
    const auto largest = static_cast<double>(pulse.largest);
    if (doses.empty()) doses = Spaced(largest * std::pow(10.0, -DecadesBelow), largest * 10.0, FirstDoses);
    if (WindowOfPulse(pulse)) {
      Note(WindowSet);
      WriteAnalysisPanel();
    }
  }
  std::vector<float> response(doses.size(), 0.0F);
  const Outcome runs = SimulateDoses(doses, options.drug, options.measure, response);
  if (runs != Outcome::Done || StopAsked(streams)) return Unfinished(runs, streams);
  const DoseSummary summary = FitDosePairs(doses, response);
  if (StopAsked(streams)) return Unfinished(Outcome::Stopped, streams);
  if (!options.outFile.empty() && !WriteText(options.outFile, DoseCsv(summary), streams)) return JobFailed;
  const DoseReport report{options.model, MeasureWords[options.measure], UnitsOfResponse(options.measure),
                          options.drug};
  WriteDoseSummary(summary, report, options.json, streams.out);
  return JobDone;
}

int BatchCommand(const BatchOptions& options, const JobStreams& streams) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(options.script, error)) {
    streams.err << options.script << ": no such file\n";
    return JobFailed;
  }
  if (!options.outFolder.empty() && !std::filesystem::is_directory(options.outFolder, error) &&
      !std::filesystem::create_directories(options.outFolder, error)) {
    streams.err << options.outFolder << ": the folder cannot be made\n";
    return JobFailed;
  }
  const JobScreen screen(streams);
  const int prepared = Prepare(options.model, options.settings, options.seeds, {}, streams);
  if (prepared != JobDone) return prepared;
  const std::filesystem::path folder(options.outFolder);
  const auto saveTrace = [&](int row) {
    if (options.outFolder.empty()) return Outcome::Done;
    const std::string name = std::filesystem::path(Stimulus.StimFileName).stem().string();
    const std::string path = (folder / FormatText("%02d_%s.atf", row + 1, name.c_str())).string();
    const auto trace = Trace.SimTrace.first(Index(Model.NumPoints));
    if (WriteTraceFile(path, trace, Model.ADInterval, "Response")) return Outcome::Done;
    TellUnwritten(path, streams);
    return Outcome::Failed;
  };
  const Outcome runs = RunBatchScript(options.script, saveTrace);
  if (runs != Outcome::Done || StopAsked(streams)) return Unfinished(runs, streams);
  const auto pairs = static_cast<std::ptrdiff_t>(Dose.DoseCount);
  const std::vector<float> doses(Dose.DoseConc.begin(), Dose.DoseConc.begin() + pairs);
  const std::vector<float> response(Dose.DoseResponse.begin(), Dose.DoseResponse.begin() + pairs);
  const DoseSummary summary = FitDosePairs(doses, response);
  if (!options.outFolder.empty() && !WriteText((folder / "doses.csv").string(), DoseCsv(summary), streams))
    return JobFailed;
  WriteDoseSummary(summary, {options.model, "peak", UnitsOfResponse(DosePeak), 1}, options.json, streams.out);
  return JobDone;
}

}  // namespace zelvane
