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
#include "headless/commands/recorded_sweeps.h"
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

bool CanWrite(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  return extension == ".csv" || extension == ".res" || extension == ".tbl";
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
  const OnceScreen messages;
  Recording recording;
  const int opened =
      OpenRecording({options.file, options.channel, options.intervalMs}, recording, streams.err);
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
