// The loop over runs, intervals and channels, driven with a channel that stays where it starts.
#include <climits>
#include <cmath>

#include "sim/run_fixtures.h"

namespace zelvane {
namespace {

class RunMonteCarloTest : public RunTest {
 protected:
  RunMonteCarloTest() { Model.SimulatorKind = MonteCarlo; }
};

TEST_F(RunMonteCarloTest, SaysThatSingleChannelsCannotBeSimulated) {
  SimulateChannel = nullptr;
  RunAsSet();
  ASSERT_EQ(popups.size(), 1U);
  EXPECT_EQ(popups[0].title, "! Warning");
  EXPECT_EQ(Trace.TraceValid, 0);
}

TEST(MonteCarloRules, ChannelsStartInProportionToOccupancy) {
  struct Case {
    int channels;
    float occupancy;
    int starting;
  };
  for (const Case& c : {Case{3, 0.5F, 2}, Case{3, 0.49F, 1}, Case{1, 0.5F, 1}, Case{10, 0.0F, 0},
                        Case{10, -0.3F, 0}, Case{10, NAN, 0}, Case{2, 1e30F, INT_MAX}}) {
    EXPECT_EQ(ChannelsStartingIn(c.channels, c.occupancy), c.starting) << c.channels << " x " << c.occupancy;
  }
}

TEST(MonteCarloRules, ChannelsOfARunAreCutAtTwoDecimals) {
  struct Case {
    int channels;
    float deviation;
    int count;
  };
  for (const Case& c : {Case{100, 0.0F, 100}, Case{-7, 0.0F, 7}, Case{100, -2.25F, 97}, Case{2, -5.0F, 3},
                        Case{1, 0.999F, 2}, Case{1, 0.25F, 1}}) {
    EXPECT_EQ(ChannelsOfRun(c.channels, c.deviation), c.count) << c.channels << " + " << c.deviation;
  }
}

TEST(MonteCarloRules, TheNextSweepStartsFrom100PointsBeforeTheEnd) {
  EXPECT_EQ(ReseedPoint(10240), 10140);
  EXPECT_EQ(ReseedPoint(100), 0);
  EXPECT_EQ(ReseedPoint(99), 99);
}

TEST_F(RunMonteCarloTest, EveryRunButTheLastIsFollowedByItsIntervals) {
  Model.NumRuns = 3;
  Model.NumIntervals = 2;
  RunAsSet();
  EXPECT_EQ(SimulatedChannels.size(), 3U + 3U + 1U);
  EXPECT_EQ(Result.RunText, "Run 3 of 3 with 0.01s interval (sec 0)");  // 3 x 200 x 0.01 ms
}

TEST_F(RunMonteCarloTest, ChannelsStartSortedByState) {
  Model.NumChannels = 3;
  Model.StartOccupancy[1] = Model.StartOccupancy[2] = 0.5F;
  RunAsSet();
  EXPECT_EQ(SimulatedChannels, (std::vector<int>{1, 1, 2, 2}));
  EXPECT_NEAR(Trace.SimTrace[0], 2.0F * 50.0F, 1e-4F);  // two open channels of 50 pS
  EXPECT_EQ(Result.EffectiveChannels, 3.0F);
}

std::vector<std::array<float, 2>> RatesSeen;
ChannelOutcome StayingRateWatcher(int startState) {
  RatesSeen.push_back({Model.RateMatrix[1][2], Model.RateMatrix[2][1]});
  return StayingChannel(startState);
}

TEST_F(RunMonteCarloTest, IntervalsRunWithoutAgonistAndItsRatesComeBack) {
  RatesSeen.clear();
  SimulateChannel = StayingRateWatcher;
  Model.Depend.Drug[3][1][2] = 1;
  Model.Depend.Volt[2][1] = 1;
  Model.NumRuns = 2;
  Model.NumIntervals = 2;
  RunAsSet();
  const std::array<float, 2> during{1000.0F, 500.0F}, between{0.0F, 500.0F};
  EXPECT_EQ(RatesSeen, (std::vector<std::array<float, 2>>{during, between, between, during}));
}

/// Moves from state 1 to state 2 at the end of a sweep.
ChannelOutcome MovingChannel(int startState) {
  StayingChannel(startState);
  SimulatedChannels.back() = startState;
  const int point = ReseedPoint(Model.NumPoints);
  Result.Occupancy[startState][point] = 0.0F;
  Result.Occupancy[2][point] = 1.0F;
  Result.OccupancyUsed[2] = std::max(Result.OccupancyUsed[2], point + 1);
  return ChannelOutcome::Unmonitored;
}

TEST_F(RunMonteCarloTest, FinalOccupanciesStartTheNextRunWhenReseededAndElseOnlyTheIntervals) {
  SimulateChannel = MovingChannel;
  Model.NumRuns = 2;
  Model.NumIntervals = 1;
  RunAsSet();
  EXPECT_EQ(SimulatedChannels, (std::vector<int>{1, 2, 2}));
  EXPECT_EQ(Model.StartOccupancy[1], 1.0F);
  EXPECT_EQ(Model.StartOccupancy[2], 0.0F);
  SimulatedChannels.clear();
  Model.NumIntervals = 0;
  Model.ReseedSimulation = 1;
  RunAsSet();
  EXPECT_EQ(SimulatedChannels, (std::vector<int>{1, 2}));
  EXPECT_EQ(Model.StartOccupancy[2], 1.0F);
  EXPECT_EQ(Trace.TraceValid, 0);  // no channel reached a monitored state
}

TEST_F(RunMonteCarloTest, AStopLeavesTheTraceInvalid) {
  Model.NumChannels = 100;
  Model.StartOccupancy[1] = 0.0F;
  Model.StartOccupancy[2] = 1.0F;
  onPump = [](int call) {
    if (call == 3) Commit(ControlNamed("StopRun"));
  };
  Show();
  Commit(ControlNamed("Run"));
  EXPECT_EQ(popups.back(), (SeenPopup{"!", "Simulation Interrupted by User"}));
  EXPECT_EQ(SimulatedChannels.size(), 10U);  // asked at 0, 5 and 10 of 100
  EXPECT_EQ(Trace.TraceValid, 0);
  popups.clear();
  onPump = nullptr;
  Commit(ControlNamed("Run"));
  EXPECT_TRUE(popups.empty());
  EXPECT_EQ(Trace.TraceValid, 1);
}

TEST_F(RunMonteCarloTest, TracesOfManyRunsAreSuperimposedOnlyWhenAskedFor) {
  Model.NumRuns = 3;
  Model.ShowAllTraces = 1;
  RunAsSet();
  EXPECT_EQ(GraphNamed("MainPanel").plots.size(), 3U);
  Model.ShowAllTraces = 0;
  RunAsSet();
  EXPECT_EQ(GraphNamed("MainPanel").plots.size(), 1U);
}

TEST_F(RunMonteCarloTest, SubunitsAddUpToOneTrace) {
  // Three subunits in state 2, each alone at its point: k = 1, so conductance 1 counts (20 pS) three times.
  Model.StateConductance[0] = 7.0F;
  Model.StateConductance[1] = 20.0F;
  Model.MultiSubunit = 1;
  Model.NumChannels = 3;
  Model.StartOccupancy[1] = 0.0F;
  Model.StartOccupancy[2] = 1.0F;
  std::fill_n(Stimulus.Profile[0].begin(), 300, -0.06F);
  for (const auto& [units, expected] : {std::pair{UnitsChannels, 3.0F},
                                        {UnitsProbability, 1.0F},
                                        {UnitsConductance, 60.0F},
                                        {UnitsCurrent, 60.0F * -0.06F}}) {
    Model.DisplayUnits = units;
    RunAsSet();
    for (int p = 0; p < Model.NumPoints; ++p) ASSERT_NEAR(Trace.SimTrace[p], expected, 1e-5F) << units;
    EXPECT_EQ(Model.NumRuns, 1);
    EXPECT_EQ(Model.NumChannels, 3);
    EXPECT_EQ(GraphNamed("MainPanel").plots.size(), 1U);
    EXPECT_EQ(Trace.TraceValid, 1);
  }
}

TEST_F(RunMonteCarloTest, ASubunitStartsInEveryStateThatRoundsUp) {
  Model.MultiSubunit = 1;
  Model.NumChannels = 1;
  Model.StartOccupancy[1] = Model.StartOccupancy[2] = 0.5F;
  RunAsSet();
  EXPECT_EQ(SimulatedChannels, (std::vector<int>{1, 2}));
}

}  // namespace
}  // namespace zelvane
