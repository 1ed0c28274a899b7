// From occupancies to the trace: units, monitored states, noise, what is cleared.
#include <cmath>

#include "noise/noise_store.h"
#include "sim/random.h"
#include "sim/run_fixtures.h"

namespace zelvane {
namespace {

class RunTraceTest : public RunTest {
 protected:
  /// As after a run: 10 points, states 1 and 2 occupied by 0.1 and 0.2, 100 channels at -60 mV.
  RunTraceTest() {
    Model.NumPoints = 10;
    Model.NumChannels = 100;
    Result.EffectiveChannels = 100.0F;
    Model.StateMonitored[1] = 1;
    Model.StateMonitored[2] = 0;
    Model.StateConductance[1] = 50.0F;
    std::fill_n(Stimulus.Profile[0].begin(), 20, -0.06F);
    Fill(1, 0.1F);
    Fill(2, 0.2F);
    Show();
  }

  static void Fill(int state, float occupancy) {
    std::fill_n(Result.Occupancy[state].begin() + 1, Model.NumPoints, occupancy);
    Result.OccupancyUsed[state] = Model.NumPoints + 1;
  }
};

TEST_F(RunTraceTest, ConvertsToTheFourUnits) {
  struct Case {
    int units;
    float expected;
  };
  for (const Case& c : {Case{UnitsChannels, 10.0F}, Case{UnitsConductance, 500.0F},
                        Case{UnitsCurrent, -30.0F}, Case{UnitsProbability, 0.1F}}) {
    SCOPED_TRACE(c.units);
    Model.DisplayUnits = c.units;
    Show();
    ConvertTrace(true);
    for (int p = 0; p < 10; ++p)
      EXPECT_NEAR(Trace.SimTrace[p], c.expected, 1e-6F * std::abs(c.expected)) << p;
    EXPECT_EQ(Trace.SimTrace[10], 0.0F);
  }
}

TEST_F(RunTraceTest, CurrentFollowsReversalPotentialAndValence) {
  Model.DisplayUnits = UnitsCurrent;
  Model.VRev = -80.0F;
  Model.Valence = 2;
  Show();
  ConvertTrace(true);
  EXPECT_NEAR(Trace.SimTrace[0], 20e-3F * 2.0F * 500.0F, 1e-4F);
}

TEST_F(RunTraceTest, PointPGoesWithVoltagePToSamplePLess1) {
  Model.DisplayUnits = UnitsCurrent;
  Stimulus.Profile[0][0] = 1.0F;
  Stimulus.Profile[0][10] = 0.04F;
  Result.Occupancy[1][1] = 0.5F;
  Show();
  ConvertTrace(true);
  EXPECT_NEAR(Trace.SimTrace[0], -0.06F * 50.0F * 100.0F * 0.5F, 1e-4F);
  EXPECT_NEAR(Trace.SimTrace[9], 0.04F * 50.0F * 100.0F * 0.1F, 1e-4F);
}

TEST_F(RunTraceTest, SumsTheMonitoredStates) {
  Model.DisplayUnits = UnitsProbability;
  Model.StateMonitored[2] = 1;
  Show();
  ConvertTrace(true);
  EXPECT_EQ(Trace.SimTrace[3], 0.1F + 0.2F);
}

TEST_F(RunTraceTest, TakesTheLongestRunWithoutReadingPastTheVoltage) {
  Model.DisplayUnits = UnitsCurrent;
  Model.NumPoints = MaxStimPoints;
  Stimulus.Profile[0].back() = -0.06F;
  Result.Occupancy[1][MaxStimPoints] = 0.1F;
  Result.OccupancyUsed[1] = MaxStimPoints + 1;
  Show();
  ConvertTrace(true);
  EXPECT_NEAR(Trace.SimTrace[MaxStimPoints - 1], -30.0F, 1e-4F);
}

TEST_F(RunTraceTest, AShortRunAfterALongOneLeavesZerosBehindIt) {
  Model.StartOccupancy[1] = 1.0F;
  Model.NumPoints = 500;
  RunAsSet();
  ASSERT_NE(Trace.SimTrace[499], 0.0F);
  Model.NumPoints = 50;
  RunAsSet();
  EXPECT_NE(Trace.SimTrace[49], 0.0F);
  for (int p = 50; p < 500; ++p) ASSERT_EQ(Trace.SimTrace[p], 0.0F) << p;
  EXPECT_EQ(Noise.RecordPoints, 50);
}

TEST_F(RunTraceTest, ClearingReachesAsFarAsItIsTold) {
  Fill(1, 0.1F);
  ClearOccupancy(4);
  EXPECT_EQ(Result.Occupancy[1][4], 0.0F);
  EXPECT_EQ(Result.Occupancy[1][5], 0.1F);
  EXPECT_EQ(Result.OccupancyUsed[1], 11);
  ClearOccupancy(10);
  EXPECT_EQ(Result.Occupancy[1][10], 0.0F);
  EXPECT_EQ(Result.OccupancyUsed[1], 0);
}

TEST_F(RunTraceTest, NoiseHasTheStandardDeviationAskedFor) {
  SetSeeds({{1.0, 2.0, 3.0}});
  Model.NumPoints = 20000;
  Model.StateMonitored[1] = 0;
  Model.AutoNoise = 1;
  Model.AutoNoiseSTD = 3.0F;
  Show();
  ConvertTrace(true);
  double squares = 0.0;
  for (int p = 0; p < Model.NumPoints; ++p) squares += std::pow(static_cast<double>(Trace.SimTrace[p]), 2);
  EXPECT_NEAR(std::sqrt(squares / 20000.0), 3.0, 0.06);  // standard error 3 / sqrt(2 x 20000) = 0.015
  EXPECT_EQ(Trace.SimTrace[20000], 0.0F);
}

TEST_F(RunTraceTest, FiltersTheNoiseAndNotOnlyTheResponse) {
  SetSeeds({{1.0, 2.0, 3.0}});
  Model.NumPoints = 20000;
  Noise.RecordPoints = 20000;
  Model.StateMonitored[1] = 0;
  Model.AutoNoise = Model.AutoFilter = 1;
  Model.AutoFilterFc = 2.0F;
  Show();
  ConvertTrace(true);
  double squares = 0.0;
  for (int p = 1000; p < 19000; ++p) squares += std::pow(static_cast<double>(Trace.SimTrace[p]), 2);
  EXPECT_LT(std::sqrt(squares / 18000.0),
            0.3);  // a corner of 1/50 of the sampling rate leaves some 0.2 of it
}

TEST_F(RunTraceTest, PlotsInTheColourOfTheSimulator) {
  struct Case {
    int kind;
    Colour colour;
  };
  for (const Case& c : {Case{MonteCarlo, {0, 0, 0}}, Case{FixedStepIntegrator, {0, 0, 128}},
                        Case{AdaptiveIntegrator, {128, 0, 0}}}) {
    SCOPED_TRACE(c.kind);
    Model.SimulatorKind = c.kind;
    Show();
    ConvertTrace(true);
    const Graph& graph = GraphNamed("MainPanel");
    ASSERT_EQ(graph.plots.size(), 1U);
    EXPECT_EQ(graph.plots[0].colour.red, c.colour.red);
    EXPECT_EQ(graph.plots[0].colour.blue, c.colour.blue);
    EXPECT_EQ(graph.plots[0].y.size(), 10U);
    EXPECT_NEAR(graph.fullXMax, 0.09, 1e-6);
  }
}

TEST_F(RunTraceTest, RefreshShowsOtherStatesInPlaceOfTheFormer) {
  Model.DisplayUnits = UnitsProbability;
  Show();
  ConvertTrace(false);
  ASSERT_TRUE(Enter("StateMonitored[1]", "0").empty());
  ASSERT_TRUE(Enter("StateMonitored[2]", "1").empty());
  Commit(ControlNamed("SimRefresh"));
  EXPECT_EQ(Trace.SimTrace[5], 0.2F);
  EXPECT_EQ(GraphNamed("MainPanel").plots.size(), 1U);
}

TEST_F(RunTraceTest, RefreshRefusesAResampledTrace) {
  Trace.TraceParsed = 1;
  Commit(ControlNamed("SimRefresh"));
  EXPECT_EQ(
      popups,
      (std::vector<SeenPopup>{{"! Warning", "Cannot refresh since data has been parsed (resampled)."}}));
  EXPECT_EQ(Trace.SimTrace[5], 0.0F);
}

TEST_F(RunTraceTest, RefreshAsksBeforeItGivesUpACorrection) {
  for (const bool answer : {false, true}) {
    Trace.RsCorrected = 1;
    answers = {answer};
    Commit(ControlNamed("SimRefresh"));
    EXPECT_EQ(popups.back().text, "Refreshing will remove RsCm correction. Do you want to continue?");
    EXPECT_EQ(Trace.SimTrace[5] != 0.0F, answer);
    EXPECT_EQ(Trace.RsCorrected, answer ? 0 : 1);
  }
}

TEST_F(RunTraceTest, RefreshKeepsTheTraceOfSubunits) {
  Model.MultiSubunit = 1;
  Result.ResultKind = ResultMonteCarlo;
  Trace.SimTrace[5] = 42.0F;
  Trace.SimTraceUsed = 10;
  Show();
  Commit(ControlNamed("SimRefresh"));
  EXPECT_EQ(Trace.SimTrace[5], 42.0F);
  EXPECT_EQ(GraphNamed("MainPanel").plots.at(0).y[5], 42.0F);
}

}  // namespace
}  // namespace zelvane
