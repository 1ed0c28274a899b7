// Bounds and forced values of the run settings.
#include <climits>
#include <limits>

#include "model/model.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using RunLimitsTest = StoreTest;

TEST_F(RunLimitsTest, ACountIsRoundedToTwoDecimalsThenCut) {
  struct Case {
    double value;
    int count;
  };
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const Case& c :
       {Case{2.999, 3}, Case{2.994, 2}, Case{1.995, 2}, Case{1.994, 1}, Case{0.0, 0}, Case{0.99, 0},
        Case{-0.5, 0}, Case{-2.999, -3}, Case{100.0, 100}, Case{2147483646.25, 2147483646},
        Case{2147483646.999, INT_MAX}, Case{1e300, INT_MAX}, Case{-1e300, INT_MIN}, Case{infinity, INT_MAX},
        Case{-infinity, INT_MIN}, Case{std::numeric_limits<double>::quiet_NaN(), 0}}) {
    EXPECT_EQ(RoundCount(c.value), c.count) << c.value;
  }
  EXPECT_EQ(RoundCount(1.995F), 2);
  EXPECT_EQ(RoundCount(1.994F), 1);
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

TEST_F(RunLimitsTest, TooManyPointsBecomeTheLimit) {
  Model.NumPoints = 5'000'001;
  LimitNumPoints();
  EXPECT_EQ(Model.NumPoints, 5'000'001);
  Model.NumPoints = 5'000'002;
  LimitNumPoints();
  EXPECT_EQ(Model.NumPoints, 5'000'000);
}

TEST_F(RunLimitsTest, SubunitsForceTheSettingsOfRepeatedRuns) {
  Model.NumRuns = 5;
  Model.StartAtEquilibrium = 1;
  Model.AutoAnalyze = 1;
  Model.MultiSubunit = 0;
  ForceMultiSubunit();
  EXPECT_EQ(Model.NumRuns, 5);
  EXPECT_EQ(Model.ReseedSimulation, 1);
  Model.MultiSubunit = 1;
  ForceMultiSubunit();
  EXPECT_EQ(Model.NumRuns, 1);
  for (const int forced : {Model.StartAtEquilibrium, Model.NumIntervals, Model.ReseedSimulation,
                           Model.AutoAnalyze, Model.ShowAllTraces}) {
    EXPECT_EQ(forced, 0);
  }
}

}  // namespace
}  // namespace zelvane
