#include "headless/words.h"

#include <charconv>

namespace zelvane {
namespace {

constexpr std::string_view Blanks = " \t";
constexpr std::size_t LongestQuoted = 80;  // characters of a script's text that a message repeats

/// Removes a quoted word from the front of `line`; its opening quote is already removed.
std::optional<std::string> ReadQuoted(std::string_view& line) {
  std::string word;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') {
      line.remove_prefix(i + 1);
      return word;
    }
    const bool escape = line[i] == '\\' && i + 1 < line.size() && (line[i + 1] == '"' || line[i + 1] == '\\');
    word += escape ? line[++i] : line[i];
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::vector<std::string>> SplitWords(std::string_view line) {
  std::vector<std::string> words;
  for (;;) {
    const std::size_t begin = line.find_first_not_of(Blanks);
    if (begin == std::string_view::npos) return words;
    line.remove_prefix(begin);
    if (line.front() == '"') {
      line.remove_prefix(1);
      auto word = ReadQuoted(line);
      if (!word) return std::nullopt;
      words.push_back(std::move(*word));
    } else {
      const std::size_t end = std::min(line.find_first_of(Blanks), line.size());
      words.emplace_back(line.substr(0, end));
      line.remove_prefix(end);
    }
  }
}

std::optional<int> WholeNumber(std::string_view word) {
  int value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (error != std::errc{} || end != word.data() + word.size()) return std::nullopt;
  return value;
}

std::string Shortened(std::string_view text) {
  if (text.size() <= LongestQuoted) return std::string(text);
  return std::string(text.substr(0, LongestQuoted)) + "...";
}

}  // namespace zelvane
