// The command language with the whole program: start-up, seeds, a run from typed values to its trace.
#include <sstream>

#include "headless/drive/drive.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

constexpr char TwoStates[] =
    "enter SimulatorKind 0\n"
    "set MultiSubunit 0\ncommit MultiSubunit\n"
    "press OnOff_State_1\npress OnOff_State_2\n"
    "enter KOn[1] 300\nenter KOff[1] 100\n"
    "enter StartOccupancy[1] 1\nset StateMonitored[2] 1\ncommit StateMonitored[2]\n"
    "enter DisplayUnits 3\nenter NumPoints 1000\n";

// Occupancy of the open state is 0.75 (1 - exp(-400 t)), t in s: sample p of the trace is at p x 0.01 ms.
TEST_F(DriveTest, TypedRatesRunToATraceOnTheGraph) {
  const auto lines = Run(std::string(TwoStates) +
                         "press AcquireData\nget TraceValid\nslice SimTrace 500 1\ngraph MainPanel");
  ASSERT_GE(lines.size(), 3U);
  const auto& graph = lines.back();
  EXPECT_EQ(lines[lines.size() - 3].at("value"), 1);
  EXPECT_NEAR(lines[lines.size() - 2].at("value").at(0).get<double>(),
              0.75 * (1.0 - std::exp(-400.0 * 0.005)), 1e-5);
  ASSERT_EQ(graph.at("plots").size(), 1U);
  EXPECT_EQ(graph["plots"][0]["count"], 1000);
  EXPECT_EQ(graph["plots"][0]["colour"], nlohmann::json({0, 0, 128}));
  EXPECT_EQ(graph["axes"]["y"]["title"], "Probability");
  EXPECT_EQ(status, 0);
}

TEST_F(DriveTest, SeedsMakeNoiseRepeat) {
  const std::string noisy =
      std::string(TwoStates) + "enter AutoNoise 1\npress AcquireData\nslice SimTrace 0 20";
  const auto once = Run(noisy);
  EXPECT_EQ(once, Run(noisy));
  EXPECT_NE(once.back()["value"][0], once.back()["value"][1]);
}

TEST_F(DriveTest, HelpAndThePanelInFrontAreTold) {
  const auto lines = Run("press FxnHotKey\nanswer yes\npress StimHelp\npanels\n");
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0], nlohmann::json::parse(R"({"help":1001})"));
  EXPECT_EQ(lines[1].at("popup"), "confirm");
  EXPECT_EQ(lines[2], nlohmann::json::parse(R"({"help":22000})"));
  EXPECT_EQ(lines[3], nlohmann::json::parse(R"({"panels":["MainPanel"],"tag":"MN"})"));
}

TEST_F(DriveTest, AScriptRunsUnderAWindowWhichIsToldOfEveryChange) {
  int changes = 0;
  int lines = 0;
  int shownHelp = -1;
  DriveHost host;
  host.frontEnd.panelChanged = [&](Panel&) { ++changes; };
  host.frontEnd.help = [&](int topic) { return (shownHelp = topic) > 0; };
  host.frontEnd.message = [](MessageTitle, std::string_view) { ADD_FAILURE() << "a script answers"; };
  host.afterLine = [&] { ++lines; };
  double filled = -1.0;
  host.frontEnd.modal = [&](Panel&, std::string_view) {
    filled = ControlNumber("ListReplace");
    return true;
  };
  std::istringstream script(
      "help NumPoints\nenter NumPoints 300\npress FxnHotKey\nreply ListReplace 1 cancel\npress "
      "SCImportAscii\n");
  std::ostringstream out;
  EXPECT_EQ(RunDrive(script, out, {folder.Path().string(), {}, {}}, host), 0);
  EXPECT_EQ(lines, 5);
  EXPECT_EQ(filled, 1.0) << "a dialog shows what the script has filled in";
  EXPECT_EQ(out.str().find("\"popup\":\"file\""), std::string::npos) << "the script has cancelled it";
  EXPECT_GT(changes, 0);
  EXPECT_EQ(shownHelp, 1001);

  std::istringstream more("get NumPoints\n");  // in the running program
  std::ostringstream answer;
  EXPECT_EQ(PlayDrive(more, answer, {}), 0);
  EXPECT_EQ(answer.str(), "{\"name\":\"NumPoints\",\"value\":300}\n");
}

}  // namespace
}  // namespace zelvane
