// The factor of the stimulus in a rate.
#include "kinetics/rate_factor.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zelvane {
namespace {

constexpr StimulusValues Applied{-0.06F, 1e-5F, 2e-5F};
constexpr float Temperature = 25.0F;

class RateFactorTest : public ::testing::Test {
 protected:
  RateFactorTest() { depend.Steepness[1][2] = 1.0F; }
  float Factor(int from, int to, const StimulusValues& stimulus = Applied) const {
    return RateFactor(depend, Temperature, from, to, stimulus);
  }
  DependenceTables depend;
};

TEST_F(RateFactorTest, VoltageActsThroughAPureExponential) {
  depend.Volt[1][2] = 1;
  EXPECT_NEAR(Factor(1, 2), std::exp(-0.06 * 11603.0 / 298.16), 1e-8);
  EXPECT_NEAR(Factor(1, 2), 0.0968, 5e-5);
  EXPECT_EQ(Factor(1, 2, {}), 1.0F) << "at 0 V the rate is the entered one";
  EXPECT_EQ(Factor(2, 1), 1.0F) << "the way back has its own settings";
  depend.Volt[1][2] = 2;
  EXPECT_EQ(Factor(1, 2), 1.0F) << "a flag of two selects nothing";
}

TEST_F(RateFactorTest, DrugsMultiplyInFloatsAndAnAbsentOneStopsTheRate) {
  depend.Volt[1][2] = 1;
  depend.Drug[1][1][2] = 1;
  depend.Drug[2][1][2] = 5;  // any value except 0
  const float drugs = 1e-5F * 2e-5F;
  const double exponential = std::exp(static_cast<double>(-0.06F) * VoltageCoefficient(1.0F, Temperature));
  EXPECT_EQ(Factor(1, 2), static_cast<float>(static_cast<double>(drugs) * exponential));
  depend.Drug[3][1][2] = 1;
  EXPECT_EQ(Factor(1, 2), 0.0F);
}

}  // namespace
}  // namespace zelvane
