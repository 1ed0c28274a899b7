// Minimum and maximum from the pyramid, compared with a plain loop.
#include "screen/pyramid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace zelvane {
namespace {

TEST(Pyramid, GivesTheSameRangeAsAPlainWalk) {
  std::mt19937 random(20240501);
  std::normal_distribution<float> noise;
  for (const std::size_t count : {0U, 1U, 63U, 64U, 65U, 128U, 1000U, 4096U, 70001U}) {
    std::vector<float> samples(count);
    for (float& v : samples) v = noise(random);
    const Pyramid pyramid = BuildPyramid(samples);
    for (int trial = 0; trial < 200; ++trial) {
      std::size_t first = random() % (count + 1);
      std::size_t last = random() % (count + 1);
      if (first > last) std::swap(first, last);
      const MinMax range = RangeOf(pyramid, samples, first, last);
      ASSERT_EQ(range.empty, first == last) << first << ' ' << last;
      if (first == last) continue;
      const auto [low, high] = std::minmax_element(samples.begin() + static_cast<std::ptrdiff_t>(first),
                                                   samples.begin() + static_cast<std::ptrdiff_t>(last));
      ASSERT_EQ(range.min, *low) << count << ": " << first << ' ' << last;
      ASSERT_EQ(range.max, *high) << count << ": " << first << ' ' << last;
    }
  }
}

TEST(Pyramid, PassesOverSamplesThatAreNotFinite) {
  std::vector<float> samples(1000, std::numeric_limits<float>::quiet_NaN());
  samples[500] = 3.0F;
  samples[600] = std::numeric_limits<float>::infinity();
  const Pyramid pyramid = BuildPyramid(samples);
  EXPECT_EQ(RangeOf(pyramid, samples, 0, 1000).max, 3.0F);
  EXPECT_TRUE(RangeOf(pyramid, samples, 0, 500).empty);
}

}  // namespace
}  // namespace zelvane
