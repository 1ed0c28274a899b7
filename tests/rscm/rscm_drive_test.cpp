// RsCorrectionPanel as a user presses it.
#include <cstring>

#include "support/drive_test.h"

namespace zelvane {
namespace {

constexpr char Trace1000[] =
    "enter NumPoints 1000\nenter ADInterval 0.01\npress FxnMenuFilter\nset NoiseMean -50\n"
    "press FxnCreateGaussNoise\npress RsCmFilterFxn\n";

const nlohmann::json* PopupIn(const std::vector<nlohmann::json>& lines, const std::string& text) {
  for (const auto& line : lines) {
    if (line.contains("text") && line["text"] == text) return &line;
  }
  return nullptr;
}

using RsCorrectionPanelTest = DriveTest;

TEST_F(RsCorrectionPanelTest, OpensWithTheLinearRelationAndGoesBackToTheFormerTask) {
  const auto lines = Run("press RsCmFilterFxn\npanels\ngraph RsCorrectionPanel.iv\npress FxnDoneRC\npanels");
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].at("tag"), "RC");
  EXPECT_EQ(lines[1].at("plots").at(0).at("y"), nlohmann::json({-100, 100}));
  EXPECT_EQ(lines[2].at("tag"), "MN");
}

TEST_F(RsCorrectionPanelTest, CorrectsOnceAndTellsTheSecondTime) {
  const auto lines = Run(std::string(Trace1000) +
                         "control RsCmStatus\nanswer yes\nanswer yes\npress RC_FilterCorrectLinearButton\n"
                         "control RsCmStatus\nslice SimTrace 0 5\n"
                         "press RC_FilterCorrectLinearButton\nslice SimTrace 0 5\nget RsCorrected");
  EXPECT_EQ(lines.back().at("value"), 1);
  EXPECT_NE(PopupIn(lines, "Data has already been corrected for series resistance errors"), nullptr);
  std::vector<nlohmann::json> states;
  std::vector<nlohmann::json> samples;
  for (const auto& line : lines) {
    if (line.value("name", "") == "RsCmStatus") states.push_back({line["value"], line["colour"]});
    if (line.value("name", "") == "SimTrace") samples.push_back(line["value"]);
  }
  EXPECT_EQ(states.at(0), nlohmann::json({"RsCm UnCorrected", "red"}));
  EXPECT_EQ(states.at(1), nlohmann::json({"RsCm Corrected", "green"}));
  EXPECT_EQ(samples.at(0), samples.at(1));
}

TEST_F(RsCorrectionPanelTest, ANoAndAMissingRelationLeaveTheTrace) {
  const auto lines = Run(std::string(Trace1000) +
                         "answer no\npress RC_FilterCorrectLinearButton\nanswer yes\n"
                         "press RC_FilterCorrectNonlinearButton\nget RsCorrected");
  EXPECT_NE(PopupIn(lines, "No IV curve loaded for correction."), nullptr);
  EXPECT_EQ(lines.back().at("value"), 0);
}

TEST_F(RsCorrectionPanelTest, ACircuitThatIsNoneIsRefusedInWords) {
  const auto lines =
      Run(std::string(Trace1000) +
          "set RcRs 0\nanswer yes\npress RC_FilterConductanceButton\nset RcRs 1e7\nset RcCm 0\n"
          "answer yes\npress RC_FilterConductanceButton\nget RcFiltered\n"
          "graph RsCorrectionPanel.trace");
  EXPECT_NE(PopupIn(lines, "Series resistance must be above 0 Ohms. A filter needs a resistance."), nullptr);
  EXPECT_EQ(lines.at(lines.size() - 2).at("value"), 1)
      << "a cell without capacitance only divides the voltage";
  EXPECT_EQ(lines.back().at("axes").at("y").at("title"), "RC-Filt(pA)");
}

