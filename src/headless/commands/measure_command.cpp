#include "headless/commands/measure_command.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <ostream>
#include <set>
#include <utility>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "analysis/results_files.h"
#include "analysis/results_table.h"
#include "analysis/table_text.h"
#include "app/application.h"
#include "formats/abf/abf.h"
#include "formats/recording_file.h"
#include "headless/commands/job_settings.h"
#include "headless/json_values.h"
#include "headless/words.h"
#include "model/model_store.h"
#include "parameters/parameters_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "platform/safe_file.h"
#include "rscm/rscm_panel.h"
#include "rscm/rscm_store.h"
#include "screen/screen.h"
#include "screen/window_reporter.h"
#include "stimulus/gaussian_filter.h"
#include "trace/trace.h"
#include "trace/trace_export.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char Interrupted[] = "stopped; nothing was written";
constexpr char MeasuringText[] = "measuring";
constexpr int ProgressSteps = 100;
constexpr Seeds SameSeeds = {1234, 5678, 9012};  // two measures of one file give the same fits

/// The recording to measure, one sweep at a time, in `Trace.SimTrace`.
struct Recording {
  std::unique_ptr<RecordingFile> abf;        // nullptr = a text
  std::vector<std::vector<float>> episodes;  // of a text with several episodes, read in one pass
  int channel = 0;
  int sweeps = 1;
  std::string units;
};

bool CanWrite(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  return extension == ".csv" || extension == ".res" || extension == ".tbl";
}

/// Shows each message and each note once, although many sweeps may cause it.
class MeasuringScreen {
 public:
  MeasuringScreen() {
    former_ = SetFrontEnd({});
    FrontEnd own = former_;
    own.message = [this](MessageTitle title, std::string_view text) {
      if (told_.emplace(text).second && former_.message) former_.message(title, text);
    };
    own.note = [this](std::string_view sentence) {
      if (told_.emplace(sentence).second && former_.note) former_.note(sentence);
    };
    SetFrontEnd(std::move(own));
  }
  ~MeasuringScreen() { SetFrontEnd(std::move(former_)); }
  MeasuringScreen(const MeasuringScreen&) = delete;
  MeasuringScreen& operator=(const MeasuringScreen&) = delete;

 private:
  FrontEnd former_;
  std::set<std::string> told_;
};

/// Chooses the channel of the options, or the first. Writes a message and returns false when the file has no
/// such channel.
bool ChooseChannel(const MeasureOptions& options, Recording& recording, std::ostream& err) {
  const std::vector<RecordedInput>& inputs = recording.abf->Account().inputs;
  if (inputs.empty()) return false;
  recording.channel = options.channel.value_or(inputs.front().number);
  const auto taken = std::find_if(inputs.begin(), inputs.end(), [&](const RecordedInput& input) {
    return input.number == recording.channel;
  });
  if (taken != inputs.end()) {
    recording.units = taken->units;
    return true;
  }
  err << options.file << ": no channel " << recording.channel << "; it has";
  for (const RecordedInput& input : inputs) err << ' ' << input.number;
  err << '\n';
  return false;
}

int OpenAbf(const MeasureOptions& options, Recording& recording, std::ostream& err) {
  OpenedRecording opened = OpenRecordingFile(options.file);
  if (!opened.file) {
    err << options.file << ": " << opened.why << '\n';
    return JobFailed;
  }
  recording.abf = std::move(opened.file);
  const RecordingAccount& account = recording.abf->Account();
  recording.sweeps = account.sweeps;
  if (!account.note.empty()) err << options.file << ": " << account.note << '\n';
  if (!ChooseChannel(options, recording, err)) return JobMisused;
  if (account.samples > MaxStimPoints) {
    err << options.file << ": a sweep of " << account.samples << " samples; " << MaxStimPoints
        << " can be measured\n";
    return JobFailed;
  }
  Trace.TraceFromFile = 1;
  Trace.TraceFileName = options.file;
  Trace.EpisodeCount = recording.sweeps;
  Trace.RecordedChannel = recording.channel;
  Model.ADInterval = static_cast<float>(account.intervalMs);
  return JobDone;
}

