#include "numerics/rounding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace zelvane {

int RoundCount(double value) {
  constexpr int lowest = std::numeric_limits<int>::min();
  constexpr int highest = std::numeric_limits<int>::max();
  if (std::isnan(value)) return 0;
  if (value >= highest) return highest;
  if (value <= lowest) return lowest;
  // Rounds through a text, not a sum such as value + 0.005: the text rounds the exact binary value to two
  // decimals, once. The argument is a double so that a caller's float keeps its value; 1.995 is just above
  // the middle in both types.
  char text[24];  // sign, ten digits, full stop, two decimals
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 2).ptr;
  int count = 0;
  std::from_chars(text, end, count);
  return count;
}

int WholeSamples(float samples) {
  if (std::isnan(samples)) return 0;
  constexpr auto highest = static_cast<double>(std::numeric_limits<int>::max());
  return static_cast<int>(std::clamp(std::trunc(static_cast<double>(samples)), -highest, highest));
}

}  // namespace zelvane