TEST_F(RsCorrectionPanelTest, ATraceLongerThanTheRecordLastMadeIsFilteredInPartAndThatIsTold) {
  const auto lines =
      Run("enter NumPoints 20000\npress FxnMenuTransform\nset AddConstant 100\npress FxnAdd\n"
          "press RsCmFilterFxn\nanswer yes\npress RC_FilterConductanceButton\nget RecordPoints\n"
          "slice SimTrace 10239 2");
  const int record = lines.at(lines.size() - 2).at("value");
  EXPECT_NE(
      PopupIn(lines, "Only the first " + std::to_string(record) +
                         " points were filtered: as many as the record last made has. The others are as "
                         "they were."),
      nullptr);
  EXPECT_NE(lines.back().at("value").at(0), 100);
  EXPECT_EQ(lines.back().at("value").at(1), 100);
}

TEST_F(RsCorrectionPanelTest, TheLagsTimeConstantFollowsItsCorner) {
  const auto lines = Run("press RsCmFilterFxn\nenter RcLagFc 1591.549431\ncontrol RcLagTau");
  EXPECT_EQ(lines.back().at("value"), "0.0001");
}

TEST_F(RsCorrectionPanelTest, LoadsARelationAndGoesBackToTheLinearOneForTooFewPoints) {
  WriteWholeFile(folder.File("five.iv"), "-0.2, -90\n-0.1,-30\r\n0 , 0\n0.1\t50\n0.2,120\nend\n0.3, 400\n");
  WriteWholeFile(folder.File("four.iv"), "-0.2, -90\n-0.1,-30\n0, 0\n0.1, 50\n");
  const auto load = [&](const char* name) {
    return "choose " + folder.File(name) +
           "\npress RC_LoadIVButton\nget RcIvCount\nget RcIvLoaded\ncontrol RcIvFileName\n";
  };
  const auto lines = Run("press RsCmFilterFxn\n" + load("five.iv") + load("four.iv") + load("none.iv"));
  std::vector<nlohmann::json> values;
  std::string console;
  for (const auto& line : lines) {
    if (line.contains("value")) values.push_back(line["value"]);
    if (line.contains("console")) console += line["console"].get<std::string>() + "|";
  }
  EXPECT_EQ(values,
            (std::vector<nlohmann::json>{5, 1, folder.File("five.iv"), 3, 1, "linear", 3, 1, "linear"}));
  EXPECT_EQ(console,
            "! Revert to linear IV|Error Reading Raw Data IV curve [" + folder.File("none.iv") + "]. \n|");
}

TEST_F(RsCorrectionPanelTest, AFileIsCorrectedIntoAnother) {
  const std::string source = std::string(ZELVANE_TEST_DATA) + "/recordings/abf1/130618-1-12.abf";
  const std::string target = folder.File("out.abf");
  const auto lines = Run("press RsCmFilterFxn\nchoose " + source + "\nchoose " + source +
                         "\npress FxnFileCorrect\nchoose " + source + "\nchoose " + target +
                         "\npress FxnFileCorrect\nget NumPoints\nget EpisodeCount\nslice SimTrace 0 3\n");
  EXPECT_NE(PopupIn(lines, "Cannot overwrite file; choose a different filename or location."), nullptr);
  const std::string bytes = ReadWholeFile(target);
  const auto number = [&](std::size_t offset) {
    std::int32_t value = 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
  };
  const int points = lines.at(lines.size() - 3).at("value");
  const int episodes = lines.at(lines.size() - 2).at("value");
  EXPECT_EQ(number(10), points);
  EXPECT_EQ(number(16), episodes);
  EXPECT_EQ(number(138), points / episodes);
  ASSERT_EQ(bytes.size(), static_cast<std::size_t>(number(40)) * 512 + static_cast<std::size_t>(points) * 4);
  float first = 0.0F;
  std::memcpy(&first, bytes.data() + number(40) * 512, sizeof first);
  EXPECT_EQ(first, lines.back().at("value").at(0).get<float>());
}

}  // namespace
}  // namespace zelvane
