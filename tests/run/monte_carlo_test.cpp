// What simulated channels must obey: the distributions of Markov chains, and their lists.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "run/run_fixtures.h"

namespace zelvane {
namespace {

/// Closed (1) and open (2), opening at 1000 /s and closing at 500 /s.
class MonteCarloTest : public RunTest {
 protected:
  MonteCarloTest() { Model.SimulatorKind = MonteCarlo; }

  /// Mean and share above `mean` are those of the exponential of that mean, each within 4 standard errors. Of
  /// long times a share of `lost` is missing.
  static void ExpectExponential(std::span<const float> list, float count, double mean, double lost = 0.0) {
    const auto times = list.first(static_cast<std::size_t>(count));
    const auto n = static_cast<double>(count);
    const double found = std::accumulate(times.begin(), times.end(), 0.0) / n;
    EXPECT_NEAR(found, mean, mean * (4.0 / std::sqrt(n) + lost));
    const auto above =
        std::count_if(times.begin(), times.end(), [&](float t) { return static_cast<double>(t) > mean; });
    const double share = std::exp(-1.0);
    EXPECT_NEAR(static_cast<double>(above) / n, share, 4.0 * std::sqrt(share * (1.0 - share) / n) + lost);
  }
};

TEST_F(MonteCarloTest, OpenAndClosedTimesAndLatenciesAreExponential) {
  Model.NumChannels = 500;
  Model.NumPoints = 20000;  // 200 ms: sweeps cut hardly any dwell short
  RunAsSet();
  ASSERT_GT(Dwell.NumOpenTimes, 30000.0F);
  // Every last opening of a sweep is recorded in full, so no open time is missing.
  ExpectExponential(Dwell.OpenTimes, Dwell.NumOpenTimes, 2.0);
  // A closed time that the end of the sweep cuts off is missing, so long ones are by some 1/200 too few.
  ExpectExponential(Dwell.ClosedTimes, Dwell.NumClosedTimes, 1.0, 0.005);
  ExpectExponential(Dwell.Latencies, Dwell.NumLatencies, 1.0);
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
