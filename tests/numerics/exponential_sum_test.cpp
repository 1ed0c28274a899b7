// Exponential decays at the times of samples: the quick form against one exponential a point.
#include "numerics/exponential_sum.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zelvane {
namespace {

/// Returns the times of samples in two stretches, late in a record, where 32-bit times are coarse.
DecayTimes LateTimes(float interval) {
  std::vector<int> sample(300);
  std::vector<float> x(sample.size());
  for (std::size_t i = 0; i < sample.size(); ++i) {
    const int k = static_cast<int>(i);
    sample[i] = 70'000 + (k < 31 ? k : 30 + (k - 30) * 20);
    x[i] = interval * static_cast<float>(sample[i]);
  }
  return PrepareTimes(x, sample, static_cast<double>(interval));
}

TEST(ExponentialSumTest, BlocksGiveTheDecayOfEachTime) {
  const DecayTimes times = LateTimes(0.01F);
  EXPECT_GT(times.largestDeviation, 1e-6) << "rounding of the times is part of the test";
  std::vector<double> quick(times.time.size());
  std::vector<double> plain(times.time.size());
  for (const double tau : {1e-4, 0.01, 0.37, 5.0, 812.0, 1e9, 0.0, std::nan("")}) {
    SCOPED_TRACE(tau);
    DecayAt(times, tau, quick);
    PlainDecayAt(times, tau, plain);
    EXPECT_TRUE(quick[0] == 1.0);
    for (std::size_t i = 0; i < quick.size(); ++i) {
      if (std::isnan(tau) && i > 0)
        EXPECT_TRUE(std::isnan(quick[i]));
      else
        EXPECT_NEAR(quick[i], plain[i], 1e-9 * plain[i]) << i;
    }
  }
}

}  // namespace
}  // namespace zelvane
