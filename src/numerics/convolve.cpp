// The convolution of the Gaussian filter.
//
// The order of additions within a sum is fixed, so one sum cannot be made faster. But neighbouring sums do
// the same steps on neighbouring samples. A group of them runs in parallel, one lane each, with the same
// operations in the same order as for a single sum.
#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <span>

#include "numerics/gaussian_kernel.h"
#include "platform/index.h"
#include "platform/vector_clones.h"

namespace zelvane {
namespace {

constexpr std::size_t BlockSums = 4096;  // sums of one window: it then stays in the first-level cache

/// The unfiltered samples of a block, and `half` samples on each side.
using Window = std::array<float, BlockSums + 2 * MaxKernelHalf>;
/// A kernel as a list from its first coefficient to its last.
using FullKernel = std::array<float, 2 * MaxKernelHalf + 1>;

/// The sums of a block: out[k] = the sum over j of coefficient[j] x window[k + j], j rising.
struct BlockJob {
  const float* window = nullptr;
  const float* coefficient = nullptr;
  std::size_t taps = 0;
  std::size_t sums = 0;  // the last group may exceed them: window and out have room for BlockSums
  float* out = nullptr;
};

#if defined(ZELVANE_VECTOR_LANES)

#pragma GCC diagnostic ignored "-Wpsabi"  // functions here pass no vectors

using FourSums = float __attribute__((vector_size(16)));
using EightSums = float __attribute__((vector_size(32)));
using SixteenSums = float __attribute__((vector_size(64)));

/// Calculates the block's sums in groups of `Vectors` vectors, all held in registers.
template <typename Sums, std::size_t Vectors>
ZELVANE_INLINE void SumGroups(const BlockJob& job) {
  constexpr std::size_t Lanes = sizeof(Sums) / sizeof(float);
  static_assert(BlockSums % (Vectors * Lanes) == 0);
  for (std::size_t k = 0; k < job.sums; k += Vectors * Lanes) {
    Sums sum[Vectors] = {};
    const float* samples = job.window + k;
    for (std::size_t j = 0; j < job.taps; ++j, ++samples) {
      const float weight = job.coefficient[j];
      for (std::size_t v = 0; v < Vectors; ++v) {
        Sums sample;
        std::memcpy(&sample, samples + v * Lanes, sizeof sample);
        sum[v] += weight * sample;
      }
    }
    std::memcpy(job.out + k, sum, sizeof sum);
  }
}

#if defined(ZELVANE_LOADER_PICKS)
[[gnu::target("avx512f")]] void SumBlock(const BlockJob& job) {
  SumGroups<SixteenSums, 4>(job);
}
[[gnu::target("avx2")]] void SumBlock(const BlockJob& job) {
  SumGroups<EightSums, 8>(job);
}
[[gnu::target("default")]]
#endif
void SumBlock(const BlockJob& job) {
  SumGroups<FourSums, 8>(job);
}

#else

void SumBlock(const BlockJob& job) {
  std::fill_n(job.out, job.sums, 0.0F);
  for (std::size_t j = 0; j < job.taps; ++j) {
    for (std::size_t k = 0; k < job.sums; ++k) job.out[k] += job.coefficient[j] * job.window[j + k];
  }
}

#endif

FullKernel WrittenOut(const GaussianKernel& kernel) {
  FullKernel full{};
  const auto half = Index(kernel.half);
  for (std::size_t i = 0; i <= half; ++i) full[half - i] = full[half + i] = kernel.coefficient[i];
  return full;
}

}  // namespace

void ConvolveInPlace(std::span<float> trace, const GaussianKernel& kernel) {
  assert(kernel.half >= 1 && kernel.half <= MaxKernelHalf);
  const auto half = Index(kernel.half);
  if (trace.size() <= 2 * half) return;
  const FullKernel full = WrittenOut(kernel);
  Window window{};
  std::array<float, BlockSums> sums;
  std::copy_n(trace.begin(), 2 * half, window.begin());
  for (std::size_t first = half; first < trace.size() - half; first += BlockSums) {
    // The window begins `half` samples before the block. Its first 2 x half samples are already there; in the
    // trace those before the block are overwritten.
    const std::size_t count = std::min(BlockSums, trace.size() - half - first);
    std::copy_n(&trace[first + half], count, window.begin() + static_cast<std::ptrdiff_t>(2 * half));
    SumBlock({window.data(), full.data(), 2 * half + 1, count, sums.data()});
    std::copy_n(sums.begin(), count, &trace[first]);
    std::copy_n(window.begin() + static_cast<std::ptrdiff_t>(count), 2 * half, window.begin());
  }
}

}  // namespace zelvane
