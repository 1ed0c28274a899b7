#include "screen/number_entry.h"

#include <algorithm>
#include <charconv>

#include "screen/fields.h"

namespace zelvane {
namespace {

struct Prefix {
  std::string_view sign;
  int exponent;
};
constexpr Prefix Prefixes[] = {{"f", -15},       {"p", -12}, {"n", -9}, {"u", -6}, {"\xC2\xB5", -6},
                               {"\xCE\xBC", -6}, {"m", -3},  {"k", 3},  {"M", 6},  {"G", 9}};

constexpr std::string_view PrefixedUnits = "MSAV";

/// Removes a prefix from the front of `text` and returns its exponent; 0 without a prefix.
int ReadPrefix(std::string_view& text) {
  for (const Prefix& prefix : Prefixes) {
    if (!text.starts_with(prefix.sign)) continue;
    text.remove_prefix(prefix.sign.size());
    return prefix.exponent;
  }
  return 0;
}

std::string_view Trimmed(std::string_view text) {
  const auto begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

/// Returns the length of the number at the front: digits, marks, sign and exponent.
std::size_t NumberLength(std::string_view text) {
  std::size_t end = 0;
  while (end < text.size()) {
    const char c = text[end];
    const bool exponentSign =
        (c == '-' || c == '+') && end > 0 && (text[end - 1] == 'e' || text[end - 1] == 'E');
    const bool leadingSign = (c == '-' || c == '+') && end == 0;
    const bool exponent = (c == 'e' || c == 'E') && end > 0 && end + 1 < text.size() &&
                          std::string_view("+-0123456789").find(text[end + 1]) != std::string_view::npos;
    if (!(c >= '0' && c <= '9') && c != '.' && c != ',' && !exponentSign && !leadingSign && !exponent) break;
    ++end;
  }
  return end;
}

/// Returns the power of ten by which a suffix ("m", "mM", "nA") multiplies a number in a field of `unit`;
/// nullopt when the suffix does not suit the unit.
std::optional<int> SuffixExponent(std::string_view suffix, std::string_view unit) {
  if (suffix.empty() || suffix == unit) return 0;
  constexpr std::string_view either = " or ";  // "V or M": a stimulus of voltage or of a drug
  if (const std::size_t at = unit.find(either); at != std::string_view::npos) {
    const auto exponent = SuffixExponent(suffix, unit.substr(0, at));
    return exponent ? exponent : SuffixExponent(suffix, unit.substr(at + either.size()));
  }
  if (unit.empty() || PrefixedUnits.find(unit.back()) == std::string_view::npos) return std::nullopt;
  std::string_view fieldPrefix = unit.substr(0, unit.size() - 1);
  const int fieldExponent = ReadPrefix(fieldPrefix);
  if (!fieldPrefix.empty()) return std::nullopt;
  if (suffix == unit.substr(unit.size() - 1)) return -fieldExponent;  // the unit without a prefix
  const int exponent = ReadPrefix(suffix);
  if (exponent == 0 || !(suffix.empty() || suffix == unit.substr(unit.size() - 1))) return std::nullopt;
  return exponent - fieldExponent;
}

}  // namespace

std::optional<double> ParseEntry(std::string_view text, std::string_view unit) {
  text = Trimmed(text);
  const std::size_t length = NumberLength(text);
  std::string number(text.substr(0, length));
  const auto commas = std::count(number.begin(), number.end(), ',');
  if (commas > 1 || (commas == 1 && number.find('.') != std::string::npos)) return std::nullopt;
  std::replace(number.begin(), number.end(), ',', '.');
  const std::optional<int> exponent = SuffixExponent(Trimmed(text.substr(length)), unit);
  if (number.empty() || !exponent) return std::nullopt;
  // The power of ten is added to the text, so that "1m" is the double nearest to 0.001 and not a product.
  if (*exponent != 0) {
    const std::size_t mark = number.find_first_of("eE");
    int own = 0;
    if (mark != std::string::npos) {
      const char* digits = number.data() + mark + (number[mark + 1] == '+' ? 2 : 1);
      if (std::from_chars(digits, number.data() + number.size(), own).ec != std::errc{}) return std::nullopt;
      number.resize(mark);
    }
    number += 'e' + std::to_string(own + *exponent);
  }
  return ParseNumber(number);
}

std::string EntryText(double value) {
  char buffer[32];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
  return {buffer, error == std::errc{} ? end : buffer};
}

}  // namespace zelvane
