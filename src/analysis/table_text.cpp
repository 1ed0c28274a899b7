#include "analysis/table_text.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "formats/line_scanner.h"
#include "formats/number_text.h"
#include "platform/format_text.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr std::string_view Blanks = " \t\v\f\r";

constexpr std::array<const char*, AnalysisColumns + 1> Titles = {
    "",          "",          "Filename", "Episode",        "Base",    "Amp",
    "Risetime",  "Width",     "FitAmp1",  "Tau1",           "FitAmp2", "Tau2",
    "Offset",    "LatRise",   "LatPeak",  "Integral",       "Slope",   "Risepts",
    "Coastline", "FracDecay", "BaseVar",  "Goodness-of-Fit"};

void AppendRow(std::string& text, const AnalysisRow& row) {
  text += row.fileName + ' ' + FormatText("%d ", row.episode);
  for (std::size_t c = FirstValueColumn; c <= AnalysisColumns; ++c) {
    AppendFixed(text, static_cast<double>(row.value[c]));
    text += ' ';
  }
  text += '\n';
}

/// Returns a text as a cell of a CSV file.
std::string CsvText(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string Shortest(float value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

/// Removes the last word from a line and returns it; empty without a word.
std::string_view LastWord(std::string_view& line) {
  const std::size_t last = line.find_last_not_of(Blanks);
  if (last == std::string_view::npos) return {};
  const std::size_t before = line.find_last_of(Blanks, last);
  const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
  const std::string_view word = line.substr(begin, last + 1 - begin);
  line = line.substr(0, begin);
  return word;
}

/// Reads a value of a table file. "nan" means not measured.
bool ScanValue(std::string_view word, float& value, bool& measured) {
  const Scan scan = ScanNumber(word, value);
  measured = scan == Scan::Taken;
  return scan != Scan::Missing && word.empty();
}

/// Reads a row of a table file. The numbers are the last words of the line, and the name is all text before
/// them but one blank: a name may contain blanks and numbers.
std::optional<AnalysisRow> ParseRow(std::string_view line) {
  AnalysisRow row;
  row.filled = true;
  for (std::size_t c = AnalysisColumns; c >= FirstValueColumn; --c) {
    if (!ScanValue(LastWord(line), row.value[c], row.measured[c])) return std::nullopt;
  }
  std::string_view episode = LastWord(line);
  if (ScanNumber(episode, row.episode) != Scan::Taken || !episode.empty()) return std::nullopt;
  if (!line.empty()) line.remove_suffix(1);
  row.fileName = line;
  return row;
}

std::string LineOr(std::string_view& rest, std::string_view otherwise) {
  const auto line = NextLine(rest);
  return std::string(line ? line->text : otherwise);
}

}  // namespace

const char* ColumnTitle(int column) {
  return Titles[Index(std::clamp(column, 1, AnalysisColumns))];
}

std::string TableText(const std::string& modelPath, const std::string& dataPath,
                      std::span<const AnalysisRow> rows) {
  std::string text = std::string(TableMagic) + '\n' + modelPath + '\n' + dataPath + '\n';
  for (int c = 2; c <= AnalysisColumns; ++c) text += FormatText(c > 2 ? " %s" : "%s", ColumnTitle(c));
  text += FormatText("\n%zu\n", rows.size());
  for (const AnalysisRow& row : rows) AppendRow(text, row);
  return text;
}

std::string TableCsv(std::span<const AnalysisRow> rows) {
  std::string text = "Row";
  for (int c = 2; c <= AnalysisColumns; ++c) text += FormatText(",%s", ColumnTitle(c));
  text += '\n';
  int number = 0;
  for (const AnalysisRow& row : rows) {
    text += FormatText("%d,", ++number) + CsvText(row.fileName) + FormatText(",%d", row.episode);
    for (std::size_t c = FirstValueColumn; c <= AnalysisColumns; ++c) {
      text += ',';
      if (row.measured[c]) text += Shortest(row.value[c]);
    }
    text += '\n';
  }
  return text;
}

std::optional<TableFile> ParseTable(std::string_view text) {
  TableFile table;
  if (!LineOr(text, "").starts_with(TableMagic)) return std::nullopt;
  table.modelPath = LineOr(text, "");
  table.dataPath = LineOr(text, "");
  LineOr(text, "");  // titles
  const std::string countLine = LineOr(text, "");
  std::string_view count = countLine;
  if (ScanNumber(count, table.count) != Scan::Taken || table.count < 0) return std::nullopt;
  const auto rows = Index(std::min(table.count, MaxAnalysisRows));
  while (table.rows.size() < rows) {
    const auto line = NextLine(text);
    // In a line without its end a number, or its last digits, may be missing.
    const auto row = line && line->ended ? ParseRow(line->text) : std::nullopt;
    if (!row) break;
    table.rows.push_back(*row);
  }
  return table;
}

}  // namespace zelvane
