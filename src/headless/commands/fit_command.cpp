#include "headless/commands/fit_command.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "fit/fit_events.h"
#include "fit/fit_export.h"
#include "fit/fit_panel.h"
#include "fit/fit_progress.h"
#include "fit/fit_rows.h"
#include "fit/fit_session.h"
#include "fit/session_store.h"
#include "fit/wave_load.h"
#include "fit/wave_set.h"
#include "headless/commands/job_settings.h"
#include "headless/json_values.h"
#include "headless/words.h"
#include "model/model_file.h"
#include "model/model_store.h"
#include "parameters/vertex_store.h"
#include "platform/format_text.h"
#include "platform/index.h"
#include "screen/screen.h"
#include "stimulus/stimulus_store.h"
#include "trace/program_random.h"

namespace zelvane {
namespace {

constexpr const char* NotFinite =
    "The sum of squares is not a finite number. Look for samples that are no numbers in the recordings.";
constexpr double NearlyBest = 1.001;  // a start has reached the best within 0.1 %

/// The result of one start.
struct FitStart {
  int number = 1;
  Seeds seeds{};
  double sumOfSquares = 0.0;
  int resultCode = 0;
  int steps = 0;  // of its last run
  std::int64_t evaluations = 0;
  double seconds = 0.0;
  FittedValues values{};
};

const char* ResultWord(int code) {
  switch (code) {
    case FitConverged:
      return "converged";
    case FitMaxIterations:
      return "iterations used up";
    default:
      return "stopped";
  }
}

// -- Loading --

std::string MisuseOf(const FitOptions& options) {
  if (options.list.empty() == options.pairs.empty()) return "fit takes either a list file or --pair";
  if (options.list.empty() && options.model.empty()) return "--pair needs --model";
  if (options.pairs.size() > Index(MaxFitWaveforms)) return "a fit has at most 15 pairs";
  if (!options.free.empty() && !options.fixed.empty()) return "--free and --fixed exclude each other";
  if (options.starts > 1 && !options.seeds) return "--starts needs --seed";
  return {};
}

bool LoadPairs(const FitOptions& options, const JobStreams& streams) {
  if (ReadJobModel(options.model, streams) == Outcome::Refused) return false;
  SweepChoice choice{.sweep = options.sweep.value_or(1), .channel = options.channel};
  if (options.intervalMs) choice.intervalMs = static_cast<float>(*options.intervalMs);
  for (std::size_t i = 0; i < options.pairs.size(); ++i) {
    const FitPair& pair = options.pairs[i];
    const int w = static_cast<int>(i) + 1;
    if (LoadWaveData(w, pair.data, choice) != Outcome::Done) {
      streams.err << pair.data << ": not loaded\n";
      return false;
    }
    if (LoadWaveStimulus(w, pair.stimulus) != Outcome::Done) {
      streams.err << pair.stimulus << ": not loaded\n";
      return false;
    }
  }
  return true;
}

bool LoadWaveforms(const FitOptions& options, const JobStreams& streams) {
  if (options.list.empty()) return LoadPairs(options, streams);
  if (!options.model.empty() && ReadJobModel(options.model, streams) == Outcome::Refused) return false;
  WaveSetClear();
  if (ReadListNamed(options.list, options.model) == Outcome::Done && Fit.FitWaveCount > 0) return true;
  streams.err << options.list << ": not all its pairs are loaded\n";
  return false;
}

// -- Options --

/// Returns the row of a rate by a name such as KOn[3], KOff[3], TableRate[1][2] or K1,2; 0 for an unknown one.
int RowNamed(std::string_view name) {
  for (const FitRow& row : FitRowsInUse()) {
    const std::string label = FormatText("K%d,%d", row.from, row.to);
    std::string field = FormatText("TableRate[%d][%d]", row.from, row.to);
    if (Model.ModelIs2D != 0) field = FormatText(row.code > 0 ? "KOn[%d]" : "KOff[%d]", std::abs(row.code));
    if (name == label || name == field) return row.row;
  }
  return 0;
}

/// Fixes or frees the named rates, and does the opposite to all others. Returns false with a message for a name that
/// is no rate of the scheme.
bool SetFlags(const std::vector<std::string>& names, bool fixed, std::ostream& err) {
  if (names.empty()) return true;
  for (const FitRow& row : FitRowsInUse()) FixRow(row.row, !fixed);
  for (const std::string& name : names) {
    const int row = RowNamed(name);
    if (row == 0) {
      err << Shortened(name) << ": no rate of the scheme that is fitted\n";
      return false;
    }
    FixRow(row, fixed);
  }
  return true;
}

bool SetLimit(const std::string& option, std::ostream& err) {
  const std::size_t equals = option.rfind('=');
  const std::size_t colon = option.find(':', equals == std::string::npos ? 0 : equals);
  if (equals == std::string::npos || colon == std::string::npos) {
    err << "--limits takes NAME=LO:HI, not " << Shortened(option) << '\n';
    return false;
  }
  const int row = RowNamed(std::string_view(option).substr(0, equals));
  const auto low = ParseNumber(std::string_view(option).substr(equals + 1, colon - equals - 1));
  const auto high = ParseNumber(std::string_view(option).substr(colon + 1));
  if (row == 0 || !low || !high || !std::isfinite(*low) || !std::isfinite(*high)) {
    err << "--limits " << Shortened(option)
        << (row == 0 ? ": no rate of the scheme that is fitted\n" : ": two numbers\n");
    return false;
  }
  Fit.WaveFitLimits[Index(row)] = {*low, *high};
  return true;
}

/// Writes the options to the stores and panels. Returns false with a message when one cannot be met.
bool ApplyOptions(const FitOptions& options, std::ostream& err) {
  if (!ApplySettings(options.settings, err)) return false;
  if (options.restarts) Fit.FitNumRestarts = *options.restarts;
  if (options.iterations) Fit.FitNumIterations = *options.iterations;
  if (options.tolerance) Fit.WaveFitTolerance = *options.tolerance;
  if (options.form) Fit.FitModelIs2D = *options.form;
  Fit.FitLogOn = options.logFile.empty() ? 0 : 1;
  Fit.FitLogFile = options.logFile;
  WaveFitRowsBuild(RowLimits::Keep);
  if (!SetFlags(options.free, false, err) || !SetFlags(options.fixed, true, err)) return false;
  for (const std::string& limit : options.limits) {
    if (!SetLimit(limit, err)) return false;
  }
  return true;
}

// -- Running --

/// Shows the progress of the session that runs.
void ShowLine() {
  const SimplexTable& table = Vertices.simplex;
  const double done =
      Fit.FitNumIterations > 0 ? static_cast<double>(table.NumEvals) / Fit.FitNumIterations : 0.0;
  ShowProgress(std::clamp(done, 0.0, 1.0), FormatText("%lld evaluations, %.0f/s, residual %.3e",
                                                      static_cast<long long>(FitSession.evaluations),
                                                      EvaluationsPerSecond(), Fit.FitNormResidual));
}

/// Runs a session. Returns false when it did not begin.
bool RunStart(const FitOptions& options, FitStart& start) {
  const FitAnswers answers{
      .longerStep = options.stepUp, .anyInterval = options.anyInterval, .normalize = options.normalize};
  const Outcome outcome = RunRateFit(answers);
  if (outcome == Outcome::Refused || outcome == Outcome::Failed) return false;
  const SimplexTable& table = Vertices.simplex;
  start.sumOfSquares = table.At(0, table.BestVertex);
  start.resultCode = Vertices.FitResultCode;
  start.steps = table.NumEvals;
  start.evaluations = FitSession.evaluations;
  start.seconds = FitSession.seconds;
  start.values = FitSession.after;
  return true;
}

bool RunStarts(const FitOptions& options, std::vector<FitStart>& starts, const JobStreams& streams) {
  const FittedValues first = FittedValuesNow();
  for (int k = 1; k <= options.starts; ++k) {
    FitStart start;
    start.number = k;
    if (options.seeds) {
      start.seeds = *options.seeds;
      for (double& seed : start.seeds) seed += k - 1;
      SetSeeds(ProgramRandom, start.seeds);
    }
    PutFittedValues(first);
    if (!RunStart(options, start)) return false;
    starts.push_back(start);
    if (StopAsked(streams)) break;
  }
  return !starts.empty();
}

// -- Results --

struct RateResult {
  FitRow row{};
  std::string name;
  double before = 0.0;
  double after = 0.0;
  bool fixed = false;
};

std::vector<RateResult> RateResults(const FittedValues& before, const FittedValues& after) {
  std::vector<RateResult> rates;
  for (const FitRow& row : FitRowsInUse()) {
    RateResult rate;
    rate.row = row;
    rate.name = FormatText("K%d,%d", row.from, row.to);
    rate.before = RateIn(before, row.code);
    rate.after = RateIn(after, row.code);
    rate.fixed = RowIsFixed(row.row);
    rates.push_back(std::move(rate));
  }
  return rates;
}

double ShareOfBest(const std::vector<FitStart>& starts) {
  const auto reached = std::count_if(starts.begin(), starts.end(), [&](const FitStart& start) {
    return start.sumOfSquares <= starts.front().sumOfSquares * NearlyBest;
  });
  return static_cast<double>(reached) / static_cast<double>(starts.size());
}

double PerPoint(const FitStart& start) {
  return FitSession.points > 0 ? start.sumOfSquares / FitSession.points : 0.0;
}

void WriteStarts(const std::vector<FitStart>& starts, std::ostream& out) {
  out << FormatText("%-6s %-22s %-14s %-12s %s\n", "start", "seeds", "sum of squares", "evaluations",
                    "result");
  for (const FitStart& start : starts) {
    const std::string seeds = FormatText("%.0f,%.0f,%.0f", start.seeds[0], start.seeds[1], start.seeds[2]);
    out << FormatText("%-6d %-22s %-14.6g %-12lld %s\n", start.number, seeds.c_str(), start.sumOfSquares,
                      static_cast<long long>(start.evaluations), ResultWord(start.resultCode));
  }
  out << FormatText("%.0f %% of the starts reached the lowest sum of squares within 0.1 %%\n",
                    100.0 * ShareOfBest(starts));
}

void WriteText(const std::vector<RateResult>& rates, const std::vector<FitStart>& starts, std::ostream& out) {
  const FitStart& best = starts.front();
  if (starts.size() > 1) WriteStarts(starts, out);
  out << FormatText("%s after %lld evaluations in %.2f s (%.0f per second)\n", ResultWord(best.resultCode),
                    static_cast<long long>(best.evaluations), best.seconds,
                    best.seconds > 0.0 ? static_cast<double>(best.evaluations) / best.seconds : 0.0);
  out << FormatText("sum of squares %.6g over %d samples, %.6g per sample\n", best.sumOfSquares,
                    FitSession.points, PerPoint(best));
  out << FormatText("%-8s %-14s %-14s\n", "rate", "before", "after");
  for (const RateResult& rate : rates) {
    out << FormatText("%-8s %-14.6g %-14.6g%s\n", rate.name.c_str(), rate.before, rate.after,
                      rate.fixed ? " fixed" : "");
  }
}

Json StartJson(const FitStart& start) {
  Json json = Json::object();
  json["start"] = start.number;
  json["seeds"] = start.seeds;
  json["sumOfSquares"] = NumberJson(start.sumOfSquares);
  json["result"] = start.resultCode;
  json["steps"] = start.steps;
  json["evaluations"] = start.evaluations;
  return json;
}

void WriteJson(const std::vector<RateResult>& rates, const std::vector<FitStart>& starts, std::ostream& out) {
  const FitStart& best = starts.front();
  Json json = Json::object();
  json["result"] = best.resultCode;
  json["resultWord"] = ResultWord(best.resultCode);
  json["sumOfSquares"] = NumberJson(best.sumOfSquares);
  json["samples"] = FitSession.points;
  json["normalisedResidual"] = NumberJson(PerPoint(best));
  json["evaluations"] = best.evaluations;
  json["rates"] = Json::array();
  for (const RateResult& rate : rates) {
    Json row = Json::object();
    row["name"] = rate.name;
    row["before"] = NumberJson(rate.before);
    row["after"] = NumberJson(rate.after);
    row["fixed"] = rate.fixed;
    json["rates"].push_back(std::move(row));
  }
  json["starts"] = Json::array();
  for (const FitStart& start : starts) json["starts"].push_back(StartJson(start));
  json["share"] = ShareOfBest(starts);
  out << JsonLine(json) << '\n';
}

/// Writes the files of the options from the best start, whose values are in the stores.
bool WriteFiles(const FitOptions& options, std::ostream& err) {
  const auto unwritten = [&](const std::string& path) {
    err << path << ": cannot be written\n";
    return false;
  };
  if (!options.outFile.empty()) {
    Model.ModelFileName = options.outFile;
    if (ModelFileWrite() != Outcome::Done) return unwritten(options.outFile);
  }
  if (!options.curvesFile.empty() && ExportFitNamed(options.curvesFile, RowsOfCurves()) != Outcome::Done)
    return unwritten(options.curvesFile);
  return true;
}

}  // namespace

int FitCommand(const FitOptions& options, const JobStreams& streams) {
  if (const std::string misuse = MisuseOf(options); !misuse.empty()) {
    streams.err << misuse << '\n';
    return JobMisused;
  }
  const JobScreen screen(streams);
  StartJob(options.seeds);
  FitProgressed.Add(ShowLine);
  if (!LoadWaveforms(options, streams)) return JobFailed;
  if (!ApplyOptions(options, streams.err)) return JobMisused;
  Stimulus.StimFromFile = 1;  // the stimuli are those of the waveforms; no file is asked for
  ShowJobStores();
  const FittedValues before = FittedValuesNow();
  std::vector<FitStart> starts;
  if (!RunStarts(options, starts, streams)) return JobFailed;
  ResetProgress();
  const bool stopped = StopAsked(streams) || starts.back().resultCode == FitUserBreak;
  std::stable_sort(starts.begin(), starts.end(), [](const FitStart& a, const FitStart& b) {
    return a.sumOfSquares < b.sumOfSquares || (std::isnan(b.sumOfSquares) && !std::isnan(a.sumOfSquares));
  });
  if (!std::isfinite(starts.front().sumOfSquares)) {
    streams.err << NotFinite << '\n';
    return JobFailed;
  }
  const std::vector<RateResult> rates = RateResults(before, starts.front().values);
  if (starts.size() > 1) {
    PutFittedValues(starts.front().values);
    CompareOnce();
  }
  SetWriteStop({});  // also after a stop the best so far is written
  if (!WriteFiles(options, streams.err)) return JobFailed;
  if (options.json)
    WriteJson(rates, starts, streams.out);
  else
    WriteText(rates, starts, streams.out);
  if (!stopped) return JobDone;
  streams.err << "stopped; the rates are the best so far\n";
  return JobFailed;
}

}  // namespace zelvane
