// The loop over runs, intervals and channels, mostly with channels that stay in their first state.
#include <climits>

#include "kinetics/dwell_recorder.h"
#include "kinetics/monte_carlo.h"
#include "run/run_fixtures.h"
#include "screen/popups.h"
#include "screen/popups_store.h"
#include "trace/trace_events.h"

namespace zelvane {
namespace {

class RunMonteCarloTest : public RunTest {
 protected:
  RunMonteCarloTest() {
    Model.SimulatorKind = MonteCarlo;
    SetRates(1e-8, 1e-8);
  }

  static void SetRates(double opening, double closing) {
    Model.KOn[1] = opening;
    Model.KOff[1] = closing;
  }

  static auto Sweeps() {
    return std::count_if(Dwell.IdealClass.begin(), Dwell.IdealClass.begin() + Dwell.NumIdealEvents,
                         [](float dwell) { return dwell == SegmentMarker; });
  }
};

// The plain form of the simulation uses these too.
TEST(MonteCarloRules, ChannelsStartInProportionAndAreCutAtTwoDecimals) {
  for (const auto& [channels, occupancy, starting] :
       {std::tuple{3, 0.5F, 2}, {3, 0.49F, 1}, {10, -0.3F, 0}, {10, NAN, 0}, {2, 1e30F, INT_MAX}}) {
    EXPECT_EQ(ChannelsStartingIn(channels, occupancy), starting) << channels << " x " << occupancy;
  }
  for (const auto& [channels, deviation, count] :
       {std::tuple{-7, 0.0F, 7}, {100, -2.25F, 97}, {2, -5.0F, 3}, {1, 0.999F, 2}, {1, 0.25F, 1}}) {
    EXPECT_EQ(ChannelsOfRun(channels, deviation), count) << channels << " + " << deviation;
  }
  EXPECT_EQ(ReseedPoint(10240), 10140);
  EXPECT_EQ(ReseedPoint(100), 0);
  EXPECT_EQ(ReseedPoint(99), 98);
  EXPECT_EQ(ReseedPoint(1), 0);
}

TEST_F(RunMonteCarloTest, EveryRunButTheLastIsFollowedByItsIntervals) {
  Model.NumRuns = 3;
  Model.NumIntervals = 2;
  RunAsSet();
  EXPECT_EQ(Sweeps(), 3 + 3 + 1);
  EXPECT_EQ(Result.RunText, "Run 3 of 3 with 0.01s interval (sec 0)");  // 3 x 200 x 0.01 ms
}

TEST_F(RunMonteCarloTest, TheEndOfARunStartsTheNextWhenReseededHoweverShortItIs) {
  SetRates(1e5, 1e-8);  // opens at once and stays open
  Model.NumRuns = 2;
  Model.ReseedSimulation = 1;
  for (const int points : {300, 99, 2}) {
    SCOPED_TRACE(points);
    Model.NumPoints = points;
    Model.StartOccupancy[1] = 1.0F;
    Model.StartOccupancy[2] = 0.0F;
    RunAsSet();
    EXPECT_EQ(Model.StartOccupancy[2], 1.0F);
    ASSERT_EQ(Dwell.NumLatencies, 2.0F);
    EXPECT_EQ(Dwell.Latencies[1], 0.0F) << "the second run starts open";
  }
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
  EXPECT_EQ(Sweeps(), 10);  // asked at 0, 5 and 10 of 100
  EXPECT_EQ(Trace.TraceValid, 0);
  EXPECT_NEAR(Result.Occupancy[2][5], 0.1F, 1e-6F);  // the result of the ten
  EXPECT_EQ(Result.OccupancyUsed[2], 200);
  EXPECT_EQ(Dwell.NumRawOpenTimes, 1);  // ten channels that never close make one opening
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
  // Three subunits in state 2, each alone at its point: k = 1, so conductance 1 (20 pS) counts three times.
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
    for (int p = 0; p < Model.NumPoints - 1; ++p) ASSERT_NEAR(Trace.SimTrace[p], expected, 1e-5F) << units;
    EXPECT_EQ(GraphNamed("MainPanel").plots.size(), 1U);
    EXPECT_EQ(Trace.TraceValid, 1);
  }
}

TEST_F(RunMonteCarloTest, StopIsHeardWithinAChannelOfManyDwellsAndBetweenManyRuns) {
  onPump = [](int) { FAIL() << "a single channel pumps no events"; };
  FrontEnd former = SetFrontEnd({});
  FrontEnd stopping = former;
  stopping.breathe = [](double) { RequestStop(); };
  SetFrontEnd(std::move(stopping));
  using Case = std::tuple<double, float, int>;
  for (const auto& [rate, intervalMs, runs] :
       {Case{1e7, 10.0F, 1}, Case{1000.0, 0.01F, 1'000'000}}) {  // 20 million dwells; 2 ms
    SetRates(rate, rate);
    Model.ADInterval = intervalMs;
    Model.NumRuns = runs;
    popups.clear();
    EXPECT_EQ(RunAsSet(), Outcome::Stopped);
    EXPECT_EQ(popups.size(), 1U);
    EXPECT_EQ(Dwell.IdealClass[Dwell.NumIdealEvents], RecordEnd);
    EXPECT_GT(Dwell.NumRawOpenTimes, 0);
  }
  SetFrontEnd(std::move(former));
}

/// Listens to the events of a run.
class RunEventsTest : public RunMonteCarloTest {
 protected:
  RunEventsTest() {
    RunCompleted.Add([this](Outcome&) { told += "s"; });
    SeriesBegins.Add([this] { told += "b"; });
    SeriesRun.Add([this](int run) { told += std::to_string(run); });
    SeriesEnds.Add([this] { told += "e"; });
    Model.NumRuns = 2;
    Model.NumIntervals = 1;
  }
  ~RunEventsTest() override { RemoveListeners(); }

  std::string told;
};

TEST_F(RunEventsTest, TheFirstSweepOfEachRunIsTold) {
  RunAsSet();
  EXPECT_EQ(told, "bs1s2e");
}

TEST_F(RunEventsTest, AStopEndsTheSeriesAndASilentRunTellsOfNothing) {
  Model.NumChannels = 100;
  onPump = [](int call) { Requests.StopRequested = call == 30 ? 1 : 0; };
  RunAsSet();
  EXPECT_EQ(told, "bs1e");
  told.clear();
  RunSilently();
  EXPECT_EQ(told, "");
}

}  // namespace
}  // namespace zelvane
