// RsCorrectionPanel, used as a user does.
#include <cstring>

#include "support/drive_test.h"

namespace zelvane {
namespace {

constexpr char Trace1000[] =
    "enter NumPoints 1000\nenter ADInterval 0.01\npress FxnMenuFilter\nset NoiseMean -50\n"
    "press FxnCreateGaussNoise\npress RsCmFilterFxn\n";

using RsCorrectionPanelTest = DriveTest;

TEST_F(RsCorrectionPanelTest, OpensWithTheLinearRelationAndGoesBackToTheFormerTask) {
  const auto lines = Run("press RsCmFilterFxn\npanels\ngraph RsCorrectionPanel.iv\npress FxnDoneRC\npanels");
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].at("tag"), "RC");
  EXPECT_EQ(lines[1].at("plots").at(0).at("y"), nlohmann::json({-100, 100}));
  EXPECT_EQ(lines[2].at("tag"), "MN");
}

TEST_F(RsCorrectionPanelTest, CorrectsOnceAndTellsTheSecondTime) {
  const std::string look = "control RsCmStatus; slice SimTrace 1 1; ";
  const std::string correct = "press RC_FilterCorrectLinearButton; ";
  const auto told = Told(Trace1000 + look + "answer yes; answer yes; " + correct + look + correct + look +
                         "get RsCorrected");
  ASSERT_EQ(told.size(), 11U);
  const auto& trace = told[2];
  const auto& corrected = told[5];
  EXPECT_NE(corrected, trace);
  EXPECT_EQ(told, (Values{"RsCm UnCorrected", "red", trace, "RsCm Corrected", "green", corrected,
                          "Data has already been corrected for series resistance errors", "RsCm Corrected",
                          "green", corrected, 1}));
}

TEST_F(RsCorrectionPanelTest, ANoAndAMissingRelationLeaveTheTrace) {
  EXPECT_EQ(Told(std::string(Trace1000) +
                 "answer no; press RC_FilterCorrectLinearButton; answer yes; "
                 "press RC_FilterCorrectNonlinearButton; get RsCorrected; control RsCmStatus"),
            (Values{"No IV curve loaded for correction.", 0, "RsCm UnCorrected", "red"}));
}

TEST_F(RsCorrectionPanelTest, ACircuitThatIsNoneIsRefusedInWords) {
  const std::string filter = "answer yes\npress RC_FilterConductanceButton\nget RcFiltered\n";
  EXPECT_EQ(Told(Trace1000 + ("set RcRs 0\n" + filter) + "set RcRs 1e7\nset RcCm 0\n" + filter),
            (Values{"Series resistance must be above 0 Ohms. A filter needs a resistance.", 0, 1}))
      << "a cell without capacitance only divides the voltage";
  EXPECT_EQ(GraphNamed("RsCorrectionPanel.trace").y.title, "RC-Filt(pA)");
}

TEST_F(RsCorrectionPanelTest, ATraceLongerThanTheRecordLastMadeIsFilteredInPartAndThatIsTold) {
  const auto told = Told(
      "enter NumPoints 20000\npress FxnMenuTransform\nset AddConstant 100\npress FxnAdd\npress RsCmFilterFxn\n"
      "answer yes\npress RC_FilterConductanceButton\nslice SimTrace 10239 2");
  EXPECT_EQ(
      told.at(0),
      "Only the first 10240 points were filtered: as many as the record last made has. The others are as "
      "they were.");
  EXPECT_NE(told.at(1).at(0), 100);
  EXPECT_EQ(told.at(1).at(1), 100);
}

TEST_F(RsCorrectionPanelTest, TheLagsTimeConstantFollowsItsCorner) {
  EXPECT_EQ(Told("press RsCmFilterFxn\nenter RcLagFc 1591.549431\ncontrol RcLagTau"), Values{"0.0001"});
}

TEST_F(RsCorrectionPanelTest, LoadsARelationAndGoesBackToTheLinearOneForTooFewPoints) {
  folder.Written("five.iv", "-0.2, -90\n-0.1,-30\r\n0 , 0\n0.1\t50\n0.2,120\nend\n0.3, 400\n");
  folder.Written("four.iv", "-0.2, -90\n-0.1,-30\n0, 0\n0.1, 50\n");
  const auto load = [&](const char* name) {
    return "choose " + folder.File(name) +
           "\npress RC_LoadIVButton\nget RcIvCount\nget RcIvLoaded\ncontrol RcIvFileName\n";
  };
  EXPECT_EQ(Told("press RsCmFilterFxn\n" + load("five.iv") + load("four.iv") + load("none.iv")),
            (Values{5, 1, folder.File("five.iv"), "! Revert to linear IV", 3, 1, "linear",
                    "Error Reading Raw Data IV curve [" + folder.File("none.iv") + "]. \n", 3, 1, "linear"}));
}

TEST_F(RsCorrectionPanelTest, AFileIsCorrectedIntoAnother) {
  const std::string source = Recordings + "abf1/130618-1-12.abf";
  const std::string target = folder.File("out.abf");
  const std::string correct = "\npress FxnFileCorrect\n";
  const auto told = Told("press RsCmFilterFxn\nchoose " + source + "\nchoose " + source + correct +
                         "choose " + source + "\nchoose " + target + correct + "slice SimTrace 0 3\n");
  EXPECT_EQ(told.front(), "Cannot overwrite file; choose a different filename or location.");
  const std::string bytes = ReadWholeFile(target);
  const auto number = [&](std::size_t offset) {
    std::int32_t value = 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
  };
  EXPECT_EQ(number(10), Model.NumPoints);
  EXPECT_EQ(number(16), Trace.EpisodeCount);
  EXPECT_EQ(number(138), Model.NumPoints / Trace.EpisodeCount);
  ASSERT_EQ(bytes.size(), static_cast<std::size_t>(number(40) * 512 + Model.NumPoints * 4));
  float first = 0.0F;
  std::memcpy(&first, bytes.data() + number(40) * 512, sizeof first);
  EXPECT_EQ(first, told.back().at(0).get<float>());
}

TEST_F(RsCorrectionPanelTest, ACorrectedFileIsShownAsEveryRecordingAndAFailedOneIsNot) {
  const std::string source = Recordings + "abf1/130618-1-12.abf";
  const std::string correct = "; choose " + folder.File("out.abf") + "; press FxnFileCorrect; ";
  const std::string look = "control NumPoints; control ADInterval; control RcFileName; control RsCmStatus; ";
  const auto told = Told("press RsCmFilterFxn; choose " + source + correct + look + "choose " +
                         folder.Written("bad.abf", "ABF") + correct +
                         "control RsCmStatus; get TraceValid; control RcFileName; control DataName");
  ASSERT_EQ(told.size(), 11U);
  EXPECT_EQ(told[0], Model.NumPoints);
  EXPECT_EQ(told[1].get<float>(), Model.ADInterval);
  EXPECT_EQ(Values(told.begin() + 2, told.end()),
            (Values{source, "RsCm Corrected", "green", " Invalid ABF file.", "RsCm UnCorrected", "red", 0, "",
                    ""}));
}

}  // namespace
}  // namespace zelvane
