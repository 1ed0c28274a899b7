// From occupancies to the trace and to a file: units, monitored states, noise, clearing.
#include "run/occupancy_export.h"
#include "run/run_fixtures.h"
#include "screen/window_reporter.h"

namespace zelvane {
namespace {

class RunTraceTest : public RunTest {
 protected:
  /// As after a run: 10 points, states 1 and 2 occupied by 0.1 and 0.2, 100 channels at -60 mV.
  RunTraceTest() {
    Model.NumPoints = 10;
    Model.NumChannels = 100;
    Result.EffectiveChannels = 100.0F;
    Result.RunPoints = 10;
    Result.RunInterval = Model.ADInterval;
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

TEST_F(RunTraceTest, PointPGoesWithVoltagePToSamplePLess1UpToTheLongestRun) {
  Model.DisplayUnits = UnitsCurrent;
  Model.StateMonitored[2] = 1;  // both monitored states count
  Model.StateConductance[2] = 10.0F;
  Stimulus.Profile[0][0] = 1.0F;
  Stimulus.Profile[0][10] = 0.04F;
  Result.Occupancy[1][1] = 0.5F;
  Show();
  ConvertTrace(true, WindowReporter());
  EXPECT_NEAR(Trace.SimTrace[0], -0.06F * 100.0F * (50.0F * 0.5F + 10.0F * 0.2F), 1e-4F);
  EXPECT_NEAR(Trace.SimTrace[9], 0.04F * 100.0F * (50.0F * 0.1F + 10.0F * 0.2F), 1e-4F);
  Model.NumPoints = MaxStimPoints;
  Stimulus.Profile[0].back() = -0.06F;
  Result.Occupancy[1][MaxStimPoints] = 0.1F;
  Result.OccupancyUsed[1] = MaxStimPoints + 1;
  Show();
  ConvertTrace(true, WindowReporter());
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
  EXPECT_EQ(Model.RecordPoints, 50);
}

TEST_F(RunTraceTest, NoiseHasTheStandardDeviationAskedForAndIsFilteredAsWell) {
  SetSeeds(ProgramRandom, {{1.0, 2.0, 3.0}});
  Model.NumPoints = Model.RecordPoints = 20000;
  Model.StateMonitored[1] = 0;
  Model.AutoNoise = 1;
  Model.AutoNoiseSTD = 3.0F;
  Model.AutoFilterFc = 2.0F;
  for (const int filtered : {0, 1}) {
    Model.AutoFilter = filtered;
    Show();
    ConvertTrace(true, WindowReporter());
    double squares = 0.0;
    for (int p = 1000; p < 19000; ++p) squares += std::pow(static_cast<double>(Trace.SimTrace[p]), 2);
    // The standard error is 3 / sqrt(2 x 18000); a corner of 1/50 of the sampling rate leaves about 0.2 of
    // the noise.
    EXPECT_NEAR(std::sqrt(squares / 18000.0), filtered == 0 ? 3.0 : 0.6, filtered == 0 ? 0.06 : 0.2);
    EXPECT_EQ(Trace.SimTrace[20000], 0.0F);
  }
}

TEST_F(RunTraceTest, PlotsInTheColourOfTheSimulator) {
  for (const auto& [kind, colour] : {std::pair{MonteCarlo, Colour{0, 0, 0}},
                                     {FixedStepIntegrator, {0, 0, 128}},
                                     {AdaptiveIntegrator, {128, 0, 0}}}) {
    Trace.TraceSimulator = kind;
    ConvertTrace(true, WindowReporter());
    const Graph& graph = GraphNamed("MainPanel");
    EXPECT_EQ(graph.plots.at(0).colour.red, colour.red) << kind;
    EXPECT_EQ(graph.plots.at(0).colour.blue, colour.blue) << kind;
    EXPECT_NEAR(graph.fullXMax, 0.09, 1e-6);
  }
}

TEST_F(RunTraceTest, RefreshRefusesARecordingAndAResampledTraceAndKeepsThatOfSubunits) {
  Result.OfSubunits = 1;  // whatever the switch says now
  Result.ResultKind = ResultMonteCarlo;
  Trace.SimTrace[5] = 42.0F;
  Trace.SimTraceUsed = 10;
  Show();
  Commit(ControlNamed("SimRefresh"));
  EXPECT_EQ(GraphNamed("MainPanel").plots.at(0).y[5], 42.0F);
  Trace.TraceFromFile = 1;
  Commit(ControlNamed("SimRefresh"));
  Trace.TraceParsed = 1;
  Commit(ControlNamed("SimRefresh"));
  EXPECT_EQ(popups, (std::vector<SeenPopup>{
                        {"! Warning", "Cannot refresh since the data was read from a file."},
                        {"! Warning", "Cannot refresh since data has been parsed (resampled)."}}));
  Trace.TraceFromFile = Trace.TraceParsed = Result.OfSubunits = 0;
  TypeOnly("NumPoints", "9");
  Commit(ControlNamed("SimRefresh"));
  EXPECT_EQ(notes,
            Texts{"There is nothing to refresh: no run has the present number of points and interval."});
  EXPECT_EQ(Trace.SimTrace[5], 42.0F);
}

TEST_F(RunTraceTest, RefreshShowsOtherStatesButAsksBeforeItGivesUpACorrection) {
  Model.DisplayUnits = UnitsProbability;
  Show();
  ConvertTrace(false, WindowReporter());
  Enter("StateMonitored[1]", "0");
  Enter("StateMonitored[2]", "1");
  for (const bool answer : {false, true}) {
    Trace.RsCorrected = 1;
    answers = {answer};
    Commit(ControlNamed("SimRefresh"));
    EXPECT_EQ(popups.back().text, "Refreshing will remove RsCm correction. Do you want to continue?");
    EXPECT_EQ(Trace.SimTrace[5], answer ? 0.2F : 0.1F);
    EXPECT_EQ(Trace.RsCorrected, answer ? 0 : 1);
    EXPECT_EQ(GraphNamed("MainPanel").plots.size(), 1U);
  }
}

using OccupancyExportTest = StoreTest;

TEST_F(OccupancyExportTest, OccupanciesHaveAColumnForEachStateThatIsOn) {
  Model.NumPoints = 2;
  Model.ADInterval = 0.5F;
  Model.StateOn[2] = Model.StateOn[3] = 1;
  Model.StateLabel[3] = "open";
  for (std::size_t s = 2; s <= 3; ++s) {
    for (std::size_t p = 1; p <= 3; ++p)
      Result.Occupancy[s][p] = static_cast<float>(s) + static_cast<float>(p) / 8;
  }
  const std::string path = folder.File("occupancy.csv");
  struct Case {
    int kind;
    const char* content;
  };
  const Case cases[] = {
      {ResultUniform, "time_ms,2,open\n0,2.125,3.125\n0.5,2.25,3.25\n"},
      {ResultMonteCarlo, "time_ms,2,open\n0.5,2.125,3.125\n1,2.25,3.25\n"},
      {ResultSavedSteps, "time_ms,2,open\n2,2.125,3.125\n2.125,2.25,3.25\n4,2.375,3.375\n"}};
  Result.KeptSteps = 3;
  Result.IntegrationOffset = 4;
  Result.SavedTime[2] = 0.125F;
  Result.SavedTime[3] = 2.0F;
  for (const Case& test : cases) {
    Result.ResultKind = test.kind;
    ASSERT_TRUE(WriteOccupancyCsv(path));
    EXPECT_EQ(ReadWholeFile(path), test.content) << test.kind;
  }
  Model.ModelIs2D = 0;
  Model.TableStateOn[2] = 1;
  Result.ResultKind = ResultUniform;
  ASSERT_TRUE(WriteOccupancyCsv(path));
  EXPECT_EQ(ReadWholeFile(path).substr(0, 10), "time_ms,2\n");
}

}  // namespace
}  // namespace zelvane
