#include "numerics/spline.h"

#include <gtest/gtest.h>

#include <vector>

namespace zelvane {
namespace {

TEST(SplineToSamplesTest, MatchesAHandComputedPiece) {
  // Knots (0, 0), (1, 1), interval 1: both slopes are 1, which gives a straight line. With interval 2 both
  // slopes are 1/2, and the cubic through both knots is t / 2 + 3 t^2 / 2 - t^3. It gives the knots at t = 0
  // and t = 1, and t = 2 has the last knot's value.
  const std::vector<double> times{0.0, 1.0};
  const std::vector<double> values{0.0, 1.0};
  std::vector<float> samples(3);
  SplineToSamples(times, values, 0.25, samples);
  // Slopes 4 at both ends: 4 t - 9 t^2 + 6 t^3 at 0.25 and 0.5.
  EXPECT_NEAR(samples[1], 4 * 0.25 - 9 * 0.0625 + 6 * 0.015625, 1e-6);
  EXPECT_NEAR(samples[2], 0.5, 1e-6);
  SplineToSamples(std::vector<double>{0.0}, std::vector<double>{0.7}, 1.0, samples);
  EXPECT_FLOAT_EQ(samples[2], 0.7F);
}

}  // namespace
}  // namespace zelvane
