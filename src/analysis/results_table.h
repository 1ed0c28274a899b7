// The results table: one row for every response analysed.
//
//   A row       ResultsRow  TableAddRow  RewriteRow
//   The table   DeleteLastRow  ClearResultsTable
//   Columns     ColumnTitle  ColumnBit
//
// Rows stand in `Analysis.Rows`, numbered from 1; `Analysis.TableRow` is the next one to fill. The panel
// shows what stands there (analysis_panel.h).
#pragma once

#include <string>

#include "analysis/analysis_store.h"

namespace zelvane {

/// Title of a column, 1 to AnalysisColumns, as table files have it; column 1 has none.
const char* ColumnTitle(int column);

/// The results as a row of the table: the measures of `measures`, the fit of `Fit`.
AnalysisRow ResultsRow(const ResponseMeasures& measures, const std::string& fileName, int episode);

/// Puts the present results into row `row`, marks it as the current one and scrolls it into view. False, told
/// to the user, when the table is full: its last row is never filled.
bool TableAddRow(int row);

/// Puts the present results into a row that stands already.
void RewriteRow(int row);

/// Empties the last row and ends the use of the measures file. Clears the results and their plots.
void DeleteLastRow();

/// Empties every row. Nothing is asked.
void ClearResultsTable();

}  // namespace zelvane
