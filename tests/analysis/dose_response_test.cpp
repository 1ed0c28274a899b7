// Dose-response curves and batch scripts: the Hill fit against SciPy, simulated doses against runs by hand, scripts,
// templates, and the panel.
#include "analysis/dose_response.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "analysis/batch_script.h"
#include "analysis/dose_store.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/format_text.h"
#include "platform/index.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"
#include "support/drive_test.h"
#include "trace/program_random.h"

namespace zelvane {
namespace {

const std::string Model1993 = std::string(ZELVANE_DATA) + "/models/ampa_jonas_1993.mod";

class DoseTest : public StoreTest {
 protected:
  static void SetPairs(const std::vector<float>& conc, const std::vector<float>& response) {
    std::copy(conc.begin(), conc.end(), Dose.DoseConc.begin());
    std::copy(response.begin(), response.end(), Dose.DoseResponse.begin());
    CountDosePairs();
  }
};

TEST_F(DoseTest, TheHillFitGivesTheParametersAndErrorsOfLeastSquares) {
  // scipy.optimize.curve_fit (SciPy 1.10.1) on the same pairs: parameters, standard errors, sum of squares.
  const std::array<double, 5> expected = {0, 4.29581e-05, 1.117183, 1.011293, 0.003671931};
  const std::array<double, 5> standardErrors = {0, 3.57656e-06, 0.0981141, 0.0190023, 0.0216209};
  for (const double seed : {1000.0, 2000.0, 3000.0, 4000.0}) {
    SCOPED_TRACE(seed);
    BeginDoseResponse();
    Dose.DoseFitLimits[4] = {-1, 1};
    SetPairs({1e-6F, 3e-6F, 1e-5F, 3e-5F, 1e-4F, 3e-4F, 1e-3F, 3e-3F},
             {0.02F, 0.05F, 0.17F, 0.41F, 0.72F, 0.93F, 0.95F, 1.02F});
    AnalysisFit.AnalysisTolerance = 1e-9;
    SetSeeds(ProgramRandom, {seed, 2222, 3333});
    ASSERT_EQ(FitDoses(6), Outcome::Done);
    const std::array<double, 5> fitted = {0, Dose.DoseEC50, Dose.DoseSlope, Dose.DoseMax, Dose.DoseMin};
    for (std::size_t p = 1; p <= 4; ++p) {
      EXPECT_NEAR(fitted[p], expected[p], 0.02 * standardErrors[p]) << p;
      EXPECT_NEAR(Dose.DoseError[p], standardErrors[p], 0.01 * standardErrors[p]) << p;
    }
    EXPECT_NEAR(Dose.DoseResidual * 8, 0.001915703, 1e-4 * 0.001915703);
  }
}

TEST_F(DoseTest, AParameterAtItsLimitAndFewPairsHaveNoStandardErrors) {
  BeginDoseResponse();
  SetPairs({1e-6F, 1e-5F, 1e-4F, 1e-3F, 1e-2F}, {0, 0.1F, 0.5F, 0.9F, 1});
  Dose.DoseFitLimits[2] = {2, 5};
  FitDoses(4);
  EXPECT_NEAR(Dose.DoseSlope, 2, 0.01);
  EXPECT_TRUE(std::isnan(Dose.DoseError[1]));
  BeginDoseResponse();
  SetPairs({1e-6F, 1e-5F, 1e-4F, 1e-3F, 0}, {0.01F, 0.1F, 0.5F, 0.9F, 0});
  FitDoses(4);
  EXPECT_EQ(Dose.DoseCount, 4);
  EXPECT_TRUE(std::isnan(Dose.DoseError[1]));
}

TEST_F(DoseTest, AConcentrationOfZeroUsesTheQuotientBeforeIt) {
  std::array<double, 5> value = {0, -1e-4, 1, 2, 0.5};
  const std::array<float, 4> x = {0, 1e-4F, 0, 3e-4F};
  std::array<float, 4> curve{};
  HillCurve(value, x, curve);
  EXPECT_EQ(value[1], 1e-4) << "the magnitude of EC50";
  EXPECT_EQ(curve[0], 0.5F) << "the minimum";
  EXPECT_NEAR(curve[1], 1.25, 1e-6);
  EXPECT_EQ(curve[2], curve[1]);
  EXPECT_NEAR(curve[3], 0.5 + 1.5 * 0.75, 1e-6);
}

TEST_F(DoseTest, PairsThatCannotBeFittedAreTold) {
  BeginDoseResponse();
  CountDosePairs();
  EXPECT_EQ(FitDoses(4), Outcome::Refused);
  SetPairs({1e-4F, 1e-3F}, {0.5F, std::nanf("")});
  EXPECT_EQ(FitDoses(4), Outcome::Refused);
  EXPECT_EQ(notes, (Texts{"No curve was fitted: the table has no response other than 0.",
                          "No curve was fitted: not all pairs of the table are numbers."}));
  SetPairs({1e-4F, 0}, {0.5F, 0});
  EXPECT_EQ(FitDoses(4), Outcome::Done) << "a single pair";
}

TEST_F(DoseTest, ATemplateReadsItsStretchesOfTheTrace) {
  const auto stretches =
      ReadDoseTemplate("0, 10, 1e-5\n10,20, 0\n10, 20,1e-4\nwords\n20, 20, 1e-3\n90, 200, 1e-2");
  ASSERT_EQ(stretches.size(), 4U);
  Model.NumPoints = 100;
  for (int i = 0; i < 100; ++i) Trace.SimTrace[Index(i)] = std::floor(static_cast<float>(i) / 10.0F);
  TakeTemplate(stretches);
  EXPECT_EQ(Dose.TemplateCount, 4);
  EXPECT_EQ(Floats(Dose.DoseResponse.begin(), Dose.DoseResponse.begin() + 4), (Floats{0, 1, 0, 9}));
  EXPECT_EQ(notes.size(), 1U) << "a stretch outside the record";
  std::string many;
  for (int i = 0; i < 200; ++i) many += "0, 10, 1e-5\n";
  EXPECT_EQ(ReadDoseTemplate(many).size(), 99U);
}

TEST_F(DoseTest, ScriptsAreHeldToTheirLimits) {
  EXPECT_FALSE(ParseBatchScript("MULTI\n1 1\na.stm\n"));
  EXPECT_FALSE(ParseBatchScript(""));
  std::string text = "MULTISTIM of today\r\n25 9\r\n";
  for (int i = 0; i < 10'000; ++i) text += "dose" + std::to_string(i) + ".old.txt\r\n";
  const auto script = ParseBatchScript(text);
  ASSERT_TRUE(script);
  EXPECT_EQ(script->count, 20);
  EXPECT_EQ(script->profile, 6);
  EXPECT_EQ(script->names.size(), 20U);
  EXPECT_EQ(script->names[3], "dose3.stm");
  EXPECT_EQ(ParseBatchScript("MULTISTIM\n2\na\n")->profile, 1);
  EXPECT_LT(ParseBatchScript("MULTISTIM\n-1 1\n")->count, 0);
}

TEST_F(DoseTest, TheStimulusValueComparesMagnitudesWithTheSignedValue) {
  Model.NumPoints = 5;
  const Floats samples = {1, 2, -3, 1, 0.5F};
  std::copy(samples.begin(), samples.end(), Stimulus.Profile[0].begin());
  EXPECT_EQ(StimulusValue(0), 1) << "2, -3, then 1: every magnitude is above -3";
}

class DosePanelTest : public DriveTest {
 protected:
  /// Writes a script of four doses and their stimulus files, 100 samples each at 0.1 ms.
  std::string Script(int files) {
    std::ofstream script(folder.File("doses.ms"));
    script << "MULTISTIM\n" << files << " 1\n";
    for (int i = 0; i < 4; ++i) {
      std::vector<std::vector<float>> profiles(7, std::vector<float>(101, 0.0F));
      std::fill(profiles[0].begin(), profiles[0].end(), -0.07F);
      std::fill(profiles[1].begin() + 20, profiles[1].begin() + 60,
                1e-4F * std::pow(3.0F, static_cast<float>(i)));
      StimProfileSpans spans;
      for (std::size_t p = 0; p < 7; ++p) spans[p] = profiles[p];
      WriteStimProfiles(folder.File(FormatText("dose%d.stm", i)), 0.1F, spans);
      script << "dose" << i << ".abc\n";
    }
    return folder.File("doses.ms");
  }

  const std::string start = "open " + Model1993 +
                            "\nenter NumPoints 100\nenter ADInterval 0.1\npress Analysis\nenter FitMode 0\n"
                            "enter BaselinePts 0.8\nenter StartAnalysis 2\nenter PeakSearchPts 6\n";
};

TEST_F(DosePanelTest, AScriptGivesThePairsOfRunsByHandAndFitsThem) {
  const std::string script = Script(4);
  const auto lines = Run(start + "choose " + script +
                         "\npress FxnRunScript\nget ScriptRunning\nget FitMode\nget TableRow\n" +
                         "get AnalysisLimitsOn\nget DoseCount\npress FxnDRPlot\ncontrol DoseResultWord\n");
  const Values told = Told(lines);
  EXPECT_EQ(Values(told.end() - 6, told.end() - 1), (Values{1, 6, 5, 1, 4}));
  EXPECT_TRUE(PanelVisible("DoseResponsePanel"));
  const auto response = Dose.FittedResponse;
  EXPECT_EQ(Dose.DoseConc[2], 1e-4F * 9.0F);
  EXPECT_EQ(Dose.DoseFitLimits[3].hi, 7.0 * static_cast<double>(response[3]));
  Run(start + "answer yes\nopen " + folder.File("dose2.stm") +
      "\npress AcquireData\npress AN_AnalyzeButton\n");
  EXPECT_EQ(Analysis.Measures.PeakValue - Analysis.Measures.Baseline, response[2]);
}

TEST_F(DosePanelTest, AScriptGoesOnWithoutAFileAndEndsAtAStop) {
  const std::string script = Script(6);
  std::filesystem::remove(folder.File("dose1.stm"));
  const auto lines = Run(start + "choose " + script + "\npress FxnRunScript\nget DoseCount\n");
  EXPECT_EQ(LastValue(lines), 4);
  EXPECT_EQ(Dose.DoseConc[1], Dose.DoseConc[0]) << "the profiles as they stood";
  std::string all;
  for (const auto& line : lines) all += line.dump();
  EXPECT_NE(all.find("IO Error 100"), std::string::npos);
  EXPECT_NE(all.find("Row 2 is a run with the stimulus before it"), std::string::npos);
  EXPECT_NE(all.find("announces 6 stimulus files and names 4"), std::string::npos);

  EXPECT_EQ(LastValue(Run(start + "choose " + script +
                          "\nduring 2 press FxnStopRun\npress FxnRunScript\nget DoseCount\n")),
            0);
  EXPECT_EQ(Parameters.FitMode, FitDoseResponse)
      << "the first run was stopped; what follows the runs is done";
  const auto none =
      Run(start + "press FxnRunScript\nchoose " + folder.Path().string() + "\npress FxnRunScript\n");
  all.clear();
  for (const auto& line : none) all += line.dump();
  EXPECT_NE(all.find("Error finding *.ms script file"), std::string::npos);
  EXPECT_NE(all.find("The script cannot be read"), std::string::npos);
}

TEST_F(DosePanelTest, SimulatedDosesAreThoseOfScriptsAndThePanelShowsTheCurve) {
  const std::string script = Script(4);
  Run(start + "choose " + script + "\npress FxnRunScript\n");
  const auto response = Dose.DoseResponse;
  const auto lines = Run(
      start + "answer yes\nopen " + folder.File("dose0.stm") +
      "\npress FxnDRAnalysis\nenter-cell DoseTable 1 1 1e-4\nenter-cell DoseTable 2 1 3e-4\nenter-cell DoseTable 3 1 9e-4\n"
      "enter-cell DoseTable 4 1 27e-4\npress FxnDRSimulate\npress FxnDRPlot\nget DoseCount\n");
  EXPECT_EQ(LastValue(lines), 4);
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_NEAR(Dose.DoseResponse[i], -response[i], 1e-6 * std::fabs(response[i])) << i << ", a magnitude";
  EXPECT_EQ(Stimulus.Profile[1][30], 1e-4F) << "the stimulus returns";
  const Graph& graph = GraphNamed("DoseResponsePanel");
  EXPECT_TRUE(graph.x.log);
  EXPECT_EQ(graph.plots.size(), 5U) << "pairs, smooth curve, curve, EC50 and its place";
  EXPECT_EQ(GraphNamed("DoseResponsePanel.residual").plots.size(), 2U);
  Run(start + "press FxnDRAnalysis\nenter-cell DoseTable 1 2 0.1\npress FxnDRErase\n");
  EXPECT_TRUE(GraphNamed("DoseResponsePanel").plots.empty());
}

}  // namespace
}  // namespace zelvane