int OpenRecording(const MeasureOptions& options, Recording& recording, std::ostream& err) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(options.file, error)) {
    const bool exists = std::filesystem::exists(options.file, error);
    err << options.file << (exists ? ": not a file\n" : ": no such file\n");
    return JobFailed;
  }
  int format = 0;
  if (IsABFFile(options.file, format)) return OpenAbf(options, recording, err);
  ReadAnswers answers{.signal = options.channel.value_or(1)};
  if (options.intervalMs) answers.intervalMs = static_cast<float>(*options.intervalMs);
  const Outcome read = TraceReadFile(options.file, answers);
  if (read == Outcome::Failed) err << options.file << ": no recording that can be read\n";
  if (read != Outcome::Done) return JobFailed;
  recording.sweeps = Trace.EpisodeCount;
  if (recording.sweeps > 1) recording.episodes = ReadTextEpisodes();
  return JobDone;
}

/// Reads a sweep into the trace. Returns its samples; 0 when the file does not hold the sweep.
int ReadAbfSweep(const Recording& recording, int sweep) {
  const int samples = recording.abf->SweepSamples(sweep);
  if (samples < 1 || samples > MaxStimPoints) return 0;
  const std::span<float> trace = Trace.SimTrace.first(Index(samples));
  return recording.abf->Read(recording.channel, sweep, 0, trace) == trace.size() ? samples : 0;
}

int CopyTextSweep(const Recording& recording, int sweep) {
  if (Index(sweep) > recording.episodes.size()) return 0;
  const std::vector<float>& samples = recording.episodes[Index(sweep) - 1];
  std::copy(samples.begin(), samples.end(), Trace.SimTrace.begin());
  return static_cast<int>(samples.size());
}

/// Reads a sweep into the trace. Returns false when the file does not hold the sweep.
bool ReadSweepOf(const Recording& recording, int sweep) {
  Trace.EpisodeIndex = sweep;
  if (!recording.abf && recording.sweeps == 1) return TraceReloadEpisode() == Outcome::Done;
  const int samples = recording.abf ? ReadAbfSweep(recording, sweep) : CopyTextSweep(recording, sweep);
  if (samples < 1) return false;
  Trace.SimTraceUsed = std::max(Trace.SimTraceUsed, samples);
  Model.NumPoints = samples;
  Model.RecordPoints = samples;
  BeginTrace(TraceOrigin::Recording);
  return true;
}

/// Corrects and filters the trace, in the order of the panels, where the correction is part of the reading.
void PrepareSweep(const MeasureOptions& options, bool correct) {
  if (correct) CorrectTraceRead();
  if (!options.filterKHz) return;
  const auto samples = Index(Model.NumPoints);
  GaussianFilter(Trace.SimTrace.first(samples), static_cast<float>(*options.filterKHz), WindowReporter());
}

/// Measures the sweeps of the options. Writes a message and returns false when a sweep could not be read or
/// the user stopped.
bool MeasureSweeps(const MeasureOptions& options, const Recording& recording, std::vector<AnalysisRow>& rows,
                   const JobStreams& streams) {
  const int last = options.sweeps.last == 0 ? recording.sweeps : options.sweeps.last;
  const int step = std::max((last - options.sweeps.first + 1) / ProgressSteps, 1);
  const std::string name = DataFileName();
  // The correction is made here alone, so that no trace is corrected twice.
  const bool correct = std::exchange(RsCm.RsCmAuto, 0) != 0 || options.correct;
  for (int sweep = options.sweeps.first; sweep <= last; ++sweep) {
    if (StopAsked(streams)) {
      streams.err << Interrupted << '\n';
      return false;
    }
    const int done = sweep - options.sweeps.first;
    if (done % step == 0) {
      ShowProgress(static_cast<double>(done) / (last - options.sweeps.first + 1), MeasuringText);
    }
    if (!ReadSweepOf(recording, sweep)) {
      streams.err << options.file << ": sweep " << sweep << " cannot be read\n";
      return false;
    }
    PrepareSweep(options, correct);
    MeasureTrace();
    rows.push_back(ResultsRow(Analysis.Measures, name, sweep));
  }
  ResetProgress();
  return true;
}

std::string MeasuresText(const std::vector<AnalysisRow>& rows) {
  std::string text = MeasuresHeader();
  int count = 0;
  for (const AnalysisRow& row : rows) text += MeasuresRow(DataFilePath(), count++, row);
  return text;
}

