// The factor that the stimulus puts on a rate.
#include "model/rate_dependence.h"

#include <cmath>

#include "stimulus/stimulus_store.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

constexpr int Point = 4321;

class RateDependenceTest : public StoreTest {
 protected:
  RateDependenceTest() {
    Stimulus.Profile[0][Point] = -0.06F;
    Stimulus.Profile[1][Point] = 1e-5F;
    Stimulus.Profile[2][Point] = 2e-5F;
    Model.Depend.Steepness[1][2] = 1.0F;
  }
};

TEST_F(RateDependenceTest, VoltageActsThroughAPureExponential) {
  Model.Depend.Volt[1][2] = 1;
  EXPECT_NEAR(StimulusFactor(1, 2, Point), std::exp(-0.06 * 11603.0 / 298.16), 1e-8);
  EXPECT_NEAR(StimulusFactor(1, 2, Point), 0.0968, 5e-5);
  EXPECT_EQ(StimulusFactor(1, 2, 0), 1.0F) << "at 0 V the rate is the entered one";
  EXPECT_EQ(StimulusFactor(2, 1, Point), 1.0F) << "the way back has its own settings";
  Model.Depend.Volt[1][2] = 2;
  EXPECT_EQ(StimulusFactor(1, 2, Point), 1.0F) << "a flag of two selects nothing";
}

TEST_F(RateDependenceTest, DrugsMultiplyInFloatsAndAnAbsentOneStopsTheRate) {
  Model.Depend.Volt[1][2] = 1;
  Model.Depend.Drug[1][1][2] = 1;
  Model.Depend.Drug[2][1][2] = 5;  // any value but 0
  const float drugs = 1e-5F * 2e-5F;
  const double exponential = std::exp(static_cast<double>(-0.06F) * VoltageCoefficient(1.0F, 25.0F));
  EXPECT_EQ(StimulusFactor(1, 2, Point), static_cast<float>(static_cast<double>(drugs) * exponential));
  Model.Depend.Drug[3][1][2] = 1;
  EXPECT_EQ(StimulusFactor(1, 2, Point), 0.0F);
}

}  // namespace
}  // namespace zelvane
