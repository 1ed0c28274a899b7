// Splits a line of a script into words.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

/// Splits a line at blanks and tabs. A word in double quotes may have blanks. Inside the quotes \" is a
/// quote and \\ a backslash; any other backslash is itself. Returns an empty result when a quote is not
/// closed.
std::optional<std::vector<std::string>> SplitWords(std::string_view line);

/// Converts a whole word to an int. Returns an empty result when it is not a whole number or too large.
std::optional<int> WholeNumber(std::string_view word);

/// Cuts a text to a length that suits a message.
std::string Shortened(std::string_view text);

}  // namespace zelvane
