#include "screen/pyramid.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zelvane {
namespace {

void Take(MinMax& into, float value) {
  if (!std::isfinite(value)) return;
  into.min = into.empty ? value : std::min(into.min, value);
  into.max = into.empty ? value : std::max(into.max, value);
  into.empty = false;
}

void Take(MinMax& into, const MinMax& other) {
  if (other.empty) return;
  Take(into, other.min);
  Take(into, other.max);
}

MinMax OneByOne(std::span<const float> samples) {
  MinMax range;
  for (const float value : samples) Take(range, value);
  return range;
}

// Parallel lanes of samples become vector instructions. Blocks are short, so that a sample that is not finite
// sends only a few others to the slow path.
constexpr std::size_t Lanes = 8;
constexpr std::size_t FastBlock = 1024;

/// Returns the range of a block. `samples` must fill the lanes at least once.
MinMax OfBlock(std::span<const float> samples) {
  std::array<float, Lanes> low{};
  std::array<float, Lanes> high{};
  std::array<float, Lanes> notFinite{};  // 0 x value is 0 for a finite value and NaN for any other
  std::copy_n(samples.begin(), Lanes, low.begin());
  high = low;
  std::size_t i = 0;
  for (; i + Lanes <= samples.size(); i += Lanes) {
    const float* const values = samples.data() + i;
    for (std::size_t k = 0; k < Lanes; ++k) {
      low[k] = values[k] < low[k] ? values[k] : low[k];
      high[k] = values[k] > high[k] ? values[k] : high[k];
      notFinite[k] += values[k] * 0.0F;
    }
  }
  for (const float flag : notFinite) {
    if (!(flag == 0.0F)) return OneByOne(samples);
  }
  MinMax range = OneByOne(samples.subspan(i));
  Take(range,
       {*std::min_element(low.begin(), low.end()), *std::max_element(high.begin(), high.end()), false});
  return range;
}

std::vector<MinMax> Halved(const std::vector<MinMax>& fine) {
  std::vector<MinMax> coarse((fine.size() + 1) / 2);
  for (std::size_t i = 0; i < fine.size(); ++i) Take(coarse[i / 2], fine[i]);
  return coarse;
}

}  // namespace

MinMax RangeOfSamples(std::span<const float> samples) {
  MinMax range;
  while (samples.size() >= Lanes) {
    const std::size_t block = std::min(FastBlock, samples.size());
    Take(range, OfBlock(samples.first(block)));
    samples = samples.subspan(block);
  }
  Take(range, OneByOne(samples));
  return range;
}

Pyramid BuildPyramid(std::span<const float> samples) {
  Pyramid pyramid;
  pyramid.count = samples.size();
  std::vector<MinMax> level;
  level.reserve(samples.size() / PyramidBase + 1);
  for (std::size_t i = 0; i < samples.size(); i += PyramidBase) {
    level.push_back(RangeOfSamples(samples.subspan(i, std::min(PyramidBase, samples.size() - i))));
  }
  while (!level.empty()) {
    pyramid.levels.push_back(std::move(level));
    level.clear();
    if (pyramid.levels.back().size() > 1) level = Halved(pyramid.levels.back());
  }
  return pyramid;
}

MinMax RangeOf(const Pyramid& pyramid, std::span<const float> samples, std::size_t first, std::size_t last) {
  MinMax range;
  // Whole blocks of the finest level; the samples before and after them are read one by one.
  std::size_t firstBlock = (first + PyramidBase - 1) / PyramidBase;
  std::size_t lastBlock = last / PyramidBase;
  if (firstBlock >= lastBlock) return RangeOfSamples(samples.subspan(first, last - first));
  range = RangeOfSamples(samples.subspan(first, firstBlock * PyramidBase - first));
  Take(range, RangeOfSamples(samples.subspan(lastBlock * PyramidBase, last - lastBlock * PyramidBase)));
  // Upward: reads an odd block at either end here, and the even rest one level higher.
  for (std::size_t k = 0; firstBlock < lastBlock; ++k) {
    const std::vector<MinMax>& level = pyramid.levels[k];
    if (firstBlock % 2 == 1) Take(range, level[firstBlock++]);
    if (lastBlock % 2 == 1 && firstBlock < lastBlock) Take(range, level[--lastBlock]);
    firstBlock /= 2;
    lastBlock /= 2;
  }
  return range;
}

}  // namespace zelvane
