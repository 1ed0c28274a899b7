#include "numerics/rounding.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>

#include "screen/popups.h"

namespace zelvane {
namespace {

TEST(RoundCountTest, IsRoundedToTwoDecimalsThenCutAndHeldToItsRange) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  using Case = std::pair<double, int>;
  for (const auto& [value, count] :
       {Case{-0.5, 0}, Case{-2.999, -3}, Case{2147483646.25, 2147483646}, Case{1e300, INT_MAX},
        Case{Infinity, INT_MAX}, Case{-Infinity, INT_MIN}, Case{std::nan(""), 0}}) {
    EXPECT_EQ(RoundCount(value), count) << value;
  }
}

TEST(RoundCountTest, AgreesWithPrintedText) {
  // Thousandths of a count, as doubles and as floats: in decimal each is half-way, in binary not.
  for (int thousandths = 0; thousandths < 5000; ++thousandths) {
    for (const double value :
         {thousandths / 1000.0, static_cast<double>(static_cast<float>(thousandths) / 1000.0F)}) {
      EXPECT_EQ(RoundCount(value), std::stoi(FormatText("%.2f", value))) << value;
    }
  }
}

}  // namespace
}  // namespace zelvane
