// The text of a results table: table files (*.tbl) and CSV.
//
//   Writing   TableText  TableCsv  ColumnTitle
//   Reading   ParseTable
//
// Numbers have a full stop in every locale.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis_store.h"

namespace zelvane {

/// Returns the title of a column, 1 to AnalysisColumns, for table files. Column 1 has no title.
const char* ColumnTitle(int column);

/// Returns rows as the text of a table file, with the paths of the model and of the recording.
std::string TableText(const std::string& modelPath, const std::string& dataPath,
                      std::span<const AnalysisRow> rows);

/// Returns rows as CSV: titles, then one row per line. A missing measure is an empty cell. Numbers have
/// enough digits to give the same 32-bit float when they are read.
std::string TableCsv(std::span<const AnalysisRow> rows);

inline constexpr char TableMagic[] = "TABLE";  // begin of a table file

/// The contents of a table file.
struct TableFile {
  std::string modelPath;
  std::string dataPath;
  int count = 0;                  // number of rows in the header
  std::vector<AnalysisRow> rows;  // rows of the file, at most MaxAnalysisRows
};

/// Parses a table file. Returns an empty result when its first line does not begin with "TABLE" or it has
/// no count. A file name may contain blanks. Stops at a row without its numbers.
std::optional<TableFile> ParseTable(std::string_view text);

}  // namespace zelvane
