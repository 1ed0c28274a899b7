#include "headless/commands/average_command.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "analysis/averages.h"
#include "analysis/averages_files.h"
#include "analysis/averages_store.h"
#include "headless/commands/job_settings.h"
#include "headless/json_values.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "platform/safe_file.h"
#include "screen/popups.h"
#include "trace/trace_export.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char Interrupted[] = "stopped; nothing was written";
constexpr char AveragingText[] = "averaging";

std::string MisuseOf(const AverageOptions& options) {
  if (!options.outFile.empty() && !TraceFormatOf(options.outFile))
    return options.outFile + ": the name of a mean ends in .atf, .csv, .txt or .asc";
  if (!options.varianceFile.empty() && ExtensionOf(options.varianceFile) != ".csv")
    return options.varianceFile + ": the name of a variance ends in .csv";
  if (options.align == AlignAtCursor && !options.cursorMs) return "--align free takes its place from --at MS";
  return {};
}

/// The settings of the search before the user's own.
constexpr int NoSearch = 1;

/// Lets the search for the peak last to the end of a sweep, unless the settings say how long.
void FollowSweep() {
  const int start = static_cast<int>(Averages.WaveStartAnalysis / Model.ADInterval);
  Averages.WavePeakSearchPts = std::max(Model.NumPoints - start - 1, 1);
}

/// What the command counts.
struct Counts {
  int sweeps = 0;
  float intervalMs = 0.0F;
  int shortest = 0;  // samples
  int longest = 0;
};

/// Adds the sweeps of a file. Returns JobDone when all were added.
int AddFile(const AverageOptions& options, const std::string& file, bool follows, Counts& counts,
            const JobStreams& streams) {
  Recording recording;
  const int opened = OpenRecording({file, options.channel, options.intervalMs}, recording, streams.err);
  if (opened != JobDone) return opened;
  if (counts.sweeps > 0 && counts.intervalMs != Model.ADInterval) {
    streams.err << file
                << FormatText(": its interval is %g ms, that of the files before %g ms\n",
                              static_cast<double>(Model.ADInterval), static_cast<double>(counts.intervalMs));
    return JobFailed;
  }
  counts.intervalMs = Model.ADInterval;
  const int last = options.sweeps.last == 0 ? recording.sweeps : options.sweeps.last;
  if (last > recording.sweeps || options.sweeps.first > recording.sweeps) {
    streams.err << file << ": it has " << recording.sweeps << " sweeps\n";
    return JobMisused;
  }
  if (options.cursorMs) Averages.AlignCursor = *options.cursorMs / static_cast<double>(Model.ADInterval);
  for (int sweep = options.sweeps.first; sweep <= last; ++sweep) {
    if (StopAsked(streams)) {
      streams.err << Interrupted << '\n';
      return JobFailed;
    }
    ShowProgress(static_cast<double>(sweep - options.sweeps.first) / (last - options.sweeps.first + 1),
                 AveragingText);
    if (!ReadSweepOf(recording, sweep)) {
      streams.err << file << ": sweep " << sweep << " cannot be read\n";
      return JobFailed;
    }
    if (follows) FollowSweep();
    WaveAddAverage();
    counts.shortest = counts.sweeps == 0 ? Model.NumPoints : std::min(counts.shortest, Model.NumPoints);
    counts.longest = std::max(counts.longest, Model.NumPoints);
    ++counts.sweeps;
  }
  return JobDone;
}

/// The numbers of the summary.
struct AverageSummary {
  double peak = 0.0;       // of the mean, largest magnitude
  double deviation = 0.0;  // root of the mean variance; nan with one sweep
  int places = 0;          // with a mean
};

AverageSummary Summarise(std::span<const float> mean, std::span<const float> variance) {
  AverageSummary summary;
  double sum = 0.0;
  int known = 0;
  for (std::size_t k = 0; k < mean.size(); ++k) {
    if (std::isnan(mean[k])) continue;
    ++summary.places;
    const auto y = static_cast<double>(mean[k]);
    if (std::fabs(y) > std::fabs(summary.peak)) summary.peak = y;
    if (std::isnan(variance[k])) continue;
    sum += static_cast<double>(variance[k]);
    ++known;
  }
  summary.deviation = known > 0 ? std::sqrt(sum / known) : std::nan("");
  return summary;
}

/// Returns the mean up to the first place that no sweep reached: a trace has no gaps.
std::span<const float> WholePart(std::span<const float> mean) {
  const auto gap = std::find_if(mean.begin(), mean.end(), [](float v) { return std::isnan(v); });
  return mean.first(static_cast<std::size_t>(gap - mean.begin()));
}

bool WriteFiles(const AverageOptions& options, std::span<const float> mean, const JobStreams& streams) {
  if (!options.outFile.empty() &&
      !WriteTraceFile(options.outFile, WholePart(mean), Model.ADInterval, "Average")) {
    TellUnwritten(options.outFile, streams);
    return false;
  }
  if (!options.varianceFile.empty() && !ReplaceFile(options.varianceFile, VarianceCsv())) {
    TellUnwritten(options.varianceFile, streams);
    return false;
  }
  return true;
}

void WriteSummary(const AverageOptions& options, const Counts& counts, const AverageSummary& summary,
                  std::ostream& out) {
  if (options.json) {
    Json json = Json::object();
    json["files"] = options.files;
    json["sweeps"] = counts.sweeps;
    json["interval"] = TypedJson(counts.intervalMs);
    json["samples"] = summary.places;
    json["peak"] = summary.peak;
    json["deviation"] = std::isnan(summary.deviation) ? Json(nullptr) : Json(summary.deviation);
    out << JsonLine(json) << '\n';
    return;
  }
  out << FormatText("%d sweeps averaged, %d samples, peak of the mean %.6g", counts.sweeps, summary.places,
                    summary.peak);
  if (!std::isnan(summary.deviation))
    out << FormatText(", standard deviation of the sweeps %.4g", summary.deviation);
  out << '\n';
}

}  // namespace

int AverageCommand(const AverageOptions& options, const JobStreams& streams) {
  const std::string misuse = MisuseOf(options);
  if (!misuse.empty()) {
    streams.err << misuse << '\n';
    return JobMisused;
  }
  const JobScreen screen(streams);
  StartJob({});
  if (!options.model.empty() && ReadJobModel(options.model, streams) == Outcome::Refused) return JobFailed;
  const OnceScreen messages;
  if (!ApplySettings(options.settings, streams.err)) return JobMisused;
  Averages.AlignMode = options.align;
  Averages.WaveBaselineCorrect = options.subtractBaseline ? 1 : Averages.WaveBaselineCorrect;
  const bool follows = Averages.WavePeakSearchPts == NoSearch;
  Counts counts;
  for (const std::string& file : options.files) {
    const int added = AddFile(options, file, follows, counts, streams);
    if (added != JobDone) return added;
  }
  ResetProgress();
  Model.NumPoints = counts.longest;
  const std::vector<float> mean = MeanWave();
  const std::vector<float> variance = VarianceWave();
  if (!WriteFiles(options, mean, streams)) return JobFailed;
  if (counts.shortest != counts.longest)
    Note("The sweeps have different lengths; the tail is the mean of the longer ones.");
  WriteSummary(options, counts, Summarise(mean, variance), streams.out);
  return JobDone;
}

}  // namespace zelvane
