// Any bytes as a results table: a table that is written again keeps its names, episodes and numbers.
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "analysis/table_text.h"
#include "scratch_file.h"

namespace zelvane {
namespace {

void CheckRow(const AnalysisRow& row, const AnalysisRow& again) {
  if (again.fileName != row.fileName || again.episode != row.episode)
    Fault("a row has another name or episode");
  for (std::size_t c = FirstValueColumn; c <= AnalysisColumns; ++c) {
    const float written = again.value[c];
    const float difference = std::abs(written - row.value[c]);
    if (std::isfinite(row.value[c]) && !(difference <= 1e-6F + 1e-6F * std::abs(row.value[c])))
      Fault("a number is another one");
  }
}

void CheckOne(std::string_view text) {
  const auto table = ParseTable(text);
  if (!table) return;
  if (table->rows.size() > MaxAnalysisRows) Fault("more rows than the table has");
  if (static_cast<std::size_t>(table->count) < table->rows.size()) Fault("more rows than announced");
  static_cast<void>(TableCsv(table->rows));
  const auto again = ParseTable(TableText(table->modelPath, table->dataPath, table->rows));
  if (!again || again->rows.size() != table->rows.size()) Fault("a written table is not read");
  for (const auto& [path, written] :
       {std::pair{table->modelPath, again->modelPath}, {table->dataPath, again->dataPath}}) {
    if (path != written && !path.ends_with('\r')) Fault("a path is another one");  // a line may end in "\r\n"
  }
  for (std::size_t r = 0; r < table->rows.size(); ++r) CheckRow(table->rows[r], again->rows[r]);
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvane::CheckOne({reinterpret_cast<const char*>(data), size});
  return 0;
}
