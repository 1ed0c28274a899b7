// Filter, noise, transform and export, used as a user does, and the views that follow.
#include <numeric>
#include <utility>

#include "support/drive_test.h"

namespace zelvane {
namespace {

using TraceViewsTest = DriveTest;

constexpr char NoisyTrace[] =
    "enter NumPoints 2000\nenter ADInterval 0.01\npress FxnMenuFilter\nset NoiseMean 10\nset AutoNoiseSTD 2\n"
    "press FxnCreateGaussNoise\n";

Floats Samples(const nlohmann::json& line) {
  return line.at("value").get<Floats>();
}

double Mean(const Floats& samples) {
  return std::accumulate(samples.begin(), samples.end(), 0.0) / static_cast<double>(samples.size());
}

double Deviation(const Floats& samples) {
  const double mean = Mean(samples);
  double sum = 0.0;
  for (const float x : samples) sum += (x - mean) * (x - mean);
  return std::sqrt(sum / static_cast<double>(samples.size()));
}

TEST_F(TraceViewsTest, NoiseHasTheMeanAndWidthTypedAndAddsUp) {
  const auto lines = Run(std::string(NoisyTrace) +
                         "slice SimTrace 0 2000\npress FxnRectNoise\nslice SimTrace 0 2000\nget TraceValid\n"
                         "get RcFiltered\ngraph MainPanel");
  const auto gauss = Samples(lines.at(0));
  auto sum = Samples(lines.at(1));
  EXPECT_NEAR(Mean(gauss), 10.0, 5.0 * 2.0 / std::sqrt(2000.0));
  EXPECT_NEAR(Deviation(gauss), 2.0, 0.2);
  for (std::size_t i = 0; i < sum.size(); ++i) sum[i] -= gauss[i];
  EXPECT_NEAR(Mean(sum), 10.5, 0.05);  // flat noise between 0 and 1 has the mean 0.5
  EXPECT_NEAR(Deviation(sum), std::sqrt(1.0 / 12.0), 0.02);
  EXPECT_EQ(lines.at(2).at("value"), 1);
  EXPECT_EQ(lines.back().at("plots").at(0).at("count"), 2000);
}

// After a Gaussian filter the variance of white noise is multiplied by the sum of the squares of the
// coefficients.
TEST_F(TraceViewsTest, ACornerTypedInEitherFieldReachesTheFilterAndTheOtherField) {
  const auto lines =
      Run(std::string(NoisyTrace) +
          "set AutoFilterFc 5\npress FxnApplyFilter\nslice SimTrace 20 1900\nget AutoFilterFc\n"
          "enter AutoFilterFc 1\npress FxnFc\nget AutoFilterFc\npress FxnFilterButton\n"
          "slice SimTrace 100 1800");
  const auto expected = [](double fc) {
    const double sigma = 0.132505 / (fc * 0.01);
    return 2.0 / std::sqrt(2.0 * std::sqrt(3.14159265) * sigma);
  };
  EXPECT_NEAR(Deviation(Samples(lines.at(0))), expected(5.0), 0.15 * expected(5.0));
  EXPECT_EQ(lines.at(1).at("value"), 5);
  EXPECT_EQ(lines.at(2).at("value"), 1)
      << "the field of the filter panel shows the one typed on the main panel";
  EXPECT_NEAR(Deviation(Samples(lines.back())), expected(1.0), 0.3 * expected(1.0));
}

TEST_F(TraceViewsTest, ACornerThatIsNoneIsTold) {
  EXPECT_EQ(Told("press FxnMenuFilter; press FxnRectNoise; set AutoFilterFc -2; press FxnApplyFilter"),
            Values{"The corner of the filter must be above 0 kHz."});
}

TEST_F(TraceViewsTest, TransformsWorkOnWhatTheTraceHolds) {
  EXPECT_EQ(
      Told(
          "enter NumPoints 10\nenter ADInterval 0.5\npress FxnMenuTransform\nset AddConstant 3\npress FxnAdd\n"
          "press FxnAdd\nenter MultiplyConstant -2\npress FxnMultiply\nslice SimTrace 0 11\n"
          "set ParseConstant 4\npress FxnParseData\nget NumPoints\nget ADInterval\nget TraceParsed\n"
          "press FxnSimRefresh"),
      (Values{{-12, -12, -12, -12, -12, -12, -12, -12, -12, -12, 0},
              "The time interval has been changed since last simulation; do NOT refresh data.",
              3,
              2,
              1,
              "Cannot refresh since data has been parsed (resampled)."}));
  EXPECT_EQ(GraphNamed("RsCorrectionPanel.trace").plots.at(0).y.size(), 3U);
}

TEST_F(TraceViewsTest, AnExportAppendsItsBlock) {
  const std::string path = folder.File("out.asc");
  const std::string exporting = "choose " + path + "\npress ExportTrace\n";
  EXPECT_EQ(
      Told(
          "press ExportTrace\nenter NumPoints 3\nenter ADInterval 0.5\npress FxnMenuFilter\nset AutoNoiseSTD 0\n"
          "press FxnCreateGaussNoise\npress FxnMenuTransform\nset AddConstant -1.5\npress FxnAdd\n" +
          exporting + exporting + "choose /no/such/folder/x.asc\npress ExportTrace\npress ExportAnalysis"),
      (Values{"There is no trace to export.", "IO Error 100: FileOpen failed",
              "No exponential fit has been made: there is no curve to export."}));
  const std::string block = "5.000000e-01\n-1.500000e+00\n-1.500000e+00\n-1.500000e+00\n";
  EXPECT_EQ(ReadWholeFile(path), block + block);
}

TEST_F(TraceViewsTest, AnExportLeavesTheRecordingThatItComesFrom) {
  const std::string path = folder.Written("own.asc", "0.5\n1\n2\n");
  const auto lines =
      Run("answer yes\nanswer yes\nopen " + path + "\nchoose " + path + "\npress ExportTrace\n");
  EXPECT_EQ(lines.back().at("text"),
            path + " is the file that the trace was read from. Choose another name.");
  EXPECT_EQ(ReadWholeFile(path), "0.5\n1\n2\n");
}

TEST_F(TraceViewsTest, LimitsOfTheGraphPropertiesHoldInTheUnitOfTheAxisAndWrongOnesLeaveTheView) {
  for (const auto& [task, name, perMs] :
       {std::tuple{"", "MainPanel", 1.0}, {"press Analysis\n", "AnalysisPanel", 20.0}}) {
    const std::string view = FormatText("graph %s\n", name);
    const auto lines =
        Run(std::string("enter NumPoints 1000\nenter ADInterval 0.05\npress FxnMenuFilter\n") +
            "press FxnRectNoise\n" + task + view + "press FxnGraphProperties\nget GraphRightSample\n" +
            "enter GraphAutoX 0\nenter GraphAutoY 0\nenter GraphLeftTime 40.012\nenter GraphRightTime 30\n" +
            "press GraphPropertiesOk\nenter GraphRightTime 45\nenter GraphYMin 5\nenter GraphYMax 5\n" +
            "press GraphPropertiesOk\n" + view + "enter GraphYMax 7\npress GraphPropertiesOk\n" + view +
            "press FxnScaleAxes\n" + view);
    ASSERT_EQ(lines.size(), 7U) << name;
    EXPECT_EQ(lines[2]["note"], "The left limit must be below the right limit.");
    EXPECT_EQ(lines[3]["note"], "The lower limit must be below the upper limit.");
    EXPECT_EQ(lines[4], lines[0]);
    const auto& axes = lines[5]["axes"];
    EXPECT_NEAR(axes["x"]["min"].get<double>(), 40.012 * perMs, 1e-4) << "between two samples";
    EXPECT_NEAR(axes["x"]["max"].get<double>(), 45.0 * perMs, 1e-6);
    EXPECT_EQ(axes["y"]["min"], 5);
    EXPECT_EQ(axes["y"]["max"], 7);
    EXPECT_EQ(lines[6]["axes"]["x"]["scaling"], "auto");
  }
}

TEST_F(TraceViewsTest, ScaleCommandsWorkOnTheTraceUnderItsMarks) {
  const auto lines =
      Run("open \"" ZELVANE_DATA
          "/config.mod\"\nset SimulatorKind 0\npress AcquireData\npress Analysis\n"
          "enter StartAnalysis 0\npress AN_AnalyzeButton\nview AnalysisPanel y -99 99\npress FxnScaleAutoY\n"
          "graph AnalysisPanel\nenter BaselineStart 5\nenter BaselinePts -2\npress FxnScaleAxes\n"
          "get BaselineStart\nget ViewedPoints\n");
  ASSERT_GE(lines.size(), 3U);
  const auto& graph = lines[lines.size() - 3];
  ASSERT_GT(graph["plots"].size(), 1U) << "marks";
  const double low = graph["plots"][0]["y"][0];
  const double high = graph["plots"][0]["y"][1];
  EXPECT_NEAR(graph["axes"]["y"]["min"].get<double>(), low - (high - low) / 18.0, (high - low) / 50.0);
  EXPECT_NEAR(lines[lines.size() - 2]["value"].get<double>(), 3.0, 1e-6)
      << "cursors 1 and 2 have changed places";
  EXPECT_GT(FieldNumber(FindField("BaselinePts")), 0.0);
  EXPECT_EQ(LastValue(lines), Model.NumPoints);
}

TEST_F(TraceViewsTest, AZoomedAnalysisPlotExportsWhatLiesBetweenTheZoomCursors) {
  const std::string trace =
      "enter NumPoints 100\nenter ADInterval 0.5\npress FxnMenuFilter\npress FxnRectNoise\npress Analysis\n"
      "press FxnMenuZoomArea\ncursor AnalysisPanel 5 39.5 1\ncursor AnalysisPanel 6 20 0\n";
  const auto exported = [&](const std::string& zoom) {
    const std::string path = folder.File("view.asc");
    const auto lines = Run(trace + zoom + "slice SimTrace 20 20\nchoose " + path + "\npress ExportTrace\n");
    std::string text = ReadWholeFile(path);
    std::filesystem::remove(path);
    return std::pair{text, lines.front().at("value").at(0).get<float>()};
  };
  const auto count = [](const std::string& text) { return std::count(text.begin(), text.end(), '\n'); };
  const auto [part, first] = exported("press AnalysisZoom\n");
  EXPECT_EQ(count(part), 1 + 20) << "the interval, samples 20 to 39";
  EXPECT_NEAR(std::stof(part.substr(part.find('\n'))), first, 1e-5);
  EXPECT_EQ(count(exported("press AnalysisZoom\npress AnalysisFullScale\n").first), 1 + 100);
  EXPECT_EQ(count(exported("").first), 1 + 100) << "the corners stand there, and nothing is zoomed yet";
}

TEST_F(TraceViewsTest, WhatWasMeasuredOfATraceIsGoneWithIt) {
  const std::string measured =
      "open \"" ZELVANE_DATA
      "/config.mod\"\nset SimulatorKind 0\npress AcquireData\npress Analysis\n"
      "enter PeakAvePts 1\nenter StartAnalysis 0\npress AN_AnalyzeButton\ncontrol PeakValue\n"
      "press FxnAnalysisDone\n";
  for (const char* change :
       {"press AcquireData\n", "press FxnAdd\n", "press FxnSimRefresh\n", "press FxnFilterButton\n"}) {
    const auto lines = Run(measured + change + "press Analysis\ncontrol PeakValue\ngraph AnalysisPanel\n");
    ASSERT_GE(lines.size(), 3U);
    EXPECT_NE(lines.at(lines.size() - 3).at("value"), "") << change;
    EXPECT_EQ(lines.at(lines.size() - 2).at("value"), "") << change;
    EXPECT_EQ(lines.back().at("plots").size(), 1U) << change << "the trace alone";
  }
}

TEST_F(TraceViewsTest, ThePanelInFrontIsPrintedOrTheOneAskedFor) {
  std::string printed;
  for (const auto& line : Run("press FxnPrintSetup\npress PrintMainScreen\npress RsCmFilterFxn\n"
                              "press FxnPrintSetup\npress PrintAnalysis")) {
    printed += line.value("print", "?") + ' ';
  }
  EXPECT_EQ(printed, "MainPanel MainPanel RsCorrectionPanel AnalysisPanel ");
}

}  // namespace
}  // namespace zelvane
