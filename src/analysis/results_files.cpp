#include "analysis/results_files.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <utility>

#include "analysis/analyze.h"
#include "analysis/results_table.h"
#include "analysis/table_text.h"
#include "formats/input_file.h"
#include "formats/line_scanner.h"
#include "model/model_store.h"
#include "parameters/parameters_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "platform/safe_file.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "trace/trace_events.h"
#include "trace/trace_export.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr std::size_t LongestStem = 75;  // bytes of a name
constexpr char AppendQuestion[] = "File Present; Append ?";
constexpr std::size_t LongestTable = 64U << 20U;  // bytes; a thousand rows need less than one per cent
constexpr char ExportTitle[] = "Save Table as CSV";
constexpr char NoName[] =
    "Files of results are named after the data. Read a recording or save the model first.";
constexpr char FormerEnd[] = ".bak";
constexpr char RowKept[] = "The row is kept: the next save of measures writes it first.";
constexpr char UnwrittenTitle[] = "Save Measures";
constexpr char UnwrittenQuestion[] =
    "Rows of measures (%d) could not be written to %s. Write them to another file?";
constexpr char RowsDropped[] = "Rows of measures (%d) were not written to %s.";
constexpr char Dashes[] = "\"   ---\", ";

constexpr const char* MeasuresTitles[] = {"Datafilename",
                                          "episode",
                                          "num",
                                          "Latency to Rise(ms)",
                                          "Latency to Peak (ms)",
                                          "Amp",
                                          "Rise(ms)",
                                          "Slope(/ms)",
                                          "f1Dec",
                                          "f2Dec1",
                                          "f2Dec2",
                                          "f1Pk",
                                          "f2Pk1",
                                          "f2Pk2",
                                          "Offset",
                                          "Goodness of Fit",
                                          "Area(*ms)",
                                          "Coastline",
                                          "baseline",
                                          "basevar",
                                          "fracdecay",
                                          "fracwidth"};

constexpr char MeanVarianceHeader[] =
    "\"Datafilename\",\"episode\",\"base current(pA)\",\"base var (pA2)\",\"current(pA)\",\"var (pA2)\","
    "\"current-base (pA)\",\"var-base (pA2)\",\" unitary current (pA)\"\n";

/// Returns a path with a shorter file name and an extension. Cuts the name at its first full stop and after
/// `longest` bytes.
std::string Renamed(const std::string& path, std::size_t longest, std::string_view extension) {
  const std::filesystem::path whole(path);
  std::string stem = whole.filename().string();
  stem.resize(std::min({stem.size(), stem.find('.'), longest}));
  return (whole.parent_path() / (stem + std::string(extension))).string();
}

/// Returns a number as "%.*f" writes it, with a full stop in every locale.
std::string Fixed(double value, int decimals) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0.0 ? "inf" : "-inf";
  char text[400];  // the largest double has 309 digits before the point
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr;
  return {text, end};
}

std::string Fixed(float value, int decimals) {
  return Fixed(static_cast<double>(value), decimals);
}

/// Returns numbers with four decimals, each followed by a comma and a blank.
std::string Listed(std::initializer_list<double> values) {
  std::string text;
  for (const double value : values) text += Fixed(value, 4) + ", ";
  return text;
}

/// Returns dashes for the fields of a fit that was not made.
std::string DashedFields(int count) {
  std::string text;
  for (int k = 0; k < count; ++k) text += Dashes;
  return text;
}

/// Returns the fields of one fitted quantity: one component, two components, or dashes.
std::string FitFields(double first, double second) {
  switch (Parameters.FitMode) {
    case 0:
      return DashedFields(3);
    case FitDecay:
    case FitRise:
      return Listed({first}) + DashedFields(2);
    case FitTwoDecays:
      return "\"   ---\",\t" + Listed({first, second});
    default:
      return {};
  }
}

std::string FitQuality(double offset, double goodness) {
  if (Parameters.FitMode == 0) return DashedFields(2);
  std::string text = " ";
  return text.append(Fixed(offset, 4)).append(", ").append(Fixed(goodness, 6)).append(", ");
}

bool HeaderIsDue() {
  return Analysis.MeasuresFileOpen == 0 || Analysis.MeasuresCount < 1;
}

Appended AppendText(const std::string& path, std::string_view text) {
  return AppendToFile(path, BehindLastLine(path, [&text] { return std::exchange(text, {}); }));
}

/// Appends the rows that could not be written so far, and another one.
Outcome AppendRow(const std::string& header, const std::string& row, Saving saving) {
  UnwrittenRows& kept = Analysis.Unwritten;
  const bool failedBefore = kept.count > 0;
  std::string text = failedBefore ? kept.text : HeaderIsDue() ? header : std::string{};
  text += row;
  const Appended result = AppendText(Analysis.MeasuresFileName, text);
  if (result != Appended::Done) {
    kept = {Analysis.MeasuresFileName, std::move(text), kept.count + 1};
    if (failedBefore && saving == Saving::Automatic) return Outcome::Failed;
    const Outcome outcome = TellAppended(result, Analysis.MeasuresFileName);
    Note(RowKept);
    return outcome;
  }
  Analysis.MeasuresFileOpen = 1;
  Analysis.MeasuresCount += kept.count + 1;
  kept = {};
  MeasuresFileChanged.Tell();
  return Outcome::Done;
}

/// Returns whether data have a file whose name other files can use. On failure shows a message.
bool HaveName(const std::string& dataPath) {
  if (!dataPath.empty()) return true;
  MessagePopup(NoticeTitle, NoName);
  return false;
}

bool Exists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

