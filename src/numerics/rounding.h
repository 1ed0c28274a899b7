// From times and counts held as fractions to whole numbers.
//
//   RoundCount  WholeSamples
#pragma once

namespace zelvane {

/// A float turned into a count through two decimals of text: 2.999 gives 3, 2.994 gives 2. Beyond the range
/// of an int the nearest bound; nan gives 0.
int RoundCount(double value);

/// A time over the interval, cut to whole samples. Beyond the range of an int the nearest bound; nan gives 0.
int WholeSamples(float samples);

}  // namespace zelvane
