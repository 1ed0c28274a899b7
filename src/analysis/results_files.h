// Files of the results: the table (*.tbl, CSV) and the measures file (*.res).
//
//   Names         SiblingFile
//   Measures      SaveAnalysis  AppendMeasures  MeasuresHeader  MeasuresRow
//   Mean and variance   AppendMeanVariance
//   Table         SaveResultsTable  TableText  TableCsv  ParseTable
//   Reading       results_read.h
//
// Numbers have a full stop in every locale.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis_store.h"
#include "platform/outcome.h"

namespace zelvane {

/// The path of a file beside `path`: its folder, its name up to the first full stop and at most 75
/// characters of it, and `extension` with its full stop.
std::string SiblingFile(const std::string& path, std::string_view extension);

/// The same with all characters up to the full stop: a file that is there already, under another extension.
std::string WithExtension(const std::string& path, std::string_view extension);

// -- Measures file: comma-delimited, rows are appended --

/// The line of quoted titles, line end included.
std::string MeasuresHeader();

/// One row, line end included, with the fields of the fit that `Fit.FitMode` names.
/// @param path   of the data file, whole
/// @param count  number of the row: rows written before it
std::string MeasuresRow(const std::string& path, int count, const AnalysisRow& row);

/// Appends the present results to `Analysis.MeasuresFileName`, with the header where it is due, and counts
/// the row. False, and nothing counted or told, when the file cannot be written.
bool AppendMeasures();

/// Appends the present results to the measures file. The first time it takes the file beside the data file;
/// where that exists, the user is asked whether to append.
/// @return Done; Refused when the data have no name or the user says no; Failed, without a message, when the file
///         cannot be written
Outcome SaveAnalysis();

/// Appends a row of mean and variance of a current to `Analysis.MeasuresFileName`, with a header of its own
/// where none is written yet. Reads `Baseline` and `BaselineVar`. False when the file cannot be written.
bool AppendMeanVariance(float mean, float variance);

// -- Table --

/// Rows as the text of a table file, with the names of the present model and data file.
std::string TableText(std::span<const AnalysisRow> rows);

/// Rows as CSV: titles, then one row a line. A measure that was not made is an empty cell. Numbers have the
/// digits that read back to the same 32-bit float.
std::string TableCsv(std::span<const AnalysisRow> rows);

/// Rows 1 to `Analysis.TableRow` - 1.
std::span<const AnalysisRow> FilledRows();

/// Writes the table beside the data file (*.tbl) and shows the name. Nothing is asked; a file that cannot be
/// written leaves everything as it was.
/// @return Done; Refused, with a message, when the data have no name; Failed, without one, when the file cannot be
///         written
Outcome SaveResultsTable();

/// Asks for a name and writes the table as CSV. On failure shows a message.
/// @return Done, Refused without a name, or Failed
Outcome ExportTableCsv();

/// What a table file holds.
struct TableFile {
  std::string modelPath;
  std::string dataPath;
  int count = 0;                  // as the file tells it
  std::vector<AnalysisRow> rows;  // as many as stand in it, at most MaxAnalysisRows
};

/// Takes a table file apart. Nothing when its first line does not begin with "TABLE" or it tells no count. A
/// file name ends at its first blank. Reading stops at a row that does not hold its numbers.
std::optional<TableFile> ParseTable(std::string_view text);

}  // namespace zelvane
