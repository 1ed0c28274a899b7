// Model files of every format, made from a text in the newest format.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

inline constexpr int LinesOfModelFile = 1299;

/// Returns the lines of a text without their ends.
std::vector<std::string> LinesOf(std::string_view text);
std::string JoinLines(const std::vector<std::string>& lines, std::string_view end = "\n");

/// Returns the number of the line, from 1, that reads `text`; without it the test fails.
int LineNumber(const std::vector<std::string>& lines, std::string_view text);

/// Returns a file of the newest format as format `version` (1 to 3) holds it.
std::string InOlderFormat(std::string_view newest, int version);

}  // namespace zelvane
