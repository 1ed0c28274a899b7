// Bounds and forced values of the run settings.
#include <climits>
#include <limits>

#include "model/model.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using RunLimitsTest = StoreTest;

TEST_F(RunLimitsTest, ACountIsRoundedToTwoDecimalsThenCutAndHeldToItsRange) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  for (const auto& [value, count] : {std::pair{-0.5, 0},
                                     {-2.999, -3},
                                     {2147483646.25, 2147483646},
                                     {1e300, INT_MAX},
                                     {Infinity, INT_MAX},
                                     {-Infinity, INT_MIN},
                                     {std::numeric_limits<double>::quiet_NaN(), 0}}) {
    EXPECT_EQ(RoundCount(value), count) << value;
  }
}

TEST_F(RunLimitsTest, ACountAgreesWithPrintedText) {
  // Thousandths of a count, as doubles and as floats: each is a tie in decimal, none in binary.
  for (int thousandths = 0; thousandths < 5000; ++thousandths) {
    for (const double value :
         {thousandths / 1000.0, static_cast<double>(static_cast<float>(thousandths) / 1000.0F)}) {
      EXPECT_EQ(RoundCount(value), std::stoi(FormatText("%.2f", value))) << value;
    }
  }
}

}  // namespace
}  // namespace zelvane
