#include "formats/number_text.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/index.h"

namespace zelvane {
namespace {

/// Powers of ten as doubles, each rounded once: element k is 10^(k - MostExponent).
constexpr int MostExponent = 300;
std::array<double, 2 * MostExponent + 1> PowersOfTen() {
  std::array<double, 2 * MostExponent + 1> powers{};
  for (int k = -MostExponent; k <= MostExponent; ++k) {
    std::array<char, 8> text{'1', 'e'};
    const auto end = std::to_chars(text.data() + 2, text.data() + text.size(), k).ptr;
    std::from_chars(text.data(), end, powers[Index(k + MostExponent)]);
  }
  return powers;
}

const std::array<double, 2 * MostExponent + 1> Powers = PowersOfTen();

/// Limits of a magnitude for the multiplication: with seven digits the power of ten stays within the table,
/// and no operand is subnormal.
constexpr double LeastMagnitude = 1e-290;
constexpr double MostMagnitude = 1e290;

/// A product of fewer than eight digits before the point has an error of at most 10^7 x 2 x 2^-53 = 2.3e-9.
/// If it is nearer than this to a half, the rounding of the exact value is unknown.
constexpr double Doubt = 1e-8;

constexpr std::uint32_t Power10[] = {1, 10, 100, 1000, 10'000, 100'000, 1'000'000, 10'000'000};

/// A decimal number: digits x 10^(exponent + 1 - number of digits), its first digit not 0.
struct Decimal {
  std::uint32_t digits = 0;
  int exponent = 0;
};

/// Rounds a magnitude within the range above to `count` digits, at most 7. Returns false when in doubt.
inline bool RoundTo(int count, double magnitude, Decimal& decimal) {
  // 1233 / 4096 is just above log10(2): the estimate is right or one too small.
  const int binary = static_cast<int>(std::bit_cast<std::uint64_t>(magnitude) >> 52) - 1023;
  decimal.exponent = (binary * 1233) >> 12;
  if (binary < 0) decimal.exponent = -((-binary * 1233 + 4095) >> 12);
  const auto scaledBy = [&](int exponent) {
    return magnitude * Powers[Index(count - 1 - exponent + MostExponent)];
  };
  double scaled = scaledBy(decimal.exponent);
  if (scaled >= static_cast<double>(Power10[count])) scaled = scaledBy(++decimal.exponent);
  if (scaled < static_cast<double>(Power10[count - 1])) return false;
  decimal.digits = static_cast<std::uint32_t>(scaled);
  const double fraction = scaled - static_cast<double>(decimal.digits);
  if (std::abs(fraction - 0.5) < Doubt) return false;
  if (fraction > 0.5) ++decimal.digits;
  if (decimal.digits == Power10[count]) {
    decimal.digits = Power10[count - 1];
    ++decimal.exponent;
  }
  return true;
}

bool FastRange(double magnitude) {
  return magnitude >= LeastMagnitude && magnitude <= MostMagnitude;
}

/// "00" to "99" in one row.
constexpr std::array<char, 200> DigitPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t k = 0; k < 100; ++k) {
    pairs[2 * k] = static_cast<char>('0' + k / 10);
    pairs[2 * k + 1] = static_cast<char>('0' + k % 10);
  }
  return pairs;
}();

/// Writes `count` digits, with leading zeros, to `out`.
inline void WriteDigits(char* out, std::uint32_t digits, int count) {
  for (; count > 1; count -= 2) {
    std::memcpy(out + count - 2, DigitPairs.data() + 2 * (digits % 100), 2);
    digits /= 100;
  }
  if (count == 1) *out = static_cast<char>('0' + digits % 10);
}

void AppendSlowly(std::string& text, double value, std::chars_format format, int precision) {
  std::array<char, 512> buffer;  // "%f" of the largest double has 309 digits before the point
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision).ptr;
  text.append(buffer.data(), end);
}

/// Writes "e-05", "e+123".
inline char* WriteExponent(char* out, int exponent) {
  *out++ = 'e';
  *out++ = exponent < 0 ? '-' : '+';
  const auto magnitude = static_cast<std::uint32_t>(std::abs(exponent));
  const int digits = magnitude >= 100 ? 3 : 2;
  WriteDigits(out, magnitude, digits);
  return out + digits;
}

/// Writes d.dddddd with `decimals` digits after the point; without a point for 0.
inline char* WriteMantissa(char* out, std::uint32_t digits, int decimals) {
  WriteDigits(out + 1, digits, decimals + 1);
  out[0] = out[1];
  out[1] = '.';
  return out + (decimals > 0 ? decimals + 2 : 1);
}

}  // namespace

void AppendExponent(std::string& text, double value) {
  constexpr int Decimals = 6;
  const double magnitude = std::abs(value);
  Decimal decimal;
  const bool zero = magnitude == 0.0;
  if (!zero && !(FastRange(magnitude) && RoundTo(Decimals + 1, magnitude, decimal))) {
    AppendSlowly(text, value, std::chars_format::scientific, Decimals);
    return;
  }
  std::array<char, 16> buffer;
  char* out = buffer.data();
  if (std::signbit(value)) *out++ = '-';
  out = WriteExponent(WriteMantissa(out, decimal.digits, Decimals), decimal.exponent);
  text.append(buffer.data(), Index(out - buffer.data()));
}

void AppendGeneral(std::string& text, double value) {
  constexpr int Digits = 6;
  const double magnitude = std::abs(value);
  Decimal decimal;
  if (!(FastRange(magnitude) && RoundTo(Digits, magnitude, decimal))) {
    AppendSlowly(text, value, std::chars_format::general, Digits);
    return;
  }
  int count = Digits;  // without trailing zeros
  while (count > 1 && decimal.digits % 10 == 0) {
    decimal.digits /= 10;
    --count;
  }
  std::array<char, 24> buffer;
  char* out = buffer.data();
  if (std::signbit(value)) *out++ = '-';
  if (decimal.exponent < -4 || decimal.exponent >= Digits) {
    out = WriteExponent(WriteMantissa(out, decimal.digits, count - 1), decimal.exponent);
  } else if (decimal.exponent < 0) {
    *out++ = '0';
    *out++ = '.';
    for (int zero = decimal.exponent; zero < -1; ++zero) *out++ = '0';
    WriteDigits(out, decimal.digits, count);
    out += count;
  } else {
    const int whole = decimal.exponent + 1;  // digits before the point
    WriteDigits(out, decimal.digits, count);
    if (count <= whole) {
      std::memset(out + count, '0', Index(whole - count));
      out += whole;
    } else {
      std::memmove(out + whole + 1, out + whole, Index(count - whole));
      out[whole] = '.';
      out += count + 1;
    }
  }
  text.append(buffer.data(), Index(out - buffer.data()));
}

void AppendNineDigits(std::string& text, double value) {
  AppendSlowly(text, value, std::chars_format::general, 9);
}

void AppendFixed(std::string& text, double value) {
  AppendSlowly(text, value, std::chars_format::fixed, 6);
}

double AsTyped(float value) {
  if (!std::isfinite(value)) return static_cast<double>(value);
  std::array<char, 32> buffer;
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  double typed = 0.0;
  std::from_chars(buffer.data(), written.ptr, typed);
  return typed;
}

}  // namespace zelvane
