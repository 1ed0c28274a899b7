#include "analysis/sliding_window.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <vector>

#include "platform/index.h"

namespace zelvane {
namespace {

constexpr std::size_t BlockWindows = 64;  // windows summed in parallel

/// The best window so far. Of equal windows the first is kept.
struct Best {
  std::int64_t position = 0;
  float size = 0.0F;
  bool any = false;

  void Try(std::int64_t at, float sum) {
    const float newSize = std::abs(sum);
    if (any && !(newSize > size)) return;
    position = at;
    size = newSize;
    any = true;
  }
};

/// Sums `count` neighbouring windows from `first`, cut at the end of the trace.
void SumWindows(std::span<const float> trace, std::size_t first, std::size_t count, std::size_t width,
                float baseline, std::array<float, BlockWindows>& sums) {
  sums.fill(0.0F);
  const std::size_t wholeColumns = std::min(width, trace.size() - std::min(trace.size(), first + count - 1));
  for (std::size_t j = 0; j < wholeColumns; ++j) {
    const float* column = trace.data() + first + j;
    for (std::size_t k = 0; k < count; ++k) sums[k] += column[k] - baseline;
  }
  for (std::size_t j = wholeColumns; j < width && first + j < trace.size(); ++j) {
    const float* column = trace.data() + first + j;
    for (std::size_t k = 0; k < std::min(count, trace.size() - first - j); ++k) {
      sums[k] += column[k] - baseline;
    }
  }
}

std::int64_t BestPlainWindow(std::span<const float> trace, std::size_t start, std::size_t windows,
                             float baseline, std::size_t width) {
  Best best;
  std::array<float, BlockWindows> sums{};
  for (std::size_t done = 0; done < windows; done += BlockWindows) {
    const std::size_t count = std::min(BlockWindows, windows - done);
    SumWindows(trace, start + done, count, width, baseline, sums);
    for (std::size_t k = 0; k < count; ++k) best.Try(static_cast<std::int64_t>(start + done + k), sums[k]);
  }
  return best.position;
}

std::int64_t BestWideWindow(std::span<const float> trace, std::size_t start, std::size_t windows,
                            float baseline, std::size_t width) {
  std::vector<double> sumTo(trace.size() - start + 1);
  for (std::size_t i = start; i < trace.size(); ++i) {
    sumTo[i - start + 1] = sumTo[i - start] + static_cast<double>(trace[i] - baseline);
  }
  Best best;
  for (std::size_t k = 0; k < windows; ++k) {
    const std::size_t end = std::min(k + width, sumTo.size() - 1);
    best.Try(static_cast<std::int64_t>(start + k), static_cast<float>(sumTo[end] - sumTo[k]));
  }
  return best.position;
}

}  // namespace

std::int64_t BestWindow(std::span<const float> trace, std::int64_t start, std::int64_t positions,
                        float baseline, std::int64_t width) {
  assert(width >= 1);
  const auto length = static_cast<std::int64_t>(trace.size());
  const std::int64_t last = std::clamp<std::int64_t>(positions, 0, length - 1 - start);
  const auto first = Index(start);
  const auto windows = Index(last + 1);
  if (width > WidestPlainWindow) {
    return BestWideWindow(trace, first, windows, baseline, Index(std::min(width, length)));
  }
  return BestPlainWindow(trace, first, windows, baseline, Index(width));
}

}  // namespace zelvane
