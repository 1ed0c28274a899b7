// `fit` as a user types it: the same numbers as the buttons, several starts, stops and bad input.
#include "headless/commands/fit_command.h"

#include "headless/commands/job_test.h"
#include "model/model_store.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

const std::string Examples = ZELVANE_DATA "/examples/fit/";

class FitCommandTest : public JobTest {
 protected:
  FitCommandTest() {
    options.list = Examples + "nmda.lst";
    options.seeds = Seeds{1, 2, 3};
    options.iterations = 60;
    options.restarts = 1;
  }
  int Run(const FitOptions& changed) {
    return JobTest::Run([&](const JobStreams& streams) { return FitCommand(changed, streams); });
  }
  nlohmann::json Result() {
    options.json = true;
    return Written([this](const JobStreams& streams) { return FitCommand(options, streams); });
  }
  FitOptions options;
};

TEST_F(FitCommandTest, TheRatesAreThoseOfTheButtonsBitForBit) {
  options.seeds = Seeds{1234, 5678, 9012};  // those of Drive
  const auto rates = Result()["rates"];
  const auto lines =
      Drive("choose " + options.list +
                "; press FxnListFile; enter FitNumIterations 60; enter FitNumRestarts 1; answer no; "
                "answer yes; answer no; answer no; answer no; press FxnStartFitButton; get FitResultCode",
            folder.Path().string());
  EXPECT_EQ(lines.back().at("value"), 2);
  for (const auto& rate : rates) {
    const std::string name = rate["name"];
    const double after = rate["after"];
    EXPECT_TRUE(name != "K2,3" || after == Model.KOn[2]) << after;
    EXPECT_TRUE(name != "K4,3" || after == Model.KOff[3]) << after;
    EXPECT_TRUE(name != "K1,2" || after == Model.KOn[1]) << after;
  }
}

TEST_F(FitCommandTest, SeveralStartsAreSortedAndTheBestIsWritten) {
  options.starts = 3;
  options.outFile = folder.File("best.mod");
  options.curvesFile = folder.File("best.fit");
  options.logFile = folder.File("fit.log");
  const auto result = Result();
  ASSERT_EQ(result["starts"].size(), 3U);
  EXPECT_LE(result["starts"][0]["sumOfSquares"], result["starts"][1]["sumOfSquares"]);
  EXPECT_LE(result["starts"][1]["sumOfSquares"], result["starts"][2]["sumOfSquares"]);
  EXPECT_EQ(result["sumOfSquares"], result["starts"][0]["sumOfSquares"]);
  EXPECT_GE(result["share"].get<double>(), 1.0 / 3.0);
  for (const auto& rate : result["rates"]) {
    EXPECT_TRUE(rate["name"] != "K2,3" || rate["after"] == Model.KOn[2]);
  }
  EXPECT_EQ(folder.Names().size(), 3U);
}

/// Residual and rates as two other seeds found them, with ten times as many iterations.
TEST_F(FitCommandTest, ARecordedSodiumCurrentIsFittedWithThePublishedScheme) {
  options.list = ZELVANE_DATA "/examples/sodium/sodium.lst";
  options.iterations = 1000;
  options.restarts = 2;
  const auto result = Result();
  EXPECT_NEAR(result["sumOfSquares"].get<double>(), 4.972e6, 0.02e6);
  EXPECT_NEAR(Model.KOn[3], 4187.0, 40.0);
  EXPECT_NEAR(Model.KOff[1], 68.9, 2.0);
  EXPECT_NEAR(Model.KOn[5], 2390.0, 40.0);
  EXPECT_NEAR(Model.KOn[1], 3.0 * Model.KOn[3], 0.01);  // the gates stay independent
}

TEST_F(FitCommandTest, AStopKeepsTheBestSoFar) {
  stop = true;
  options.outFile = folder.File("best.mod");
  EXPECT_EQ(Run(options), JobFailed);
  EXPECT_NE(err.str().find("best so far"), std::string::npos);
  EXPECT_EQ(folder.Names(), Texts{"best.mod"});
}

TEST_F(FitCommandTest, WrongNamesLimitsAndPairsAreTold) {
  FitOptions wrong = options;
  wrong.free = {"KOn[99]"};
  EXPECT_EQ(Run(wrong), JobMisused);
  wrong = options;
  wrong.limits = {"KOff[1]=5"};
  EXPECT_EQ(Run(wrong), JobMisused);
  wrong = options;
  wrong.list.clear();
  EXPECT_EQ(Run(wrong), JobMisused);
  wrong.pairs = {{Examples + "nmda_50uM.stm", Examples + "nmda_50uM.abf"}};
  wrong.model = Examples + "nmda_start.mod";
  wrong.sweep = 2;
  EXPECT_EQ(Run(wrong), JobFailed);
  EXPECT_NE(err.str().find("no sweep 2"), std::string::npos);
}

}  // namespace
}  // namespace zelvane
