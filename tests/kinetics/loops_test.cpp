// Products of the rates around a loop, and the rate that balances them.
#include "kinetics/loops.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace zelvane {
namespace {

using States = std::vector<int>;

class LoopsTest : public ::testing::Test {
 protected:
  /// Rates of every pair: from + to / 4 forwards, half of this back. All products are exact.
  LoopsTest() {
    for (int s = 1; s <= MaxStates; ++s) {
      for (int t = 1; t <= MaxStates; ++t) {
        rates[s][t] = (s < t ? 1.0F : 0.5F) * (static_cast<float>(s) + static_cast<float>(t) / 4.0F);
      }
    }
  }
  LoopProducts Loop(const States& states, int from, int to) const {
    return MultiplyLoop(rates, states, from, to);
  }
  StateTable<float> rates{};
};

TEST_F(LoopsTest, TheProductsLeaveTheConstrainedRateOut) {
  rates[1][2] = 10.0F;
  rates[2][3] = 20.0F;
  rates[2][1] = 2.0F;
  rates[3][2] = 4.0F;
  rates[1][3] = 5.0F;
  const LoopProducts closing = Loop({1, 2, 3, 0, 7}, 3, 1);  // states after the 0 do not count
  EXPECT_EQ(closing.forward, 10.0 * 20.0);
  EXPECT_EQ(closing.backward, 2.0 * 4.0 * 5.0);
  EXPECT_TRUE(closing.inForward && !closing.inBackward && WellFormed(closing));
  EXPECT_EQ(BalancingRate(closing), 0.2F);
  rates[3][1] = BalancingRate(closing);
  const LoopProducts back = Loop({1, 2, 3}, 1, 3);
  EXPECT_TRUE(!back.inForward && back.inBackward && WellFormed(back));
  EXPECT_FLOAT_EQ(BalancingRate(back), 5.0F) << "the other direction of a balanced loop";
}

TEST_F(LoopsTest, EightStatesCloseFromTheLastToTheFirst) {
  const States eight{1, 2, 3, 4, 5, 6, 7, 8};
  const LoopProducts loop = Loop(eight, 8, 1);
  double forward = 1.0;
  double backward = static_cast<double>(rates[1][8]);
  for (int s = 1; s < 8; ++s) {
    forward *= static_cast<double>(rates[s][s + 1]);
    backward *= static_cast<double>(rates[s + 1][s]);
  }
  EXPECT_DOUBLE_EQ(loop.forward, forward);
  EXPECT_DOUBLE_EQ(loop.backward, backward);
  EXPECT_TRUE(loop.inForward && WellFormed(loop));
}

TEST_F(LoopsTest, ALoopThatDoesNotDetermineItsRateIsNotWellFormed) {
  EXPECT_FALSE(WellFormed(Loop({1, 2, 3}, 4, 5))) << "not on the cycle";
  EXPECT_FALSE(WellFormed(Loop({1, 2, 3, 1, 2, 1, 3, 2}, 1, 2))) << "on the cycle in both directions";
  EXPECT_FALSE(WellFormed(Loop({1, 2}, 1, 2))) << "the way there and back is no cycle";
  EXPECT_FALSE(WellFormed(Loop({}, 1, 1)));
  EXPECT_FALSE(WellFormed(Loop({1}, 1, 1)));
  EXPECT_FALSE(WellFormed(Loop({1, 2, 21}, 1, 2))) << "no state";
  EXPECT_FALSE(WellFormed(Loop({-1, 1, 2}, 1, 2)));
  EXPECT_TRUE(WellFormed(Loop({1, 2, 3}, 1, 2)));
  for (const float bad :
       {0.0F, -1.0F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    rates[2][3] = bad;
    EXPECT_FALSE(WellFormed(Loop({1, 2, 3}, 1, 2))) << bad;
    EXPECT_FALSE(WellFormed(Loop({3, 2, 1}, 1, 2))) << bad;
  }
}

}  // namespace
}  // namespace zelvane
