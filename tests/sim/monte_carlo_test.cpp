// What simulated channels must obey: the distributions of Markov chains, and their lists.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "sim/run_fixtures.h"

namespace zelvane {
namespace {

/// Closed (1) and open (2), opening at 1000 /s and closing at 500 /s.
class MonteCarloTest : public RunTest {
 protected:
  MonteCarloTest() { Model.SimulatorKind = MonteCarlo; }

  static std::vector<float> Sorted(std::span<const float> list, float count) {
    std::vector<float> sorted(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count));
    std::sort(sorted.begin(), sorted.end());
    return sorted;
  }

  /// Kolmogorov and Smirnov's largest distance between a sorted sample and the exponential of `mean`, times
  /// the square root of its size. It passes 1.63 once in a hundred samples.
  static double ExponentialDistance(const std::vector<float>& sorted, double mean) {
    const auto n = static_cast<double>(sorted.size());
    double distance = 0.0;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
      const double expected = 1.0 - std::exp(-static_cast<double>(sorted[i]) / mean);
      const auto below = static_cast<double>(i);
      distance = std::max({distance, expected - below / n, (below + 1.0) / n - expected});
    }
    return distance * std::sqrt(n);
  }
};

TEST_F(MonteCarloTest, OpenAndClosedTimesAndLatenciesAreExponential) {
  Model.NumChannels = 500;
  Model.NumPoints = 20000;  // 200 ms: sweeps cut hardly any dwell short
  RunAsSet();
  const auto open = Sorted(Dwell.OpenTimes, Dwell.NumOpenTimes);
  ASSERT_GT(open.size(), 30000U);
  // Every last opening of a sweep is recorded in full, so no open time is missing.
  EXPECT_LT(ExponentialDistance(open, 2.0), 1.63);
  // A closed time that the end of the sweep cuts off is missing, so long ones are by some 1/200 too few.
  EXPECT_LT(ExponentialDistance(Sorted(Dwell.ClosedTimes, Dwell.NumClosedTimes), 1.0), 2.5);
  EXPECT_LT(ExponentialDistance(Sorted(Dwell.Latencies, Dwell.NumLatencies), 1.0), 1.63);
  EXPECT_EQ(Dwell.MonitoredChannels, 500);
  EXPECT_EQ(Dwell.NumLatencies, 500.0F);
}

TEST_F(MonteCarloTest, TheMeanOfManyChannelsFollowsTheIntegrator) {
  // Dependent rates: opening rises with the drug, closing falls with voltage. Steps on points.
  Model.KOn[1] = 2e6;
  Model.Depend.Drug[1][1][2] = 1;
  Model.KOff[1] = 800.0;
  Model.Depend.Volt[2][1] = 1;
  Model.Depend.Steepness[2][1] = -0.8F;
  for (int p = 20; p < 120; ++p) Stimulus.Profile[1][p] = 1e-3F;
  for (int p = 70; p < 300; ++p) Stimulus.Profile[0][p] = 0.03F;
  Model.DisplayUnits = UnitsProbability;
  Model.NumChannels = 20000;
  RunAsSet();
  const std::vector<float> mean(Trace.SimTrace.begin(), Trace.SimTrace.begin() + 200);
  Model.SimulatorKind = FixedStepIntegrator;
  RunAsSet();
  // A channel stays through the point at which the stimulus changes, so it lags by a point behind the edges;
  // the probability moves by at most 2000 /s x 0.01 ms = 0.02 in that time.
  for (std::size_t p = 2; p < 199; ++p) {
    const auto expected = static_cast<double>(Trace.SimTrace[p]);
    const double low = static_cast<double>(std::min(Trace.SimTrace[p - 2], Trace.SimTrace[p + 1]));
    const double high = static_cast<double>(std::max(Trace.SimTrace[p - 2], Trace.SimTrace[p + 1]));
    const double error = 4.5 * std::sqrt(std::max(expected * (1.0 - expected), 1e-4) / 20000.0);
    EXPECT_GT(static_cast<double>(mean[p]), low - error) << p;
    EXPECT_LT(static_cast<double>(mean[p]), high + error) << p;
  }
}

