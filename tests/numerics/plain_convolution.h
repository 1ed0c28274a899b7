// The convolution of the Gaussian filter in its plain form, for comparison with the fast one.
#pragma once

#include <cstdlib>
#include <span>
#include <vector>

#include "numerics/gaussian_kernel.h"

namespace zelvane {

/// Calculates one sum after the other, each over 2 x half + 1 samples in rising order. A filtered sample
/// waits in a ring until no sum needs the unfiltered one.
inline void PlainConvolve(std::span<float> trace, const GaussianKernel& kernel) {
  const int c = kernel.half;
  const int last = static_cast<int>(trace.size()) - 1 - c;
  std::vector<float> ring(static_cast<std::size_t>(c));
  const auto slot = [&](int i) -> float& { return ring[static_cast<std::size_t>(i % c)]; };
  for (int i = c; i <= last; ++i) {
    float sum = 0.0F;
    for (int j = i - c; j <= i + c; ++j) {
      sum +=
          kernel.coefficient[static_cast<std::size_t>(std::abs(j - i))] * trace[static_cast<std::size_t>(j)];
    }
    if (i - c >= c) trace[static_cast<std::size_t>(i - c)] = slot(i);
    slot(i) = sum;
  }
  for (int i = std::max(c, last - c + 1); i <= last; ++i) trace[static_cast<std::size_t>(i)] = slot(i);
}

}  // namespace zelvane
