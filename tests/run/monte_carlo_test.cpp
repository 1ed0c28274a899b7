// Laws of simulated channels: the distributions of Markov chains, and their lists. Schemes and settings that
// no channel can follow, and those at the limits.
#include "kinetics/monte_carlo.h"

#include <limits>
#include <numeric>

#include "run/run_fixtures.h"

namespace zelvane {
namespace {

/// Closed (1) and open (2), opening at 1000 /s and closing at 500 /s.
class MonteCarloTest : public RunTest {
 protected:
  MonteCarloTest() { Model.SimulatorKind = MonteCarlo; }

  /// Expects the mean, and the share above `mean`, of an exponential distribution with this mean, each within
  /// 4 standard errors. A share `lost` of long times is missing.
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
  Model.NumPoints = 20000;  // 200 ms: the end of a sweep cuts few dwells
  RunAsSet();
  ASSERT_GT(Dwell.NumOpenTimes, 30000.0F);
  // The last opening of every sweep is recorded in full, so no open time is missing.
  ExpectExponential(Dwell.OpenTimes, Dwell.NumOpenTimes, 2.0);
  // A closed time that the end of the sweep cuts off is missing, so about 1/200 of the long ones is missing.
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
  const Floats mean(Trace.SimTrace.begin(), Trace.SimTrace.begin() + 200);
  Model.SimulatorKind = FixedStepIntegrator;
  RunAsSet();
  // A channel stays through the point at which the stimulus changes, so it is one point late at the edges. In
  // this time the probability changes by at most 2000 /s x 0.01 ms = 0.02.
  for (std::size_t p = 2; p < 199; ++p) {
    const auto expected = static_cast<double>(Trace.SimTrace[p]);
    const double low = static_cast<double>(std::min(Trace.SimTrace[p - 2], Trace.SimTrace[p + 1]));
    const double high = static_cast<double>(std::max(Trace.SimTrace[p - 2], Trace.SimTrace[p + 1]));
    const double error = 4.5 * std::sqrt(std::max(expected * (1.0 - expected), 1e-4) / 20000.0);
    EXPECT_GT(static_cast<double>(mean[p]), low - error) << p;
    EXPECT_LT(static_cast<double>(mean[p]), high + error) << p;
  }
}

TEST_F(MonteCarloTest, AStimulusOpensAnExitWhileAnotherExitIsOpenOrShut) {
  // State 1 leaves to 2 with the drug from 10 ms on, at 400 /s, and to 6 at `other`, which depends on voltage or
  // not. No state leads back. Of the channels still in state 1 at 10 ms a share 400 / (400 + other) comes to 2.
  struct Case {
    const char* name;
    double rate, steepness, volts, other;  // 1/s at 0 V, charges, V before 10 ms, 1/s before and after
    bool drug;                             // opens the exit to 2; else the voltage step does
  };
  for (const Case& c :
       {Case{"open at a constant rate", 50.0, 0.0, 0.0, 50.0, true},
        Case{"open at a voltage", 50.0, 1e-6, -0.06, 50.0, true}, Case{"too slow", 1e-8, 0.0, 0.0, 0.0, true},
        Case{"opened by the voltage alone", 400.0, 20.0, -0.06, 0.0, false}}) {
    Model.StateOn[6] = 1;
    Model.KOff = {};
    Model.KOn[1] = c.drug ? 4e5 : 0.0;
    Model.Depend.Drug[1][1][2] = 1;
    Model.KOn[5] = c.rate;
    Model.Depend.Volt[1][6] = c.steepness != 0.0 ? 1 : 0;
    Model.Depend.Steepness[1][6] = static_cast<float>(c.steepness);
    Model.KOff[1] = Model.KOff[5] = 1e-9;  // a state without an exit would be an error
    std::fill_n(Stimulus.Profile[0].begin(), 1000, static_cast<float>(c.volts));
    std::fill_n(Stimulus.Profile[1].begin() + 1000, 3000, 1e-3F);
    Model.NumPoints = 4000;
    Model.NumChannels = 4000;
    RunAsSet();
    const double left = std::exp(-c.other * 0.01);
    const double opened = c.drug ? 400.0 : c.rate;
    const double after = left * opened / (opened + c.other) * (1.0 - std::exp(-(opened + c.other) * 0.0299));
    const auto found = static_cast<double>(Result.Occupancy[c.drug ? 2 : 6][3999]);
    const double error = std::sqrt(after * (1.0 - after) / 4000.0);
    EXPECT_NEAR(found, after, 4.0 * error) << c.name;
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

class MonteCarloLimitsTest : public MonteCarloTest {
 protected:
  /// Expects that the store is usable: an ordinary run works.
  void ExpectNextRunWorks() {
    popups.clear();
    Model.KOn[1] = 1000.0;
    Model.KOff[1] = 500.0;
    Model.StartOccupancy = {};
    Model.StartOccupancy[1] = 1.0F;
    Model.NumPoints = 200;
    Model.NumChannels = 100;
    RunAsSet();
    EXPECT_TRUE(popups.empty());
    EXPECT_EQ(Trace.TraceValid, 1);
    for (int p = 1; p < 50; ++p) {
      EXPECT_NEAR(Result.Occupancy[1][p] + Result.Occupancy[2][p], 1.0F, 1e-4F) << p;
    }
  }
};

TEST_F(MonteCarloLimitsTest, APopulatedStateWithoutConnectionsEndsTheRun) {
  Model.StateOn[9] = 1;
  Model.StartOccupancy[1] = Model.StartOccupancy[9] = 0.5F;
  Model.NumChannels = 10;
  RunAsSet();
  EXPECT_EQ(popups, (std::vector{SeenPopup{"!", "Error with model."}}));
  EXPECT_EQ(Trace.TraceValid, 0);
  EXPECT_NEAR(Result.Occupancy[1][0], 0.5F, 1e-6F);  // the five earlier channels
  ExpectNextRunWorks();
}

TEST_F(MonteCarloLimitsTest, ARateOf1e8thIsNeverTaken) {
  Model.KOn[1] = 1e-8;
  RunAsSet();
  EXPECT_EQ(Result.Occupancy[1][199], 1.0F);
  EXPECT_EQ(Result.Occupancy[1][200], 0.0F);  // to the end, without the last point
  EXPECT_EQ(Dwell.NumIdealEvents, 1);         // the segment marker
  EXPECT_EQ(Dwell.MonitoredChannels, 0);
  EXPECT_EQ(Trace.TraceValid, 0);
  ExpectNextRunWorks();
}

TEST_F(MonteCarloLimitsTest, RatesThatAreNoNumbersOrNoneAreNoConnections) {
  for (const float rate : {0.0F, -5.0F, std::numeric_limits<float>::quiet_NaN()}) {
    Model.KOn[1] = Model.KOff[1] = static_cast<double>(rate);
    RunAsSet();
    EXPECT_EQ(popups.back(), (SeenPopup{"! Error", "No states connected."})) << rate;
    ExpectNextRunWorks();
  }
}

TEST_F(MonteCarloLimitsTest, RatesTooFastForTheClockEndTheRun) {
  // A slow step first: the later a channel reaches the fast states, the sooner its time stops.
  Model.StateOn[3] = 1;
  for (const double rate : {1e12, 1e300}) {
    Model.KOn[2] = Model.KOff[2] = rate;
    RunAsSet();
    ASSERT_EQ(popups.size(), 1U) << rate;
    EXPECT_EQ(popups[0].title, "! Error") << rate;
    EXPECT_NE(popups[0].text.find("too fast"), std::string::npos);
    EXPECT_EQ(Trace.TraceValid, 0);
    Model.KOn[2] = Model.KOff[2] = 1.0;
    ExpectNextRunWorks();
    popups.clear();
  }
}

TEST_F(MonteCarloLimitsTest, NoRunsAndNoSubunitsAreTold) {
  Model.NumRuns = 0;
  EXPECT_EQ(RunAsSet(), Outcome::Refused);
  EXPECT_EQ(notes, Texts{"There was nothing to simulate: the number of runs is 0."});
  Model.NumRuns = 1;
  Model.MultiSubunit = 1;
  Model.NumChannels = 0;
  RunAsSet();
  EXPECT_EQ(PopupTexts(), Texts{"There were no channels to simulate: the number of channels is 0."});
  EXPECT_EQ(Trace.TraceValid, 0);
  Model.MultiSubunit = 0;
  ExpectNextRunWorks();
}

TEST_F(MonteCarloLimitsTest, OnePointAndNoChannelsAreRuns) {
  Model.NumPoints = 1;
  Model.NumChannels = 50;
  RunAsSet();
  EXPECT_TRUE(popups.empty());
  EXPECT_NEAR(Result.Occupancy[1][0], 1.0F, 0.2F);
  Model.NumChannels = 0;
  RunAsSet();
  EXPECT_EQ(popups.size(), 1U) << "no channels are told";
  EXPECT_EQ(Trace.TraceValid, 0);
  EXPECT_EQ(Dwell.SegmentCounter, 1);
  ExpectNextRunWorks();
}

TEST_F(MonteCarloLimitsTest, MoreChannelsThanAnOccupancyCountsAreRefused) {
  Model.ChannelsGaussian = 1;
  Model.ChannelsSTD = 1e30F;
  RunAsSet();
  EXPECT_EQ(PopupTexts(),
            Texts{"A run of 2147483647 channels cannot be simulated, 16777216 is the most. Lower "
                  "the number of channels or its STD."});
  EXPECT_EQ(Trace.TraceValid, 0);
  Model.ChannelsGaussian = 0;
  Model.NumChannels = MaxChannelsOfRun + 1;
  RunAsSet();
  EXPECT_EQ(popups.size(), 2U);
  ExpectNextRunWorks();
}

}  // namespace
}  // namespace zelvane
