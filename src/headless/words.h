// Splitting a line of a script into words.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

/// The words of a line, split at blanks and tabs. A word in double quotes may hold blanks; inside the quotes
/// \" stands for a quote and \\ for a backslash, any other backslash for itself. Nothing when a quote is not
/// closed.
std::optional<std::vector<std::string>> SplitWords(std::string_view line);

/// The whole of a word as an int; nothing when it is none or too large for one.
std::optional<int> WholeNumber(std::string_view word);

/// The start of a text, short enough for a message.
std::string Shortened(std::string_view text);

}  // namespace zelvane
