// Model files of every format, made from the text of one in the newest.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

inline constexpr int LinesOfModelFile = 1299;

/// The lines of a text without their ends.
std::vector<std::string> LinesOf(std::string_view text);
std::string JoinLines(const std::vector<std::string>& lines, std::string_view end = "\n");

/// Number of the line, from 1, that reads `text`; a test failure when there is none.
int LineNumber(const std::vector<std::string>& lines, std::string_view text);

/// A file of the newest format as format `version` (1 to 3) would hold it.
std::string InOlderFormat(std::string_view newest, int version);

}  // namespace zelvane
