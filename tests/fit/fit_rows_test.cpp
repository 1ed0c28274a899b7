// The rows of a fit of rates: order, limits, and what makes a row fixed.
#include "fit/fit_rows.h"

#include <gtest/gtest.h>

#include "model/constraints_store.h"
#include "model/model_store.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

class FitRowsTest : public StoreTest {
 protected:
  FitRowsTest() {
    for (const std::size_t state : {1U, 2U, 6U}) Model.StateOn[state] = 1;
    Model.KOn[1] = 20.0;
    Model.KOff[1] = -8.0;
    Model.KOn[5] = 3e6;
    Model.KOff[5] = 0.5;
  }
};

TEST_F(FitRowsTest, EveryLinkBetweenStatesThatAreOnHasTwoRowsForwardFirst) {
  ASSERT_EQ(WaveFitRowsBuild(RowLimits::Follow), Outcome::Done);
  const std::vector<FitRow> rows = FitRowsInUse();
  ASSERT_EQ(rows.size(), 4U);
  const std::array<std::array<int, 3>, 4> expected = {{{1, 1, 2}, {-1, 2, 1}, {5, 1, 6}, {-5, 6, 1}}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ((std::array{rows[i].code, rows[i].from, rows[i].to}), expected[i]);
    EXPECT_EQ(rows[i].row, static_cast<int>(i) + 1);
  }
  EXPECT_EQ(RateOf(-1), 8.0);
  PutRate(-5, -0.25);
  EXPECT_EQ(Model.KOff[5], 0.25);
}

TEST_F(FitRowsTest, RowsOfTheTableAreItsRatesAboveZeroAndNoMoreThanTheTableOfParametersHolds) {
  Fit.FitModelIs2D = 0;
  Model.TableRate[2][1] = 7.5F;
  Model.TableRate[19][20] = 3.0F;
  Model.TableRate[4][5] = -3.0F;
  Model.TableRate[3][3] = 3.0F;  // a file can have it
  ASSERT_EQ(WaveFitRowsBuild(RowLimits::Follow), Outcome::Done);
  EXPECT_EQ(Fit.RowCode[1], 10201);
  EXPECT_EQ(Fit.RowCode[2], 11920);
  EXPECT_EQ(Fit.RowCode[3], 0);
  EXPECT_EQ(RateOf(10201), 7.5);
  PutRate(11920, -0.1);
  EXPECT_EQ(Model.TableRate[19][20], 0.1F);
  EXPECT_EQ(Model.ModelIs2D, 0);
  EXPECT_EQ(Model.RateMatrix[2][1], 7.5F);

  for (std::size_t to = 1; to <= 20; ++to) {
    for (std::size_t from = 1; from <= 4; ++from) Model.TableRate[from][to] = 1.0F;
  }
  EXPECT_EQ(WaveFitRowsBuild(RowLimits::Follow), Outcome::Refused);
  ASSERT_EQ(popups.size(), 1U);
  EXPECT_EQ(FitRowsInUse().size(), 72U);
}

TEST_F(FitRowsTest, LimitsFollowTheRatesOnlyWhereTheyMay) {
  Fit.AutoGenFitLims = 1;
  Fit.FitLimsXFold = 0.0F;
  Fit.WaveFitLimits[2] = {1.0, 5.0};
  WaveFitRowsBuild(RowLimits::Keep);
  EXPECT_EQ(Fit.WaveFitLimits[2].hi, 5.0);
  WaveFitRowsBuild(RowLimits::Follow);
  EXPECT_EQ(Fit.FitLimsXFold, 2.0F);
  EXPECT_EQ(Fit.WaveFitLimits[2].lo, 4.0);
  EXPECT_EQ(Fit.WaveFitLimits[2].hi, 16.0);
}

TEST_F(FitRowsTest, TheUsersOwnFlagComesBackWhenNothingForcesTheRate) {
  WaveFitRowsBuild(RowLimits::Keep);
  FixRow(2, true);
  Constraints.Rate[60] = {.Enabled = 1, .TargetFrom = 1, .TargetTo = 6, .SourceFrom = 1, .SourceTo = 2};
  Constraints.Loop[40].RateFrom = 2;  // a loop that is off forces nothing
  Constraints.Loop[40].RateTo = 1;
  WaveFitRowsBuild(RowLimits::Keep);
  EXPECT_EQ(RowSetBy(3), RowSetter::Constraint);
  EXPECT_EQ((std::array{RowIsForced(1), RowIsForced(2), RowIsForced(3)}), (std::array{false, false, true}));
  EXPECT_EQ((std::array{Fit.WaveFitFixed[1], Fit.WaveFitFixed[2], Fit.WaveFitFixed[3]}),
            (std::array{0, 1, 1}));
  FixRow(3, true);  // not while it is forced
  Constraints.Rate[60].Enabled = 0;
  Constraints.Loop[40].Enabled = 1;
  FixRow(2, false);
  EXPECT_EQ(RowSetBy(2), RowSetter::Loop);
  EXPECT_TRUE(RowIsFixed(2));
  WaveFitRowsBuild(RowLimits::Keep);
  EXPECT_EQ(Fit.WaveFitFixed[3], 0);
  EXPECT_EQ(Fit.WaveFitOwnFixed[2], 1);
}

}  // namespace
}  // namespace zelvane
