// The results table of AnalysisPanel, its files and its commands.
#include <algorithm>
#include <charconv>
#include <string>

#include "analysis/analysis_panel.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "analysis/results_files.h"
#include "analysis/results_read.h"
#include "analysis/results_table.h"
#include "analysis/table_text.h"
#include "platform/index.h"
#include "screen/screen.h"
#include "trace/trace_events.h"

namespace zelvane {
namespace {

constexpr char NoOpenFile[] = "No Open File";
constexpr char NothingMeasured[] = "Nothing has been measured yet. Analyze a response first.";
constexpr int NameColumn = 2;
constexpr int EpisodeColumn = 3;
constexpr int RowsInView = 20;  // without a window

Table& Results() {
  return TableNamed(AnalysisTableName);
}

/// Returns the shortest decimal that gives the same 32-bit float when it is read.
std::string Shortest(float value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string DoubtOfCell(int row, int column) {
  return WhyInDoubt(Analysis.Rows[Index(row)], column);
}

void AN_DeleteMeasures(const ControlEvent&) {
  DeleteLastRow();
  ShowMeasuresFile();
}

void SaveOneAnalysis(const ControlEvent&) {
  if (Analysis.Analysed == 0)
    MessagePopup(NoticeTitle, NothingMeasured);
  else
    SaveAnalysis();
}

void FxnMoreRight(const ControlEvent&) {
  ScrollTable(Results(), Results().topRow, AnalysisColumns);
}

void FxnMoreLeft(const ControlEvent&) {
  ScrollTable(Results(), Results().topRow, 1);
}

constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl TableControls[] = {
    {.name = "SaveAnalysisButton", .kind = Button, .label = "Save measures", .format = "", .command = "SaveAnalysis",
     .action = SaveOneAnalysis,
     .help = "Append the measures of the last analysis as a row to the measures file (*.res) in the folder of the data."},
    {.name = "DeleteMeasures", .kind = Button, .label = "Delete last row", .format = "",
     .command = "AN_DeleteMeasures", .action = AN_DeleteMeasures,
     .help = "Delete the last row of the table, and stop using the measures file."},
    {.name = "ClearResults", .kind = Button, .label = "Clear table", .format = "", .command = "AN_ClearTable",
     .action = Run<ClearResultsTable>, .help = "Empty the whole table. Nothing is asked."},
    {.name = "SaveTable", .kind = Button, .label = "Save table", .format = "", .command = "AN_SaveTable",
     .action = Run<SaveResultsTable>,
     .help = "Write the table to a file (*.tbl) in the folder of the data. An older table is kept as "
     "*.tbl.bak. Read table can read both again."},
    {.name = "ReadTable", .kind = Button, .label = "Read table...", .format = "", .command = "AN_ReadTable",
     .action = Run<ReadResultsTable>,
     .help = "Read a table file (*.tbl), and the model and the recording that it names. It replaces this table."},
    {.name = "ExportTable", .kind = Button, .label = "Save as CSV...", .format = "", .command = "FxnExportTable",
     .action = Run<ExportTableCsv>,
     .help = "Write the table as comma-separated text for a spreadsheet. A measure that is not possible is an "
     "empty cell."},
    {.name = "TableRight", .kind = Button, .label = "More", .format = "", .command = "FxnMoreRight",
     .action = FxnMoreRight, .help = "Show the last columns of the table."},
    {.name = "TableLeft", .kind = Button, .label = "Back", .format = "", .command = "FxnMoreLeft",
     .action = FxnMoreLeft, .help = "Show the first columns of the table."},
    {.name = "MeasuresFileShown", .kind = Readout, .label = "Measures file", .format = "",
     .help = "Measures file in use. New rows are appended to it."},
    {.name = "MeasuresCount", .kind = Readout, .label = "Events saved", .format = "%g",
     .help = "Number of rows written to the measures file."},
    {.name = "TableFileShown", .kind = Readout, .label = "Table file", .format = "",
     .help = "Last table file that was written or read."},
};
// clang-format on

}  // namespace

void AddAnalysisTable() {
  AddControls(AnalysisPanelName, "table", TableControls);
  Table& table = AddTable(AnalysisPanelName, AnalysisTableName, MaxAnalysisRows, AnalysisColumns);
  for (int c = 1; c <= AnalysisColumns; ++c) table.columnTitles.emplace_back(c == 1 ? "" : ColumnTitle(c));
  table.command = "FxnAnTable";
  table.doubt = DoubtOfCell;
  table.help =
      "Each response that you analysed has a row. Click an episode to see its sweep and to "
      "measure it again. A grey value rests on no true measure of the response; its hint says why.";
  ShowResultsTable();
  MeasuresFileChanged.Add(ShowMeasuresFile);
  TableFileNamed.Add(ShowTableFile);
  TableRowChanged.Add(ShowTableRow);
  ResultsTableChanged.Add(ShowResultsTable);
  TableRowMarked.Add(MarkTableRow);
}

void ShowMeasuresFile() {
  const bool open = Analysis.MeasuresFileOpen != 0;
  ShowText("MeasuresFileShown", open || Analysis.MeasuresCount > 0 ? Analysis.MeasuresFileName : NoOpenFile);
  ShowNumber("MeasuresCount", Analysis.MeasuresCount);
}

void ShowTableFile(const std::string& path) {
  ShowText("TableFileShown", path);
}

void ShowTableRow(int row) {
  Table& table = Results();
  const AnalysisRow& stored = Analysis.Rows[Index(row)];
  SetCell(table, row, 1, FormatText("%d", row));
  SetCell(table, row, NameColumn, stored.fileName);
  SetCell(table, row, EpisodeColumn, FormatText("%d", stored.episode));
  for (int c = FirstValueColumn; c <= AnalysisColumns; ++c) {
    SetCell(table, row, c, Shortest(stored.value[Index(c)]));
  }
}

void ShowResultsTable() {
  for (int row = 1; row <= MaxAnalysisRows; ++row) ShowTableRow(row);
  MarkRow(Results(), 0);
  ScrollTable(Results(), 1, 1);
}

void MarkTableRow(int row) {
  MarkRow(Results(), std::clamp(row, 0, MaxAnalysisRows));
  ScrollTable(Results(), row - RowsInView + 1, Results().leftColumn);
}

}  // namespace zelvane
