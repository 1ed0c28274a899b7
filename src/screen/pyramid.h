// Minimum and maximum of a long trace at every scale. With them, drawing millions of samples takes only as
// long as the width in pixels.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace zelvane {

struct MinMax {
  float min = 0.0F;
  float max = 0.0F;
  bool empty = true;  // no finite sample
};

/// Returns minimum and maximum of the finite samples.
MinMax RangeOfSamples(std::span<const float> samples);

/// Level k holds one pair for each group of PyramidBase x 2^k samples. The pyramid does not hold the samples.
inline constexpr std::size_t PyramidBase = 64;

struct Pyramid {
  std::vector<std::vector<MinMax>> levels;
  std::size_t count = 0;  // number of its samples
};

/// Builds the pyramid of `samples` in one pass. It needs about 1/4 of their memory.
Pyramid BuildPyramid(std::span<const float> samples);

/// Returns minimum and maximum of the finite samples among first..last - 1. The range must be inside
/// `samples`, and `pyramid` must belong to `samples`. Reads at most 4 x PyramidBase samples and two pairs per
/// level.
MinMax RangeOf(const Pyramid& pyramid, std::span<const float> samples, std::size_t first, std::size_t last);

}  // namespace zelvane