/// Returns the rows of the text of a table file.
std::string_view RowsOfTable(std::string_view text) {
  constexpr int LinesBefore = 5;
  for (int line = 0; line < LinesBefore; ++line) NextLine(text);
  return text;
}

/// Keeps the table in a file before another one replaces it. A file with the same text needs no copy. When the new
/// table only has more rows, a copy from before stays: it may be the last one of an earlier day. On failure shows
/// a message.
Outcome KeepFormerTable(const std::string& path, const std::string& text) {
  if (!Exists(path)) return Outcome::Done;
  const auto former = ReadBytes(path, LongestTable);
  if (!former) {
    FileErrorPopup(FileOpenFailed);
    return Outcome::Failed;
  }
  if (former->empty() || *former == text) return Outcome::Done;
  const bool onlyGrown = RowsOfTable(text).starts_with(RowsOfTable(*former));
  if (onlyGrown && Exists(path + FormerEnd)) return Outcome::Done;
  return SaveText(path + FormerEnd, *former);
}

}  // namespace

std::string SiblingFile(const std::string& path, std::string_view extension) {
  return Renamed(path, LongestStem, extension);
}

std::string WithExtension(const std::string& path, std::string_view extension) {
  return Renamed(path, std::string::npos, extension);
}

std::string MeasuresHeader() {
  std::string line;
  for (const char* title : MeasuresTitles) line += FormatText(line.empty() ? "\"%s\"" : ", \"%s\"", title);
  return line + " \n";
}

std::string MeasuresRow(const std::string& path, int count, const AnalysisRow& row) {
  const auto column = [&row](std::size_t c) { return static_cast<double>(row.value[c]); };
  return FormatText("\"%s\", %d, %d, ", path.c_str(), row.episode, count) +
         Listed({column(13), column(14), column(5), column(6), column(16)}) +
         FitFields(column(9), column(11)) + FitFields(column(8), column(10)) +
         FitQuality(column(12), column(21)) + ' ' +
         Listed({column(15), column(18), column(4), column(20), column(19), column(7)}) + '\n';
}

Outcome AppendMeasures(Saving saving) {
  const std::string& path = Analysis.MeasuredFile;
  const AnalysisRow row = ResultsRow(Analysis.Measures, FileNameOf(path), Analysis.MeasuredEpisode);
  const int number = Analysis.MeasuresCount + Analysis.Unwritten.count;
  return AppendRow(MeasuresHeader(), MeasuresRow(path, number, row), saving);
}

Outcome SaveAnalysis(Saving saving) {
  if (Analysis.MeasuresFileOpen == 0) {
    if (!HaveName(Analysis.MeasuredFile)) return Outcome::Refused;
    const std::string path = SiblingFile(Analysis.MeasuredFile, ".res");
    if (path != Analysis.Unwritten.path) {
      OfferUnwrittenRows();
      if (Exists(path) && !ConfirmPopup("", AppendQuestion)) return Outcome::Refused;
    }
    Analysis.MeasuresFileName = path;
    MeasuresFileChanged.Tell();
  }
  return AppendMeasures(saving);
}

void OfferUnwrittenRows() {
  const UnwrittenRows kept = std::exchange(Analysis.Unwritten, {});
  if (kept.count == 0) return;
  bool written = AppendText(kept.path, kept.text) == Appended::Done;
  while (!written &&
         ConfirmPopup(NoticeTitle, FormatText(UnwrittenQuestion, kept.count, kept.path.c_str()))) {
    const auto other =
        FileSelectPopup({.title = UnwrittenTitle, .defaultName = "*.res", .filter = "*.res", .save = true});
    written = other && TellAppended(AppendText(*other, kept.text), *other) == Outcome::Done;
  }
  if (!written) Note(FormatText(RowsDropped, kept.count, kept.path.c_str()));
}

void EndMeasuresFile() {
  OfferUnwrittenRows();
  Analysis.MeasuresFileOpen = 0;
}

Outcome AppendMeanVariance(float mean, float variance) {
  const ResponseMeasures& m = Analysis.Measures;
  std::string row = FormatText("\"%s\",%d", DataFilePath().c_str(), DataEpisode());
  for (const float value : {m.Baseline, m.BaselineVar, mean, variance, mean - m.Baseline,
                            variance - m.BaselineVar, (variance - m.BaselineVar) / (mean - m.Baseline)}) {
    row.append(", ").append(Fixed(value, 3));
  }
  return AppendRow(MeanVarianceHeader, row + '\n', Saving::OnRequest);
}

std::span<const AnalysisRow> FilledRows() {
  const int rows = std::clamp(Analysis.TableRow - 1, 0, MaxAnalysisRows);
  return std::span(Analysis.Rows).subspan(1, Index(rows));
}

Outcome SaveResultsTable() {
  if (!HaveName(DataFilePath())) return Outcome::Refused;
  const std::string path = SiblingFile(DataFilePath(), ".tbl");
  const std::string text = TableText(Model.ModelFileName, Trace.TraceFileName, FilledRows());
  Outcome outcome = KeepFormerTable(path, text);
  if (outcome == Outcome::Done) outcome = SaveText(path, text);
  if (outcome == Outcome::Done) TableFileNamed.Tell(path);
  return outcome;
}

Outcome ExportTableCsv() {
  const auto path = FileSelectPopup({.title = ExportTitle,
                                     .defaultName = SiblingFile(DataFileName(), ".csv"),
                                     .filter = "*.csv",
                                     .save = true});
  if (!path) return Outcome::Refused;
  const Outcome outcome = SaveText(*path, TableCsv(FilledRows()));
  if (outcome == Outcome::Done) TableFileNamed.Tell(*path);
  return outcome;
}

}  // namespace zelvane
