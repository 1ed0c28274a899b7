#include "formats/line_scanner.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "platform/index.h"

namespace zelvane {
namespace {

/// Returns what isspace returns in the C locale.
bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The sign before the digits of a number.
struct Sign {
  bool minus = false;
  bool any = false;
};

Sign SkipToDigits(std::string_view& rest) {
  while (!rest.empty() && IsBlank(rest.front())) rest.remove_prefix(1);
  Sign sign;
  sign.any = !rest.empty() && (rest.front() == '+' || rest.front() == '-');
  sign.minus = sign.any && rest.front() == '-';
  if (sign.any) rest.remove_prefix(1);
  return sign;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Removes `word`, in small letters, from the front of `rest`, in small or capital letters.
bool SkipWord(std::string_view& rest, std::string_view word) {
  const bool same = rest.size() >= word.size() && std::equal(word.begin(), word.end(), rest.begin(),
                                                             [](char w, char c) { return w == Lower(c); });
  if (same) rest.remove_prefix(word.size());
  return same;
}

/// Returns whether `number`, which from_chars found out of range, is too small and not too large. `mark`
/// begins its exponent; digits are decimal or hexadecimal.
bool TooSmall(std::string_view number, char mark, std::int64_t exponentPerDigit) {
  const auto isMark = [mark](char c) { return Lower(c) == mark; };
  const auto end = Index(std::find_if(number.begin(), number.end(), isMark) - number.begin());
  const std::string_view digits = number.substr(0, end);
  const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
  const auto first = static_cast<std::int64_t>(std::min(digits.find_first_not_of("0."), digits.size()));
  std::int64_t exponent = 0;
  if (end < number.size()) {
    const bool plus = end + 1 < number.size() && number[end + 1] == '+';
    const char* begin = number.data() + end + 1 + (plus ? 1 : 0);
    const auto [stop, error] = std::from_chars(begin, number.data() + number.size(), exponent);
    if (error == std::errc::result_out_of_range) return *begin == '-';
  }
  // The first digit above 0 is `point - first` places before the point. Lines are far too short to make this
  // sum large. The exponent has 64 bits; the bound keeps the sum from overflow.
  constexpr std::int64_t Bound = std::numeric_limits<std::int64_t>::max() / 4;
  return std::clamp(exponent, -Bound, Bound) + (point - first) * exponentPerDigit < 0;
}

bool BeginsWithDigits(std::string_view text, bool hexadecimal) {
  if (text.empty()) return false;
  const char c = Lower(text.front());
  return IsDigit(c) || c == '.' || (hexadecimal && c >= 'a' && c <= 'f');
}

/// Skips the mark and sign of an exponent without digits after `number`, as scanf does. So a number that was
/// cut off in its exponent also reaches the end of its line.
void PassOpenExponent(std::string_view& rest, std::string_view number, char mark) {
  const auto isMark = [mark](char c) { return Lower(c) == mark; };
  if (rest.empty() || !isMark(rest.front()) || std::any_of(number.begin(), number.end(), isMark)) return;
  rest.remove_prefix(1);
  if (!rest.empty() && (rest.front() == '+' || rest.front() == '-')) rest.remove_prefix(1);
}

template <typename Real>
Scan ScanReal(std::string_view& rest, Real& value) {
  std::string_view at = rest;
  const Sign sign = SkipToDigits(at);
  if (SkipWord(at, "infinity") || SkipWord(at, "inf") || SkipWord(at, "nan")) {
    rest = at;
    return Scan::Refused;
  }
  const bool hexadecimal = SkipWord(at, "0x");
  // from_chars accepts its own signs and words; they were read above.
  if (!BeginsWithDigits(at, hexadecimal)) return Scan::Missing;
  const auto format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
  Real scanned = 0;
  const auto [stop, error] = std::from_chars(at.data(), at.data() + at.size(), scanned, format);
  if (error == std::errc::invalid_argument) return Scan::Missing;
  const std::string_view number = at.substr(0, Index(stop - at.data()));
  rest = at.substr(number.size());
  PassOpenExponent(rest, number, hexadecimal ? 'p' : 'e');
  if (error == std::errc::result_out_of_range) {
    if (!TooSmall(number, hexadecimal ? 'p' : 'e', hexadecimal ? 4 : 1)) return Scan::Refused;
    scanned = 0;
  }
  if (!std::isfinite(scanned)) return Scan::Refused;
  value = sign.minus ? -scanned : scanned;
  return Scan::Taken;
}

}  // namespace

std::optional<TextLine> NextLine(std::string_view& rest) {
  if (rest.empty()) return std::nullopt;
  const auto end = rest.find('\n');
  TextLine line{rest.substr(0, end), end != std::string_view::npos};
  rest.remove_prefix(line.ended ? end + 1 : rest.size());
  if (line.ended && line.text.ends_with('\r')) line.text.remove_suffix(1);
  return line;
}

std::string_view FirstWord(std::string_view& rest, std::size_t longest) {
  while (!rest.empty() && IsBlank(rest.front())) rest.remove_prefix(1);
  const auto end = Index(std::find_if(rest.begin(), rest.end(), IsBlank) - rest.begin());
  const std::string_view word = rest.substr(0, std::min(end, longest));
  rest.remove_prefix(word.size());
  return word;
}

Scan ScanNumber(std::string_view& rest, int& value) {
  std::string_view at = rest;
  const Sign sign = SkipToDigits(at);
  if (at.empty() || !IsDigit(at.front())) return Scan::Missing;
  std::int64_t scanned = 0;
  const auto [stop, error] = std::from_chars(at.data(), at.data() + at.size(), scanned);
  rest = at.substr(Index(stop - at.data()));
  if (sign.minus) scanned = -scanned;
  if (error != std::errc{} || scanned < std::numeric_limits<int>::min() ||
      scanned > std::numeric_limits<int>::max()) {
    return Scan::Refused;
  }
  value = static_cast<int>(scanned);
  return Scan::Taken;
}

Scan ScanNumber(std::string_view& rest, float& value) {
  return ScanReal(rest, value);
}

Scan ScanNumber(std::string_view& rest, double& value) {
  return ScanReal(rest, value);
}

}  // namespace zelvane
