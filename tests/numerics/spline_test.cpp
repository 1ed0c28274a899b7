#include "numerics/spline.h"

#include <gtest/gtest.h>

#include <vector>

namespace zelvane {
namespace {

TEST(SplineToSamplesTest, MatchesTwoHandComputedPieces) {
  // Knots (0, 0), (1, 1), (3, 0). The slopes at the ends are those of the lines, 1 and -1/2, so the second
  // derivatives are 1, -2 and 1. Each middle lies a sixth of 3/8 of the width squared above its line.
  const std::vector<double> times{0.0, 1.0, 3.0};
  const std::vector<double> values{0.0, 1.0, 0.0};
  std::vector<float> samples(8);
  for (const double interval : {0.5, 0.25}) {  // the slopes do not depend on it
    SplineToSamples(times, values, interval, samples);
    const auto at = [&](double t) { return samples[static_cast<std::size_t>(t / interval)]; };
    EXPECT_NEAR(at(0.5), 0.5625, 1e-6);
    EXPECT_FLOAT_EQ(at(1.0), 1.0F);
    if (interval < 0.5) continue;
    EXPECT_NEAR(at(2.0), 0.75, 1e-6);
    EXPECT_FLOAT_EQ(at(3.5), 0.0F) << "the value of the last knot";
  }
  SplineToSamples(std::vector<double>{0.0}, std::vector<double>{0.7}, 1.0, samples);
  EXPECT_FLOAT_EQ(samples[2], 0.7F);
}

}  // namespace
}  // namespace zelvane
