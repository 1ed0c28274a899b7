#include "model/model_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace zelvane {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* Magics[] = {"", "MOD", "2ZV", "3ZV"};
constexpr char LimitsHeader[] = "[Analysis: Fit limits hi,lo for vertex 1-72]";
constexpr char FixedHeader[] = "[Analysis: Fixed fit params for vertex 1-72]";
constexpr char SeedsHeader[] = "[Analysis: Seeds for vertex 1-72, fitlims,autoseed,fixfree]";
constexpr char WindowsHeader[] = "[FitWaveforms: start, stop positions for fit]";

void EraseLines(Lines& lines, int first, int count) {
  lines.erase(lines.begin() + first - 1, lines.begin() + first - 1 + count);
}

/// Removes rows 37 to 72 of the fit tables.
void CutFitRows(Lines& lines) {
  EraseLines(lines, LineNumber(lines, LimitsHeader) + 1 + 72, 72);
  EraseLines(lines, LineNumber(lines, FixedHeader) + 1 + 36, 36);
  EraseLines(lines, LineNumber(lines, SeedsHeader) + 1 + 36, 36);
}

/// Replaces seven lines of fifteen values and 35 lines without meaning by 35 lines of one value, for five
/// waveforms.
void SplitWindows(Lines& lines) {
  const int first = LineNumber(lines, WindowsHeader) + 4;
  Lines values;
  for (int row = 0; row < 7; ++row) {
    std::istringstream words(lines[static_cast<std::size_t>(first - 1 + row)]);
    std::string word;
    for (int w = 0; w < 5 && words >> word; ++w) values.push_back(word);
  }
  EraseLines(lines, first, 7 + 20 + 15);
  lines.insert(lines.begin() + first - 1, values.begin(), values.end());
}

}  // namespace

Lines LinesOf(std::string_view text) {
  Lines lines;
  std::istringstream in{std::string(text)};
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string JoinLines(const Lines& lines, std::string_view end) {
  std::string text;
  for (const std::string& line : lines) text.append(line).append(end);
  return text;
}

int LineNumber(const Lines& lines, std::string_view text) {
  const auto found = std::find(lines.begin(), lines.end(), text);
  EXPECT_NE(found, lines.end()) << text;
  return static_cast<int>(found - lines.begin()) + 1;
}

std::string InOlderFormat(std::string_view newest, int version) {
  Lines lines = LinesOf(newest);
  lines[0] = Magics[version];
  const auto labels = lines.begin() + LineNumber(lines, "[State1-20: labels]") - 1;
  const Lines moved(labels, labels + 21);
  lines.resize(static_cast<std::size_t>(LineNumber(lines, "20 [TState1-20: labels]") - 1));
  if (version == 1) CutFitRows(lines);
  if (version < 3) SplitWindows(lines);
  lines.insert(lines.begin() + 2, moved.begin(), moved.end());
  return JoinLines(lines);
}

}  // namespace zelvane
