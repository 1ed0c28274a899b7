#include "headless/commands/simulate_command.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ostream>

#include "dwells/dwell_lists.h"
#include "formats/recording_file.h"
#include "headless/commands/job_settings.h"
#include "headless/commands/run_summary.h"
#include "headless/commands/single_channel_summary.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "run/occupancy_export.h"
#include "run/run.h"
#include "run/run_panel.h"
#include "screen/screen.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"
#include "trace/trace_export.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Writes all options to the stores. Returns false when an option cannot be met.
bool ApplyOptions(const SimulateOptions& options, std::ostream& err) {
  if (!ApplySettings(options.settings, err)) return false;
  if (options.simulator) Model.SimulatorKind = *options.simulator;
  if (options.points) Model.NumPoints = *options.points;
  if (options.intervalMs) Model.ADInterval = static_cast<float>(*options.intervalMs);
  if (options.units) Model.DisplayUnits = *options.units;
  if (options.channels) Model.NumChannels = *options.channels;
  if (options.runs) Model.NumRuns = *options.runs;
  if (Model.NumPoints < 1 || Model.NumPoints > MaxPoints) {
    err << "points: " << Model.NumPoints << " is not between 1 and " << MaxPoints << '\n';
    return false;
  }
  if (!(Model.ADInterval > 0.0F) || !std::isfinite(Model.ADInterval)) {
    err << "interval: must be above 0 ms\n";
    return false;
  }
  return true;
}

/// Reads the stimulus, its interval and its points from a file.
bool ReadStimulus(const std::string& path, std::ostream& err) {
  if (const OpenedRecording opened = OpenRecordingFile(path, OpenAs::Stimulus); opened.file) {
    // Set before the reading, so that the reader does not ask whether to use them.
    Model.ADInterval = opened.file->Account().stimulus.intervalMs;
    Model.NumPoints = opened.file->Account().samples - 1;
  }
  if (StimFileRead(path) != Outcome::Done) {
    err << path << ": no stimulus can be read from it\n";
    return false;
  }
  Model.ADInterval = std::clamp(Model.ADInterval, LeastFileInterval, MostFileInterval);
  Stimulus.StimMode = StimUser;
  Stimulus.StimFromFile = 1;
  return true;
}

/// Makes a job append its run to the file of its options, never to a file of the model.
void ChooseAutosave(const std::string& path) {
  Model.Autosave = path.empty() ? 0 : 1;
  Model.AutosaveFormat = ExtensionOf(path) == ".abf" ? 1 : 0;
  Trace.AutosaveFileName = path;
}

void WarnOfEmptyStimulus(std::ostream& err) {
  if (Stimulus.StimMode == StimAutomatic || Stimulus.StimFromFile != 0) return;
  err << "note: this model's stimulus is built by hand (StimMode " << Stimulus.StimMode
      << "), and a model file does not hold it; the run has no stimulus. --set StimMode=" << StimAutomatic
      << " uses the automatic step.\n";
}

/// Returns whether the run left a whole trace. Writes the reason when the program has not shown it.
bool RunSucceeded(Outcome run, const JobStreams& streams) {
  if (StopAsked(streams)) {
    if (run != Outcome::Stopped) streams.err << RunInterrupted << '\n';  // the stop came after the last check
    return false;
  }
  return run == Outcome::Done;
}

bool WriteTrace(const std::string& path, std::span<const float> trace, const JobStreams& streams) {
  if (path.empty()) return true;
  if (WriteTraceFile(path, trace, Model.ADInterval, GraphNamed(MainPanelName).y.title)) return true;
  TellUnwritten(path, streams);
  return false;
}

bool WriteFiles(const SimulateOptions& options, std::span<const float> mean, const JobStreams& streams) {
  const std::span<const float> trace = Trace.SimTrace.first(Index(Model.NumPoints));
  if (!WriteTrace(options.traceFile, trace, streams) || !WriteTrace(options.meanFile, mean, streams))
    return false;
  if (!options.occupancyFile.empty() && !WriteOccupancyCsv(options.occupancyFile)) {
    TellUnwritten(options.occupancyFile, streams);
    return false;
  }
  if (options.dwellFile.empty() || ExportDwellLists(options.dwellFile) == Outcome::Done) return true;
  TellUnwritten(options.dwellFile, streams);
  return false;
}

/// Returns whether the names of the trace files give their formats.
bool TraceNamesServe(const SimulateOptions& options, std::ostream& err) {
  for (const std::string& path : {options.traceFile, options.meanFile}) {
    if (path.empty() || TraceFormatOf(path)) continue;
    err << path << ": the name of a trace ends in .txt, .asc, .atf or .csv\n";
    return false;
  }
  return true;
}

struct TimedRun {
  Outcome outcome = Outcome::Done;
  double wallSeconds = 0.0;
};

TimedRun RunTimed() {
  const auto begin = std::chrono::steady_clock::now();
  const Outcome outcome = AcquireData();
  return {outcome, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count()};
}

}  // namespace

int SimulateCommand(const SimulateOptions& options, const JobStreams& streams) {
  if (!TraceNamesServe(options, streams.err)) return JobMisused;
  const JobScreen screen(streams);
  StartJob(options.seeds);
  if (ReadJobModel(options.model, streams) != Outcome::Done) return JobFailed;
  if (!options.stimulusFile.empty() && !ReadStimulus(options.stimulusFile, streams.err)) return JobFailed;
  if (!ApplyOptions(options, streams.err)) return JobMisused;
  if (!options.dwellFile.empty() && Model.SimulatorKind != MonteCarlo) {
    streams.err << "--dwells: only --simulator montecarlo has dwell times\n";
    return JobMisused;
  }
  ChooseAutosave(options.autosaveFile);
  const RunMean runs;
  const Outcome stimulus = ShowJobStores();
  WarnOfEmptyStimulus(streams.err);
  const TimedRun run = RunTimed();
  if (!RunSucceeded(FirstNotDone(stimulus, run.outcome), streams)) return JobFailed;
  const std::vector<float> mean = runs.Mean();
  if (!WriteFiles(options, mean, streams)) return JobFailed;
  RunSummary summary = SummariseRun(run.wallSeconds);
  if (Model.SimulatorKind == MonteCarlo && Model.NumRuns > 1) summary.meanPeak = LargestSample(mean);
  if (options.json)
    WriteSummaryJson(summary, options.model, streams.out);
  else
    WriteSummary(summary, streams.out);
  return JobDone;
}

}  // namespace zelvane
