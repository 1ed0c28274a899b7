// Reads the common forms of decimal numbers faster than the library, with the same bits.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "platform/index.h"

namespace zelvane {

/// Returns whether rounding this double, itself rounded, to 32 bits gives the same as rounding its decimal.
/// This is so within the normal range of a float, except half-way between two floats.
inline bool RoundsOnce(double value) {
  constexpr std::uint64_t Below = (std::uint64_t{1} << 29) - 1;  // bits that a float does not have
  constexpr std::uint64_t Half = std::uint64_t{1} << 28;
  const double size = std::fabs(value);
  return size == 0.0 ||
         (size > 1e-37 && size < 1e38 && (std::bit_cast<std::uint64_t>(value) & Below) != Half);
}

/// Reads the number at the begin of a text, correctly rounded: at most 18 digits, with or without sign, full
/// stop and exponent. For any other text, and for the few numbers that need more care, returns nullptr and
/// keeps `value`.
///
/// A whole number below 2^53, multiplied or divided by a power of ten up to 10^22, is exact before its one
/// rounding (Clinger 1990, How to read floating point numbers accurately).
/// @return the place after the number; at the end of the text the number may continue in text not yet read
template <typename Real>
const char* FastDecimalAt(const char* at, const char* end, Real& value) {
  static_assert(std::is_same_v<Real, float> || std::is_same_v<Real, double>);
  static constexpr std::array<double, 23> Powers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                    1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                    1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr int MostDigits = 18;
  constexpr int MostExponentDigits = 2;
  constexpr int MostPower = static_cast<int>(Powers.size()) - 1;
  constexpr std::uint64_t Exact = std::uint64_t{1} << 53;

  const bool minus = at != end && *at == '-';
  if (minus) ++at;
  std::uint64_t whole = 0;
  const char* first = at;
  const auto digits = [&] {
    for (; at != end; ++at) {
      const unsigned digit = static_cast<unsigned char>(*at) - unsigned{'0'};
      if (digit > 9) return;
      whole = whole * 10 + digit;  // may overflow with too many digits; the count below refuses them
    }
  };
  digits();
  std::ptrdiff_t count = at - first;
  int power = 0;
  if (at != end && *at == '.') {
    const char* fraction = ++at;
    digits();
    count += at - fraction;
    power = -static_cast<int>(at - fraction > MostDigits ? MostDigits + 1 : at - fraction);
  }
  if (count < 1 || count > MostDigits || whole >= Exact) return nullptr;
  if (at != end && (*at == 'e' || *at == 'E')) {
    if (++at == end) return nullptr;
    const bool below = *at == '-';
    if (*at == '-' || *at == '+') ++at;
    const char* digitsOf = at;
    int exponent = 0;
    for (; at != end && *at >= '0' && *at <= '9'; ++at) {
      if (at - digitsOf >= MostExponentDigits) return nullptr;
      exponent = exponent * 10 + (*at - '0');
    }
    if (at == digitsOf) return nullptr;
    power += below ? -exponent : exponent;
  }
  if (power < -MostPower || power > MostPower) return nullptr;
  double scanned = static_cast<double>(whole);
  scanned = power < 0 ? scanned / Powers[Index(-power)] : scanned * Powers[Index(power)];
  if constexpr (std::is_same_v<Real, float>) {
    if (!RoundsOnce(scanned)) return nullptr;
  }
  value = static_cast<Real>(minus ? -scanned : scanned);
  return at;
}

/// Does the same for a word that is only such a number. Returns false for any other word.
template <typename Real>
bool FastDecimal(std::string_view word, Real& value) {
  const char* end = word.data() + word.size();
  Real scanned = 0;
  if (FastDecimalAt(word.data(), end, scanned) != end) return false;
  value = scanned;
  return true;
}

}  // namespace zelvane
