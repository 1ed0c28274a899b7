// `measure` as a user types it: options, recordings of each kind, files of results.
#include "headless/commands/measure_command.h"

#include "analysis/analysis_store.h"
#include "analysis/results_files.h"
#include "analysis/table_text.h"
#include "headless/commands/job_test.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

const std::string Steps = Recordings + "abf2/18702001-step.abf";
const std::string StepsAsText = Recordings + "atf/18702001-step.atf";

class MeasureCommandTest : public JobTest {
 protected:
  MeasureCommandTest() {
    options.file = Steps;
    options.settings = {"FitMode=0", "BaselinePts=200", "StartAnalysis=20", "PeakSearchPts=4000"};
  }
  int Run(const MeasureOptions& changed) {
    return JobTest::Run([&](const JobStreams& streams) { return MeasureCommand(changed, streams); });
  }
  nlohmann::json Rows() {
    options.json = true;
    return Written([this](const JobStreams& streams) { return MeasureCommand(options, streams); })["rows"];
  }
  MeasureOptions options;
};

TEST_F(MeasureCommandTest, ATextOfSeveralSignalsGivesTheRowsOfTheSameRecordingInABF) {
  for (const int signal : {1, 2}) {
    options.file = Steps;
    options.channel = signal - 1;
    const auto binary = Rows();
    options.file = StepsAsText;
    options.channel = signal;
    const auto text = Rows();
    ASSERT_EQ(text.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
      SCOPED_TRACE(signal);
      EXPECT_EQ(text[i]["sweep"], i + 1);
      for (const char* measure : {"Base", "Amp", "Integral", "LatPeak"}) {
        const double expected = binary[i][measure];
        EXPECT_NEAR(text[i][measure].get<double>(), expected, 1e-4 * std::max(1.0, std::abs(expected)))
            << measure;
      }
    }
  }
  options.channel = 1;
  options.sweeps = {3, 3};
  EXPECT_EQ(Rows()[0]["sweep"], 3);
}

TEST_F(MeasureCommandTest, ACorrectionIsMadeOnceWhoeverAsksForIt) {
  const double plain = Rows()[1]["Base"];
  options.settings.push_back("RcRs=2e7");
  options.correct = true;
  const double corrected = Rows()[1]["Base"];
  // A steady current I at V = Vhold - Rs I is scaled by Vhold / V.
  EXPECT_NEAR(corrected, plain * -0.1 / (-0.1 - 2e7 * plain * 1e-12), 0.01 * std::abs(plain));
  EXPECT_NE(corrected, plain);
  options.settings.push_back("RsCmAuto=1");
  for (const std::string& file : {Steps, StepsAsText}) {
    for (const bool asked : {true, false}) {
      options.file = file;
      options.correct = asked;
      EXPECT_NEAR(Rows()[1]["Base"], corrected, 1e-4 * std::abs(corrected)) << file << asked;
    }
  }
}

TEST_F(MeasureCommandTest, AFilterTakesTheNoiseAndLeavesTheMean) {
  const auto plain = Rows()[0];
  options.filterKHz = 0.5;
  const auto filtered = Rows()[0];
  EXPECT_LT(filtered["BaseVar"].get<double>(), 0.5 * plain["BaseVar"].get<double>());
  EXPECT_NEAR(filtered["Base"], plain["Base"], 0.2 * std::sqrt(plain["BaseVar"].get<double>()));
}

TEST_F(MeasureCommandTest, SettingsOfAModelAreThoseOfItsPanel) {
  const std::string model = folder.File("settings.mod");
  Drive("press Analysis\nenter BaselineStart 3\nenter RiseStartFrac 0.3\nenter FitMode 0\nchoose " + model +
            "\npress SaveParameters\n",
        folder.Path().string());
  ASSERT_TRUE(std::filesystem::exists(model));
  options.model = model;
  options.settings = {"BaselinePts=200", "StartAnalysis=20", "PeakSearchPts=4000"};
  Rows();
  EXPECT_EQ(Analysis.BaselineStart, 3.0F);
  EXPECT_EQ(Analysis.RiseStartFrac, 0.3F);
}

