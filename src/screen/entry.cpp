#include "screen/entry.h"

#include <cmath>

#include "screen/number_entry.h"

namespace zelvane {
namespace {

/// Returns the reason why a control cannot hold a number.
Refusal CheckNumber(const Control& control, double value) {
  if (!std::isfinite(value)) return NotFinite;
  if (control.field && !NumberSuits(*control.field.field, value))
    return WhyNotSuitable(control.field.field->type);
  return {};
}

std::string Place(std::size_t row, std::size_t column) {
  return "row " + std::to_string(row + 1) + ", column " + std::to_string(column + 1) + ": ";
}

std::vector<std::string_view> Split(std::string_view text, char mark) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t at = text.find(mark);
    parts.push_back(text.substr(0, at));
    if (at == std::string_view::npos) return parts;
    text.remove_prefix(at + 1);
  }
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \r") == std::string_view::npos;
}

/// Calls `visit` for every number of a block, with its row and column of the table. Stops at the first
/// refusal.
template <typename Visit>
Refusal ForEachNumber(const NumberBlock& block, int row, int column, Visit&& visit) {
  for (std::size_t i = 0; i < block.size(); ++i) {
    for (std::size_t j = 0; j < block[i].size(); ++j) {
      if (!block[i][j]) continue;
      const Refusal refusal = visit(row + static_cast<int>(i), column + static_cast<int>(j), *block[i][j]);
      if (!refusal.empty()) return Place(i, j) + refusal;
    }
  }
  return {};
}

}  // namespace

Refusal CheckTyped(const Control& control, std::string_view text) {
  if (control.kind != ControlKind::Number) return {};
  const auto value = ParseEntry(text, control.unit);
  return value ? CheckNumber(control, *value) : NotANumber;
}

Refusal EnterTyped(Control& control, std::string_view text) {
  std::string typed(text);
  if (control.kind == ControlKind::Number) {
    const auto value = ParseEntry(text, control.unit);
    if (!value) return NotANumber;
    typed = EntryText(*value);
  }
  if (Screen.busy > 0 && !control.whileBusy) return Commit(control);  // returns the reason and types nothing
  const Refusal refusal = TypeInto(control, typed);
  return refusal.empty() ? Commit(control) : refusal;
}

std::string CompactNumber(double value, int digits) {
  std::string text = FormatText("%.*g", digits, value);
  const std::size_t mark = text.find('e');
  if (mark == std::string::npos) return text;
  std::size_t from = mark + 1;
  if (text[from] == '+') text.erase(from, 1);
  if (text[from] == '-') ++from;
  while (from + 1 < text.size() && text[from] == '0') text.erase(from, 1);
  return text;
}

std::optional<NumberBlock> ParseBlock(std::string_view text, std::string_view unit, Refusal& refusal) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  NumberBlock block;
  for (const std::string_view line : Split(text, '\n')) {
    std::vector<std::optional<double>>& row = block.emplace_back();
    for (std::string_view cell : Split(line, '\t')) {
      if (cell.ends_with('\r')) cell.remove_suffix(1);
      row.emplace_back();
      if (IsBlank(cell)) continue;
      row.back() = ParseEntry(cell, unit);
      if (row.back() && std::isfinite(*row.back())) continue;
      refusal = Place(block.size() - 1, row.size() - 1) + '"' + std::string(cell) + "\" is not a number";
      return std::nullopt;
    }
  }
  return block;
}

Refusal EnterBlock(const NumberBlock& block, int row, int column, const CellControl& cell) {
  if (Screen.busy > 0) return "a run is in progress";
  Control* last = nullptr;
  const Refusal refusal = ForEachNumber(block, row, column, [&](int i, int j, double value) -> Refusal {
    last = cell(i, j);
    if (last == nullptr) return "there is no cell for this number";
    return last->dimmed ? Refusal("dimmed") : CheckNumber(*last, value);
  });
  if (!refusal.empty() || last == nullptr) return refusal;
  ForEachNumber(block, row, column,
                [&](int i, int j, double value) { return TypeInto(*cell(i, j), EntryText(value)); });
  return Commit(*last);
}

}  // namespace zelvane
