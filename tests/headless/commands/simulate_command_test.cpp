// `zelvane-cli simulate`: the settings of the run, its output, and every way to fail.
#include "headless/commands/simulate_command.h"

#include "headless/commands/job_test.h"
#include "stimulus/stimulus_file.h"

namespace zelvane {
namespace {

using nlohmann::json;

class SimulateTest : public JobTest {
 protected:
  SimulateTest() {
    options.model = ZELVANE_DATA "/models/ampa_jonas_1993.mod";
    options.simulator = FixedStepIntegrator;
    options.units = UnitsCurrent;
    options.points = 10000;
    options.json = true;
  }

  int Run() {
    return JobTest::Run([this](const JobStreams& streams) { return SimulateCommand(options, streams); });
  }
  json Summary() {
    return Written([this](const JobStreams& streams) { return SimulateCommand(options, streams); });
  }
  void ExpectRefused(int status, const std::string& told) {
    EXPECT_EQ(Run(), status) << told;
    EXPECT_TRUE(Told(told)) << told << ": " << err.str();
    EXPECT_EQ(out.str(), "");
  }

  SimulateOptions options;
};

TEST_F(SimulateTest, SumsUpTheRunForMachinesAndForPeople) {
  const json summary = Summary();
  EXPECT_EQ(summary["points"], 10000);
  EXPECT_EQ(summary["interval"], 0.001);
  EXPECT_EQ(summary["simulator"], "fixed");
  EXPECT_EQ(summary["units"], "pA");
  EXPECT_LT(summary["peak"]["value"], 0.0);  // inward at -70 mV
  EXPECT_GT(summary["peak"]["time"], 5.0);   // glutamate from 5 to 6 ms
  EXPECT_LT(summary["peak"]["time"], 7.0);
  EXPECT_EQ(summary["final"]["time"], 9.999);
  double sum = 0.0;
  for (const json& state : summary["final"]["states"]) sum += state["occupancy"].get<double>();
  EXPECT_NEAR(sum, 1.0, 1e-4);
  options.json = false;
  ASSERT_EQ(Run(), JobDone);
  ExpectParts({"Scheme       AMPA", "10000 points, one every 0.001 ms (10 ms)",
               "fixed step, at most 0.001 ms", "Macroscopic Current pA", "Occupancy at 9.999 ms\n  C0 ",
               "Wall time"});
  EXPECT_EQ(err.str(), "");
}

TEST_F(SimulateTest, SettingsReachTheRun) {
  const double before = Summary()["peak"]["value"];
  options.settings = {"NumChannels=200"};  // 100 in the file
  EXPECT_NEAR(Summary()["peak"]["value"].get<double>() / before, 2.0, 1e-6);
  options.settings = {"ModelTitle=two words = a title"};
  EXPECT_EQ(Summary()["title"], "two words = a title");
}

TEST_F(SimulateTest, ANewIntervalMovesTheSamplesOfTheStimulusNotItsTimes) {
  options.intervalMs = 0.01;
  options.points = 1000;
  const json summary = Summary();
  EXPECT_EQ(summary["interval"], 0.01);
  EXPECT_NEAR(summary["peak"]["time"], 6.05, 0.06);
}

TEST_F(SimulateTest, WritesTheTraceAndTheOccupancies) {
  options.points = 500;
  options.intervalMs = 0.02;
  options.traceFile = folder.File("out.csv");
  options.occupancyFile = folder.File("occupancy.csv");
  const json summary = Summary();
  const std::string trace = ReadWholeFile(options.traceFile);
  const std::string occupancy = ReadWholeFile(options.occupancyFile);
  EXPECT_EQ(std::count(trace.begin(), trace.end(), '\n'), 501);  // a line of titles
  EXPECT_EQ(std::count(occupancy.begin(), occupancy.end(), '\n'), 501);
  std::istringstream lastRow(occupancy.substr(occupancy.rfind('\n', occupancy.size() - 2) + 1));
  std::string cell;
  std::getline(lastRow, cell, ',');
  EXPECT_NEAR(std::stod(cell), summary["final"]["time"].get<double>(), 1e-8);
  for (const json& state : summary["final"]["states"]) {
    std::getline(lastRow, cell, ',');
    EXPECT_NEAR(std::stod(cell), state["occupancy"].get<double>(), 1e-8);
  }
}

TEST_F(SimulateTest, SavedStepsStandAtTheirTimesInTheSweep) {
  options.simulator = AdaptiveIntegrator;
  options.occupancyFile = folder.File("steps.csv");
  const json summary = Summary();
  std::istringstream rows(ReadWholeFile(options.occupancyFile));
  std::string row;
  std::getline(rows, row);
  std::getline(rows, row);
  EXPECT_NEAR(std::stod(row), 5.0, 0.01);  // nothing can happen before the glutamate
  double last = 0.0;
  int steps = 1;
  for (; std::getline(rows, row); ++steps) {
    EXPECT_GT(std::stod(row), last);
    last = std::stod(row);
  }
  EXPECT_EQ(summary["savedSteps"], steps);
  EXPECT_NEAR(summary["final"]["time"], 10.0, 0.5);  // the last saved step inside the sweep
  EXPECT_NEAR(last, 15.0, 0.01);                     // the integrator runs the full length from its start
}

TEST_F(SimulateTest, AFileThatIsNoModelIsNamedAndFails) {
  for (const std::string& path :
       {folder.Written("junk.mod", "this is no model\n"), folder.File("absent.mod")}) {
    options.model = path;
    ExpectRefused(JobFailed, path + ": ");
  }
}

TEST_F(SimulateTest, WrongUsageIsToldWithWhatWouldBeRight) {
  for (const auto& [setting, told] : {std::pair{"KOnn[2]=1", "did you mean KOn[2]"},
                                      {"NumPoints", "NAME=VALUE"},
                                      {"NumPoints=1.5", "whole number"},
                                      {"KOn[32]=1", "no such field"},
                                      {"ADInterval=0", "above 0"}}) {
    options.settings = {setting};
    ExpectRefused(JobMisused, told);
  }
  options.settings = {};
  options.traceFile = folder.File("trace.wav");
  ExpectRefused(JobMisused, ".atf");
  options.traceFile = "";
  options.dwellFile = folder.File("single");
  ExpectRefused(JobMisused, "--simulator montecarlo");
}

TEST_F(SimulateTest, AStopEndsTheRunAndWritesNothing) {
  options.traceFile = folder.File("trace.txt");
  stop = true;
  for (const int simulator : {FixedStepIntegrator, AdaptiveIntegrator, MonteCarlo}) {
    options.simulator = simulator;
    ExpectRefused(JobFailed, "Simulation Interrupted by User");
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
  }
}

TEST_F(SimulateTest, ARunThatCannotBeTellsWhy) {
  options.settings = {"MultiSubunit=1"};
  ExpectRefused(JobFailed, "! Warning: Cannot run integrator for cooperative multi-subunit receptors.");
  options.settings = {"ModelIs2D=0"};  // the file's table is empty
  ExpectRefused(JobFailed, "! Error: No states connected.");
  options.settings = {"StimMode=2"};  // runs, but its stimulus is not in the file
  Summary();
  EXPECT_TRUE(Told("StimMode=1"));
  options.traceFile = folder.File("absent/trace.txt");
  ExpectRefused(JobFailed, "absent/trace.txt");
}

TEST_F(SimulateTest, AModelWhoseStimulusIsUnavailableDoesNotRunWithAnother) {
  std::string model = ReadWholeFile(options.model);
  const std::size_t title = model.find("[Stimulus: Mode");
  model[model.find('\n', title) + 1] = '5';
  options.model = folder.Written("five.mod", model);
  ExpectRefused(JobFailed, "This option will be available soon");
}

TEST(ParseSeedsTest, TakesThreeWholeNumbersThatMoveTheGenerator) {
  EXPECT_EQ(ParseSeeds("1,22,333"), (Seeds{1.0, 22.0, 333.0}));
  EXPECT_EQ(ParseSeeds("0,0,1"), (Seeds{0.0, 0.0, 1.0}));
  for (const char* text : {"", "1", "1,2", "1,2,3,4", "1,2,x", "1,,3", "1.5,2,3", "-1,2,3", "0,0,0",
                           "30269,30307,30323", "nan,1,2", "1,2,1e300"}) {
    EXPECT_FALSE(ParseSeeds(text)) << text;
  }
}

TEST_F(SimulateTest, AStimulusFileBringsItsIntervalAndItsPoints) {
  Floats volts(4001, -0.07F);
  Floats drug(4001);
  Floats none(4001);
  std::fill_n(drug.begin() + 1000, 1000, 0.01F);
  options.stimulusFile = folder.File("pulse.stm");
  ASSERT_EQ(WriteStimProfiles(options.stimulusFile, 0.005F, {volts, drug, none, none, none, none, none}),
            Outcome::Done);
  options.points.reset();
  json summary = Summary();
  EXPECT_EQ(summary["points"], 4000);
  EXPECT_EQ(summary["interval"], 0.005);
  EXPECT_GT(summary["peak"]["time"], 5.0);  // the pulse begins at 5 ms
  EXPECT_LT(summary["peak"]["time"], 6.0);
  EXPECT_FALSE(Told("answered no")) << err.str();
  options.points = 2000;
  options.intervalMs = 0.01;
  summary = Summary();
  EXPECT_EQ(summary["points"], 2000);
  EXPECT_GT(summary["peak"]["time"], 10.0);  // the number of samples stays the same
  options.stimulusFile = folder.File("none.stm");
  ExpectRefused(JobFailed, "none.stm: no stimulus can be read from it");
}

TEST_F(SimulateTest, RunsAreAppendedToAnAutosaveFile) {
  options.autosaveFile = folder.File("runs.abf");
  EXPECT_EQ(Run(), JobDone) << err.str();
  EXPECT_EQ(Run(), JobDone) << err.str();
  EXPECT_EQ(ReadWholeFile(options.autosaveFile).size(), 2048U + 2 * 40'000U);
  options.autosaveFile = folder.File("runs.asc");
  EXPECT_EQ(Run(), JobDone) << err.str();
  EXPECT_TRUE(ReadWholeFile(options.autosaveFile).starts_with("1.000000e-03\n"));
  options.autosaveFile = folder.File("none/runs.asc");
  EXPECT_EQ(Run(), JobFailed);
  EXPECT_TRUE(Told("IO Error 100: FileOpen failed"));
}

// -- Single channels --

class SimulateChannelsTest : public SimulateTest {
 protected:
  SimulateChannelsTest() {
    options.simulator = MonteCarlo;
    options.units = UnitsChannels;
    options.intervalMs = 0.01;
    options.channels = 30;
    options.seeds = Seeds{1.0, 2.0, 3.0};
  }

  /// Returns the number of values below the header of an exported list.
  std::ptrdiff_t Exported(const char* name) const {
    const std::string text = ReadWholeFile(folder.File(name));
    return std::count(text.begin(), text.end(), '\n') - 5;
  }
};

TEST_F(SimulateChannelsTest, SumsUpTheDwellsAndExportsThem) {
  options.runs = 2;
  options.dwellFile = folder.File("single.ops");
  const json summary = Summary();
  const json& single = summary["singleChannels"];
  EXPECT_EQ(single["channels"], 30);
  EXPECT_EQ(single["runs"], 2);
  EXPECT_GT(single["openTimes"]["count"], 30);
  EXPECT_NEAR(single["openTimes"]["mean"], 1.09, 0.3);  // 1 / (900 + 17.7) s; some 100 openings
  EXPECT_GT(single["latencies"]["mean"], 5.0);          // glutamate from 5 ms on
  EXPECT_LE(single["monitoredChannels"], 30);
  EXPECT_GE(single["openStateExits"], single["monitoredChannels"]);
  EXPECT_EQ(Exported("single.ops"), single["openTimes"]["count"]);
  EXPECT_EQ(Exported("single.sht"), single["closedTimes"]["count"]);
  EXPECT_EQ(Exported("single.lat"), single["latencies"]["count"]);
  EXPECT_EQ(summary["final"]["time"], 100.0);
  options.json = false;
  ASSERT_EQ(Run(), JobDone);
  ExpectParts({"Monte Carlo, 30 channel(s), 2 run(s)", "Open times   ", "Exits        "});
}

TEST_F(SimulateChannelsTest, EqualSeedsGiveEqualBytes) {
  options.dwellFile = folder.File("a");
  options.traceFile = folder.File("a.txt");
  const auto written = [this] {
    EXPECT_EQ(Run(), JobDone);
    return out.str() + ReadWholeFile(folder.File("a.ops")) + ReadWholeFile(folder.File("a.txt"));
  };
  const std::string first = written();
  EXPECT_EQ(written(), first);
  options.seeds = Seeds{4.0, 5.0, 6.0};
  EXPECT_NE(written(), first);
}

TEST_F(SimulateChannelsTest, TheMeanIsThatOfAllRuns) {
  options.meanFile = folder.File("mean.txt");
  options.runs = 2;
  const json summary = Summary();
  std::istringstream samples(ReadWholeFile(options.meanFile));
  std::string line;
  std::getline(samples, line);  // the interval
  bool half = false;
  double largest = 0.0;
  while (std::getline(samples, line)) {
    const double twice = 2.0 * std::stod(line);
    ASSERT_NEAR(twice, std::round(twice), 1e-3) << "channels of two runs";
    half = half || std::lround(twice) % 2 == 1;
    largest = std::max(largest, 0.5 * twice);
  }
  EXPECT_TRUE(half);
  EXPECT_NEAR(summary["mean"]["peak"]["value"], largest, 1e-4);
}

TEST_F(SimulateChannelsTest, ARunWithoutOpeningsIsDone) {
  options.settings = {"AutoValue=0"};
  const json single = Summary()["singleChannels"];
  EXPECT_EQ(single["openTimes"]["count"], 0);
  EXPECT_EQ(single["openTimes"]["mean"], nullptr);
}

}  // namespace
}  // namespace zelvane