std::string FileText(const std::string& path, const std::vector<AnalysisRow>& rows) {
  const std::string extension = ExtensionOf(path);
  if (extension == ".tbl") return TableText(Model.ModelFileName, Trace.TraceFileName, rows);
  return extension == ".res" ? MeasuresText(rows) : TableCsv(rows);
}

Json RowJson(const AnalysisRow& row) {
  Json json = Json::object();
  json["sweep"] = row.episode;
  for (std::size_t c = FirstValueColumn; c <= AnalysisColumns; ++c) {
    json[ColumnTitle(static_cast<int>(c))] = row.measured[c] ? FloatJson(row.value[c]) : Json(nullptr);
  }
  return json;
}

void WriteJson(const MeasureOptions& options, const Recording& recording,
               const std::vector<AnalysisRow>& rows, std::ostream& out) {
  Json json = Json::object();
  json["file"] = options.file;
  if (recording.abf) json["channel"] = recording.channel;
  if (!recording.units.empty()) json["units"] = recording.units;
  json["interval"] = TypedJson(Model.ADInterval);
  json["rows"] = Json::array();
  for (const AnalysisRow& row : rows) json["rows"].push_back(RowJson(row));
  out << JsonLine(json) << '\n';
}

/// Returns what is wrong with the command line before the file is read, or an empty string.
std::string MisuseOf(const MeasureOptions& options) {
  if (!options.outFile.empty() && !CanWrite(options.outFile)) {
    return options.outFile + ": the name of a file of measures ends in .csv, .res or .tbl";
  }
  if (options.filterKHz && !(*options.filterKHz > 0.0)) return "--filter takes a corner above 0 kHz";
  return {};
}

int WriteResults(const MeasureOptions& options, const Recording& recording,
                 const std::vector<AnalysisRow>& rows, const JobStreams& streams) {
  if (!options.outFile.empty() && !ReplaceFile(options.outFile, FileText(options.outFile, rows))) {
    TellUnwritten(options.outFile, streams);
    return JobFailed;
  }
  if (options.json)
    WriteJson(options, recording, rows, streams.out);
  else if (options.outFile.empty())
    streams.out << TableCsv(rows);
  else
    streams.out << rows.size() << " sweeps measured: " << options.outFile << '\n';
  return JobDone;
}

/// Writes the options of the fit to the stores. Without them and without settings no exponential is fitted.
void ApplyFit(const MeasureOptions& options) {
  if (options.fit) Parameters.FitMode = *options.fit;
  if (options.fitPoints) AnalysisFit.AnalysisFitPts = *options.fitPoints;
  if (options.fitEvery) AnalysisFit.AnalysisParse = *options.fitEvery;
  if (options.fitStart) AnalysisFit.FitStartPts = *options.fitStart;
}

}  // namespace

std::optional<SweepRange> ParseSweeps(std::string_view text) {
  const std::size_t dash = text.find('-');
  const auto first = WholeNumber(text.substr(0, dash));
  const auto last = dash == std::string_view::npos ? first : WholeNumber(text.substr(dash + 1));
  if (!first || !last || *first < 1 || *last < *first) return std::nullopt;
  return SweepRange{*first, *last};
}

int MeasureCommand(const MeasureOptions& options, const JobStreams& streams) {
  const std::string misuse = MisuseOf(options);
  if (!misuse.empty()) {
    streams.err << misuse << '\n';
    return JobMisused;
  }
  const JobScreen screen(streams);
  StartJob(options.seeds.value_or(SameSeeds));
  Parameters.FitMode = 0;
  if (!options.model.empty() && ReadJobModel(options.model, streams) == Outcome::Refused) return JobFailed;
  const MeasuringScreen messages;
  Recording recording;
  const int opened = OpenRecording(options, recording, streams.err);
  if (opened != JobDone) return opened;
  if (!ApplySettings(options.settings, streams.err)) return JobMisused;
  ApplyFit(options);
  WriteAllControls();  // the correction reads its panel
  if (std::max(options.sweeps.first, options.sweeps.last) > recording.sweeps) {
    streams.err << options.file << ": it has " << recording.sweeps << " sweeps\n";
    return JobMisused;
  }
  std::vector<AnalysisRow> rows;
  if (!MeasureSweeps(options, recording, rows, streams)) return JobFailed;
  return WriteResults(options, recording, rows, streams);
}

}  // namespace zelvane
