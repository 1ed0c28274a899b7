// Minimum and maximum of a long trace at every scale, so that a picture of millions of samples costs no more
// than its width in pixels.
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

/// Minimum and maximum of samples; those that are not finite are passed over.
MinMax RangeOfSamples(std::span<const float> samples);

/// Level k holds one pair for each run of PyramidBase x 2^k samples. The samples themselves stay outside.
inline constexpr std::size_t PyramidBase = 64;

struct Pyramid {
  std::vector<std::vector<MinMax>> levels;
  std::size_t count = 0;  // samples it was built from
};

/// Builds the pyramid of `samples`: one pass over them, and about 1/4 of their room.
Pyramid BuildPyramid(std::span<const float> samples);

/// Minimum and maximum of samples first..last - 1, which must lie inside `samples`, from which the pyramid
/// was built. Samples that are not finite are passed over. Costs at most 4 x PyramidBase samples and two
/// pairs a level.
MinMax RangeOf(const Pyramid& pyramid, std::span<const float> samples, std::size_t first, std::size_t last);

}  // namespace zelvane
