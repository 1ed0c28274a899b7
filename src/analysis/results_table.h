// The results table: one row for every response analysed.
//
//   A row       ResultsRow  TableAddRow  RewriteRow
//   The table   DeleteLastRow  ClearResultsTable
//   Columns     WhyInDoubt; titles are in table_text.h
//
// The rows are in `Analysis.Rows`, from 1. `Analysis.TableRow` is the next row to fill. The panel shows
// these rows (analysis_panel.h).
#pragma once

#include <string>

#include "analysis/analysis_store.h"

namespace zelvane {

/// Returns why the value of a column rests on no true measure of the response; empty for a measured value.
std::string WhyInDoubt(const AnalysisRow& row, int column);

/// Returns the results as a row of the table: the measures of `measures`, the fit of `Fit`.
AnalysisRow ResultsRow(const ResponseMeasures& measures, const std::string& fileName, int episode);

/// Writes the present results to row `row`, marks it as the current row and scrolls it into view. When the
/// table is full, shows a message and returns false. The last row is never filled.
bool TableAddRow(int row);

/// Writes the present results to an existing row.
void RewriteRow(int row);

/// Empties the last row and stops using the measures file. Clears the results and their plots.
void DeleteLastRow();

/// Empties every row. Asks no questions.
void ClearResultsTable();

}  // namespace zelvane