TEST_F(MonteCarloTest, TheVarianceOverRunsIsThatOfABinomial) {
  Model.KOn[1] = 200.0;
  Model.KOff[1] = 100.0;
  Model.DisplayUnits = UnitsChannels;
  Model.NumChannels = 50;
  Model.ShowAllTraces = 0;
  constexpr int Runs = 2000;
  const std::size_t points[] = {20, 60, 120, 190};
  double sum[4] = {};
  double squares[4] = {};
  Show();
  for (int run = 0; run < Runs; ++run) {
    AcquireData();
    for (std::size_t k = 0; k < 4; ++k) {
      const auto open = static_cast<double>(Trace.SimTrace[points[k]]);
      sum[k] += open;
      squares[k] += open * open;
    }
  }
  for (std::size_t k = 0; k < 4; ++k) {
    const double mean = sum[k] / Runs;
    const double variance = squares[k] / Runs - mean * mean;
    const double p = mean / 50.0;
    // The standard error of a variance is about sqrt(2 / runs) of it: 3.2 %.
    EXPECT_NEAR(variance / (50.0 * p * (1.0 - p)), 1.0, 4.0 * 0.032) << points[k];
  }
}

TEST_F(MonteCarloTest, AChannelWhoseOnlyExitWaitsForADrugLeavesAfterTheDrugHasCome) {
  Model.KOn[1] = 1e9;
  Model.Depend.Drug[1][1][2] = 1;
  Model.NumPoints = 1000;
  for (int p = 500; p < 1000; ++p) Stimulus.Profile[1][p] = 1e-3F;
  Model.NumChannels = 40;
  RunAsSet();
  ASSERT_EQ(Dwell.NumLatencies, 40.0F);
  // It waits through point 500 and leaves on the next: 1e6 /s leave nobody behind.
  for (const float latency : Dwell.Latencies.first(40)) EXPECT_NEAR(latency, 5.02F, 1e-3F);
  EXPECT_EQ(Trace.SimTrace[500], 0.0F);
  EXPECT_GT(Trace.SimTrace[501], 0.0F);
}

TEST_F(MonteCarloTest, TheListsAgreeWithTheRecord) {
  Model.KOn[1] = 3000.0;
  Model.KOff[1] = 4000.0;
  Model.NumChannels = 30;
  Model.NumRuns = 3;
  Model.NumIntervals = 1;
  Model.StartOccupancy[1] = 1.0F;
  RunAsSet();
  int open = 0;
  int closed = 0;
  int segments = 0;
  bool openBefore = false;
  const auto events = static_cast<std::size_t>(Dwell.NumIdealEvents);
  for (std::size_t i = 0; i < events; ++i) {
    const float duration = Dwell.IdealDuration[i];
    if (Dwell.IdealClass[i] == SegmentMarker) {
      EXPECT_EQ(duration, static_cast<float>(++segments));
      continue;
    }
    if (Dwell.IdealClass[i] == ClosedClass) {
      EXPECT_EQ(duration, Dwell.ClosedTimes[static_cast<std::size_t>(closed++)]);
    } else if (i > 0 && Dwell.IdealClass[i - 1] == SegmentMarker &&
               duration != Dwell.OpenTimes[static_cast<std::size_t>(open)]) {
      EXPECT_TRUE(openBefore);  // it goes on with the opening that ended the sweep before
    } else {
      EXPECT_LE(duration, Dwell.OpenTimes[static_cast<std::size_t>(open++)]);
    }
    openBefore = Dwell.IdealClass[i] > ClosedClass;
  }
  EXPECT_EQ(Dwell.IdealClass[events], RecordEnd);
  EXPECT_EQ(Dwell.IdealDuration[events], static_cast<float>(events));
  EXPECT_EQ(static_cast<float>(open), Dwell.NumOpenTimes);
  EXPECT_EQ(static_cast<float>(closed), Dwell.NumClosedTimes);
  EXPECT_EQ(segments, 30 * 5);
}

TEST_F(MonteCarloTest, EventStatisticsStandOnThePanel) {
  Model.OpenState = 2;
  Model.NumChannels = 20;
  RunAsSet();
  ASSERT_GT(Dwell.NumOpenTimes, 1.0F);
  const auto open = Dwell.OpenTimes.first(static_cast<std::size_t>(Dwell.NumOpenTimes));
  const double mean = std::accumulate(open.begin(), open.end(), 0.0) / static_cast<double>(open.size());
  EXPECT_EQ(ControlNamed("OpenTimesText").text, FormatText("%zu, mean %.4g ms", open.size(), mean));
  EXPECT_EQ(ControlNamed("OpenStateExits").text, std::to_string(Dwell.OpenStateExits));
  EXPECT_EQ(ControlNamed("MonitoredChannels").text, std::to_string(Dwell.MonitoredChannels));
  Model.KOn[1] = 1e-8;
  RunAsSet();
  EXPECT_EQ(ControlNamed("OpenTimesText").text, "0");
}

}  // namespace
}  // namespace zelvane