TEST_F(MeasureCommandTest, AnIntervalMakesTheFirstLineOfAColumnASample) {
  std::string column = "0.5\n";
  for (int i = 1; i < 300; ++i) column += i == 100 ? "10\n" : "0\n";
  options.file = folder.File("column.asc");
  WriteWholeFile(options.file, column);
  options.settings = {"FitMode=0",       "BaselineStart=0",   "BaselinePts=1",
                      "StartAnalysis=0", "PeakSearchPts=250", "LatencyPos=0"};
  EXPECT_EQ(Rows()[0]["LatPeak"], 0.5 * 99.0) << "the first line is the interval";
  options.intervalMs = 0.123456789;
  for (const char* head : {"", "ATF\t1.0\n0 1\n\"pA\"\n"}) {  // an ATF without times has no interval either
    WriteWholeFile(options.file, head + column);
    const auto row = Rows()[0];
    EXPECT_NEAR(row["LatPeak"].get<double>(), 100.0 * 0.123456789, 1e-5);
    EXPECT_EQ(row["Base"], 0.5);
  }
}

TEST_F(MeasureCommandTest, ItsFilesAreThoseOfThePanel) {
  const auto written = [this](const char* name) {
    options.outFile = folder.File(name);
    EXPECT_EQ(Run(options), JobDone) << err.str();
    return ReadWholeFile(options.outFile);
  };
  const std::string measures = written("a.res");
  EXPECT_TRUE(measures.starts_with(MeasuresHeader()));
  EXPECT_EQ(std::count(measures.begin(), measures.end(), '\n'), 4);
  EXPECT_NE(measures.find("\n\"" + Steps + "\", 3, 2, "), std::string::npos) << "rows count from 0";
  const auto table = ParseTable(written("a.tbl"));
  ASSERT_TRUE(table);
  ASSERT_EQ(table->rows.size(), 3U);
  EXPECT_EQ(table->dataPath, Steps);
  EXPECT_NEAR(table->rows[2].value[5], Rows()[2]["Amp"].get<float>(), 1e-5F);
}

TEST(ParseSweepsTest, TakesARangeOrOneSweep) {
  const auto range = ParseSweeps("3-10");
  ASSERT_TRUE(range);
  EXPECT_EQ(range->first, 3);
  EXPECT_EQ(range->last, 10);
  EXPECT_EQ(ParseSweeps("7")->last, 7);
  for (const char* wrong : {"", "0", "5-2", "-3", "a-b", "1-2-3"}) EXPECT_FALSE(ParseSweeps(wrong)) << wrong;
}

TEST_F(MeasureCommandTest, TheCommandLineRefusesWhatItCannotDo) {
  std::vector<MeasureOptions> wrong(5, options);
  wrong[0].outFile = "x.txt";
  wrong[1].channel = 15;
  wrong[2].sweeps = {1, 10000};
  wrong[3].settings = {"NoSuchField=1"};
  wrong[4].file += "x";
  for (const MeasureOptions& changed : wrong) {
    EXPECT_EQ(Run(changed), &changed == &wrong[4] ? JobFailed : JobMisused);
    EXPECT_NE(err.str(), "");
  }
  options.file = folder.Written("words.asc", "words\n");
  EXPECT_EQ(Run(options), JobFailed);
  EXPECT_EQ(err.str(),
            "! File error: words.asc was not read: line 1 holds no number, or a number with a comma.\n");
  stop = true;
  options.outFile = folder.File("stopped.csv");
  EXPECT_EQ(Run(options), JobFailed);
  EXPECT_FALSE(std::filesystem::exists(options.outFile));
}

}  // namespace
}  // namespace zelvane
