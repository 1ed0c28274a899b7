// `dose`, `batch` and `average` as a user types them.
#include <filesystem>

#include "analysis/dose_store.h"
#include "formats/stimulus_read.h"
#include "headless/commands/average_command.h"
#include "headless/commands/dose_command.h"
#include "headless/commands/job_test.h"
#include "platform/format_text.h"
#include "stimulus/stimulus_file.h"

namespace zelvane {
namespace {

const std::string Nmda = std::string(ZELVANE_DATA) + "/models/nmda_lester_1992.mod";

using DoseCommandsTest = JobTest;

TEST_F(DoseCommandsTest, DosesBecomeACurveWithItsErrors) {
  DoseOptions options;
  options.model = Nmda;
  options.concentrations = *ParseConcentrations("1e-6:1e-2:9");
  options.seeds = Seeds{1, 2, 3};
  options.outFile = folder.File("curve.csv");
  options.json = true;
  const auto peak = Written([&](const JobStreams& streams) { return DoseCommand(options, streams); });
  ASSERT_EQ(peak["pairs"].size(), 9U);
  EXPECT_LT(peak["max"]["value"].get<double>(), 0) << "an inward current keeps its sign";
  const double ec50 = peak["EC50"]["value"];
  EXPECT_GT(ec50, 1e-5);
  EXPECT_LT(ec50, 1e-3);
  EXPECT_LT(peak["EC50"]["standardError"].get<double>(), 0.1 * ec50);
  EXPECT_TRUE(ReadWholeFile(options.outFile).starts_with("Concentration (M),Response,Fit\n1e-06,"));
  options.measure = DoseArea;
  EXPECT_EQ(Written([&](const JobStreams& streams) { return DoseCommand(options, streams); })["units"],
            "pA ms");
  options.concentrations.resize(4);
  const auto few = Written([&](const JobStreams& streams) { return DoseCommand(options, streams); });
  EXPECT_TRUE(few["EC50"]["standardError"].is_null());
}

TEST_F(DoseCommandsTest, ConcentrationsAreAListOrARange) {
  EXPECT_EQ(ParseConcentrations("0,1e-6")->size(), 2U);
  EXPECT_NEAR((*ParseConcentrations("1e-6:1e-4:3"))[1], 1e-5F, 1e-11F);
  for (const char* text : {"", "a", "1,,2", "-1", "nan", "inf", "1e-6:1e-2", "1e-6:1e-2:0", "1e-6:1e-2:101",
                           "1e-2:1e-6:3", "0:1:3", "1e60"})
    EXPECT_FALSE(ParseConcentrations(text)) << text;
}

TEST_F(DoseCommandsTest, AScriptWritesItsTracesAndItsPairs) {
  BatchOptions options;
  options.model = Nmda;
  options.script = folder.Written("d.ms", "MULTISTIM\n2 1\nlow\nhigh\n");
  for (const auto& [name, dose] : {std::pair{"low", 1e-5F}, std::pair{"high", 1e-3F}}) {
    std::vector<std::vector<float>> profiles(StimFileProfiles, std::vector<float>(101, 0.0F));
    std::fill(profiles[0].begin(), profiles[0].end(), -0.07F);
    std::fill(profiles[1].begin() + 10, profiles[1].begin() + 60, dose);
    StimProfileSpans spans;
    for (std::size_t p = 0; p < spans.size(); ++p) spans[p] = profiles[p];
    WriteStimProfiles(folder.File(std::string(name) + ".stm"), 1.0F, spans);
  }
  options.settings = {"NumPoints=100", "ADInterval=1", "StartAnalysis=10", "PeakSearchPts=60"};
  options.outFolder = folder.File("out");
  options.json = true;
  const auto result = Written([&](const JobStreams& streams) { return BatchCommand(options, streams); });
  ASSERT_EQ(result["pairs"].size(), 2U);
  EXPECT_FLOAT_EQ(result["pairs"][1]["concentration"].get<float>(), 1e-3F);
  for (const char* file : {"01_low.atf", "02_high.atf", "doses.csv"})
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(options.outFolder) / file)) << file;
  options.script = folder.Path().string();
  EXPECT_EQ(Run([&](const JobStreams& streams) { return BatchCommand(options, streams); }), JobFailed);
}

TEST_F(DoseCommandsTest, SweepsOfSeveralFilesGoIntoOneAverage) {
  AverageOptions options;
  options.files = {Recordings + "abf2/20101002.abf", Recordings + "abf2/20101002.abf"};
  options.settings = {"WaveBaselineStart=0", "WaveBaselinePts=2", "WaveStartAnalysis=2"};
  options.outFile = folder.File("mean.atf");
  options.varianceFile = folder.File("variance.csv");
  options.json = true;
  for (const int align : {1, 3, 4, 5}) {
    options.align = align;
    const auto summary = Written([&](const JobStreams& streams) { return AverageCommand(options, streams); });
    EXPECT_EQ(summary["sweeps"], 6);
    EXPECT_TRUE(ReadWholeFile(options.varianceFile).starts_with("Time (ms),Mean,Variance,Sweeps\n"));
  }
  options.align = 2;
  EXPECT_EQ(Run([&](const JobStreams& streams) { return AverageCommand(options, streams); }), JobMisused)
      << "free needs --at";
  options.align = 1;
  options.files.push_back(Recordings + "abf1/130618-1-12.abf");
  std::filesystem::remove(options.outFile);
  EXPECT_EQ(Run([&](const JobStreams& streams) { return AverageCommand(options, streams); }), JobFailed)
      << "another interval";
  EXPECT_FALSE(std::filesystem::exists(options.outFile));
}

}  // namespace
}  // namespace zelvane
