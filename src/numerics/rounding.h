// Converts times and counts from fractions to whole numbers.
//
//   RoundCount  WholeSamples
#pragma once

namespace zelvane {

/// Converts a float to a count through a text with two decimals: 2.999 gives 3, 2.994 gives 2. Outside the
/// range of an int returns the nearest bound; nan gives 0.
int RoundCount(double value);

/// Divides a time by the interval and truncates to whole samples. Outside the range of an int returns the
/// nearest bound; nan gives 0.
int WholeSamples(float samples);

}  // namespace zelvane
