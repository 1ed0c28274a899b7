#include "screen/pyramid.h"

#include <algorithm>
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

MinMax OfSamples(std::span<const float> samples) {
  MinMax range;
  for (const float value : samples) Take(range, value);
  return range;
}

std::vector<MinMax> Halved(const std::vector<MinMax>& fine) {
  std::vector<MinMax> coarse((fine.size() + 1) / 2);
  for (std::size_t i = 0; i < fine.size(); ++i) Take(coarse[i / 2], fine[i]);
  return coarse;
}

}  // namespace

Pyramid BuildPyramid(std::span<const float> samples) {
  Pyramid pyramid;
  pyramid.count = samples.size();
  std::vector<MinMax> level;
  level.reserve(samples.size() / PyramidBase + 1);
  for (std::size_t i = 0; i < samples.size(); i += PyramidBase) {
    level.push_back(OfSamples(samples.subspan(i, std::min(PyramidBase, samples.size() - i))));
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
  // Whole blocks of the finest level, with the samples before and after them taken one by one.
  std::size_t firstBlock = (first + PyramidBase - 1) / PyramidBase;
  std::size_t lastBlock = last / PyramidBase;
  if (firstBlock >= lastBlock) return OfSamples(samples.subspan(first, last - first));
  range = OfSamples(samples.subspan(first, firstBlock * PyramidBase - first));
  Take(range, OfSamples(samples.subspan(lastBlock * PyramidBase, last - lastBlock * PyramidBase)));
  // Upward: an odd block at either end is taken here, the even rest one level higher.
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
