// Schemes and settings that no channel can follow, and those at the ends of what is allowed.
#include <cmath>
#include <limits>

#include "kinetics/monte_carlo.h"
#include "run/run_fixtures.h"

namespace zelvane {
namespace {

class MonteCarloLimitsTest : public RunTest {
 protected:
  MonteCarloLimitsTest() { Model.SimulatorKind = MonteCarlo; }

  /// The store is usable: an ordinary run works.
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
  EXPECT_NEAR(Result.Occupancy[1][0], 0.5F, 1e-6F);  // the five channels before it
  ExpectNextRunWorks();
}

TEST_F(MonteCarloLimitsTest, ARateOf1e8thIsNeverTaken) {
  Model.KOn[1] = 1e-8;
  RunAsSet();
  EXPECT_EQ(Result.Occupancy[1][199], 1.0F);
  EXPECT_EQ(Result.Occupancy[1][200], 0.0F);  // to the end, and the last point is not part of it
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
  // A slow step first: the later a channel comes to the fast states, the sooner its time stands still.
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
  EXPECT_EQ(PopupTexts(), std::vector<std::string>{
                              "A run of 2147483647 channels cannot be simulated, 16777216 is the most. Lower "
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
