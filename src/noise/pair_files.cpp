#include "noise/pair_files.h"

#include <algorithm>
#include <cstddef>

#include "formats/input_file.h"
#include "formats/line_scanner.h"
#include "formats/number_text.h"
#include "formats/row_blocks.h"
#include "model/model_store.h"
#include "parameters/parameters_store.h"
#include "platform/index.h"
#include "screen/popups.h"
#include "screen/save_file.h"

namespace zelvane {
namespace {

constexpr std::size_t LongestLine = 300;  // bytes

/// Reads "%g, %g" from a line.
bool ScanPair(std::string_view line, float& first, float& second) {
  if (ScanNumber(line, first) != Scan::Taken || !line.starts_with(',')) return false;
  line.remove_prefix(1);
  return ScanNumber(line, second) == Scan::Taken;
}

bool IsBlankLine(std::string_view line) {
  return line.find_first_not_of(" \t") == std::string_view::npos;
}

void AppendRow(std::string& text, std::initializer_list<double> values) {
  const char* comma = "";
  for (const double value : values) {
    text += comma;
    AppendExponent(text, value);
    comma = ", ";
  }
  text += '\n';
}

}  // namespace

int PairTextRead(const std::string& path, std::span<float> first, std::span<float> second) {
  auto file = OpenInput(path);
  if (!file) {
    FileErrorPopup(FileOpenFailed);
    return 0;
  }
  LineReader lines(std::move(*file), LongestLine);
  const std::size_t room = first.empty() ? 0 : first.size() - 1;
  std::size_t rows = 0;
  while (rows < room) {
    const auto line = lines.Next();
    if (!line) break;
    if (IsBlankLine(*line)) continue;
    if (!ScanPair(*line, first[rows], second[rows])) break;
    ++rows;
  }
  if (!lines.Fault().empty()) {
    TellNotRead(path, lines.Fault());
    return 0;
  }
  const int length = static_cast<int>(rows) + (Parameters.FitMode == FitSublevels ? 1 : 0);
  Model.RecordPoints = length;
  return length;
}

Outcome PairTextWrite(const std::string& path, std::span<const float> first, std::span<const float> second) {
  const auto append = [first, second](std::string& text, std::size_t i) {
    AppendRow(text, {static_cast<double>(first[i]), static_cast<double>(second[i])});
  };
  return SaveFile(path, MakeRowBlocks({}, first.size(), append));
}

Outcome TripleTextWrite(const std::string& path, std::span<const double> first,
                        std::span<const double> second, int start) {
  const auto skipped = std::min(Index(std::max(start, 0)), first.size());
  const double interval = Model.ADInterval;
  const auto append = [=](std::string& text, std::size_t i) {
    AppendRow(text, {static_cast<double>(i) * interval, first[skipped + i], second[skipped + i]});
  };
  return SaveFile(path, MakeRowBlocks({}, first.size() - skipped, append));
}

}  // namespace zelvane
