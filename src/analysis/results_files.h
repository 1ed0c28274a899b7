// Files of the results: the table (*.tbl, CSV) and the measures file (*.res).
//
//   Names         SiblingFile  WithExtension
//   Measures      SaveAnalysis  AppendMeasures  EndMeasuresFile  OfferUnwrittenRows
//                 MeasuresHeader  MeasuresRow
//   Mean and variance   AppendMeanVariance
//   Table         SaveResultsTable  ExportTableCsv  FilledRows
//   Text of a table     table_text.h
//   Reading       results_read.h
//
// Numbers have a full stop in every locale.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "analysis/analysis_store.h"
#include "platform/outcome.h"

namespace zelvane {

/// Returns the path of a file in the folder of `path`: its name up to the first full stop, at most 75
/// characters, and `extension` with its full stop.
std::string SiblingFile(const std::string& path, std::string_view extension);

/// Does the same with all characters up to the full stop, for an existing file with another extension.
std::string WithExtension(const std::string& path, std::string_view extension);

// -- Measures file: comma-delimited, rows are appended --

/// Returns the line of quoted titles, with its line end.
std::string MeasuresHeader();

/// Returns one row, with its line end and the fields of the fit of `Fit.FitMode`.
/// @param path   full path of the data file
/// @param count  number of the row: rows written before it
std::string MeasuresRow(const std::string& path, int count, const AnalysisRow& row);

/// The reason for a save. Every failure of a save on request shows a message. In a series of automatic saves
/// only the first failure does.
enum class Saving { OnRequest, Automatic };

/// Appends the results of the last analysis to `Analysis.MeasuresFileName`, with the header if the file has
/// none, and counts the row. When the write fails, keeps the row in `Analysis.Unwritten`: the next save writes it first.
/// @return Done, Stopped or Failed
Outcome AppendMeasures(Saving saving);

/// Appends the results of the last analysis to the measures file. The first time, selects the file in the
/// folder of the data that were analysed; if it exists, asks whether to append.
/// @return as AppendMeasures, or Refused when the data have no name or the user says no
Outcome SaveAnalysis(Saving saving = Saving::OnRequest);

/// Appends a row with mean and variance of a current to `Analysis.MeasuresFileName`, with its own header if
/// the file has none yet. Reads `Baseline` and `BaselineVar`. On failure does the same as AppendMeasures.
Outcome AppendMeanVariance(float mean, float variance);

/// Writes the rows of `Analysis.Unwritten` again. While this fails, asks for another file. When the user gives
/// no file, drops the rows with a note.
void OfferUnwrittenRows();

/// Stops using the measures file, after the offer of its unwritten rows.
void EndMeasuresFile();

// -- Table --

/// Returns rows 1 to `Analysis.TableRow` - 1.
std::span<const AnalysisRow> FilledRows();

/// Writes the table into the folder of the data file (*.tbl) and shows the name. Asks no questions. A former
/// table with other rows stays as a file with ".bak" after the same name. On failure shows a message and
/// keeps the old file.
/// @return Done; Refused when the data have no name; Failed when a file cannot be written
Outcome SaveResultsTable();

/// Asks for a name and writes the table as CSV. On failure shows a message.
/// @return Done, Refused without a name, or Failed
Outcome ExportTableCsv();

}  // namespace zelvane
