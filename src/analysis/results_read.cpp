#include "analysis/results_read.h"

#include <algorithm>

#include "analysis/results_files.h"
#include "analysis/results_table.h"
#include "analysis/table_text.h"
#include "formats/input_file.h"
#include "model/model_file.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "trace/trace_events.h"
#include "trace/trace_read.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr char LoadTitle[] = "Load Table of Analyzed Results.";
constexpr char TooManyRows[] = "Table resutls file exceeds current Table size.";
constexpr char CutTable[] = "The table ends early: %d of %d rows could be read.";
constexpr std::size_t LongestTable = 64U << 20U;  // bytes; a thousand rows need less than one per cent
constexpr std::size_t ExtensionLetters = 3;

/// Returns the path of the recording: cuts the name at its first full stop, and keeps three letters after the
/// stop.
std::string RecordingPath(const std::string& path) {
  const std::string name = FileNameOf(path);
  const std::size_t stop = name.find('.');
  return WithExtension(path, stop == std::string::npos ? "" : name.substr(stop, 1 + ExtensionLetters));
}

void ReadNamedModel(const std::string& path) {
  if (path.empty()) return;
  const std::string former = Model.ModelFileName;
  Model.ModelFileName = WithExtension(path, ".mod");
  if (ModelFileRead() == Outcome::Refused) Model.ModelFileName = former;
}

/// Reads the recording of a table. Returns false when the command must end.
bool ReadNamedRecording(const std::string& path) {
  if (path.empty()) return true;
  // A name with further full stops, for example in a date, may be the complete name of the file.
  for (const std::string& recording : {RecordingPath(path), path}) {
    if (OpenInput(recording)) return TraceReadFile(recording) == Outcome::Done;
  }
  FileErrorPopup(FileOpenFailed);
  return false;
}

void FillTable(const TableFile& table) {
  if (table.count > MaxAnalysisRows) MessagePopup(NoticeTitle, TooManyRows);
  const int wanted = std::min(table.count, MaxAnalysisRows);
  const auto found = static_cast<int>(table.rows.size());
  if (found < wanted) MessagePopup(FileErrorTitle, FormatText(CutTable, found, table.count));
  std::copy(table.rows.begin(), table.rows.end(), Analysis.Rows.begin() + 1);
  Analysis.TableRow = found + 1;
  ResultsTableChanged.Tell();
  TableRowMarked.Tell(found);
}

}  // namespace

Outcome ReadResultsTable() {
  const auto path = FileSelectPopup({.title = LoadTitle, .defaultName = "*.tbl", .filter = "*.tbl;*.*"});
  return path ? ReadResultsTableNamed(*path) : Outcome::Refused;
}

Outcome ReadResultsTableNamed(const std::string& path) {
  TableFileNamed.Tell(path);
  const auto text = ReadBytes(path, LongestTable);
  if (!text) {
    FileErrorPopup(FileOpenFailed);
    return Outcome::Failed;
  }
  const auto table = ParseTable(*text);
  const std::string fault = text->starts_with(TableMagic) ? TextFault(*text) : std::string{};
  if (!fault.empty()) {
    TellNotRead(path, fault);
    return Outcome::Failed;
  }
  if (!table) {
    FileErrorPopup(WrongFileFormat);
    return Outcome::Failed;
  }
  if (!table->dataPath.empty() && RefusedByAutosave())
    return Outcome::Refused;  // before the table is emptied
  ClearResultsTable();
  ReadNamedModel(table->modelPath);
  if (!ReadNamedRecording(table->dataPath)) return Outcome::Failed;
  ResponseToShow.Tell();
  FillTable(*table);
  return Outcome::Done;
}

}  // namespace zelvane
