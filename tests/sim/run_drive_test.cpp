// Run, stop and refresh as a user of the command language presses them.
#include <algorithm>

#include "support/drive_test.h"

namespace zelvane {
namespace {

using RunDriveTest = DriveTest;
using nlohmann::json;

// Two states with 1000/s forward and back, all channels in state 1, 1000 points of 0.01 ms, P(open) of
// state 2.
constexpr char TwoStates[] =
    "press OnOff_State_1\npress OnOff_State_2\nenter KOn[1] 1000\nenter KOff[1] 1000\n"
    "enter StartOccupancy[1] 1\nenter MultiSubunit off\nenter SimulatorKind 0\nenter DisplayUnits "
    "Probability\n"
    "enter NumPoints 1000\nenter StateMonitored[2] on\n";

bool HasPopup(const std::vector<json>& lines, const std::string& text) {
  return std::any_of(lines.begin(), lines.end(),
                     [&](const json& line) { return line.value("text", "") == text; });
}

TEST_F(RunDriveTest, AnEmptyGridHasNothingToRun) {
  const auto lines = Run("press AcquireData\nget TraceValid");
  EXPECT_TRUE(HasPopup(lines, "No states connected."));
  EXPECT_EQ(LastValue(lines), 0);
}

TEST_F(RunDriveTest, ARunRelaxesToEquilibriumAndIsPlotted) {
  const auto lines = Run(std::string(TwoStates) +
                         "press AcquireData\nslice SimTrace 999 1\ngraph MainPanel\nget TraceValid");
  EXPECT_EQ(status, 0);
  EXPECT_EQ(LastValue(lines), 1);
  const json& graph = lines[lines.size() - 2];
  ASSERT_EQ(graph.at("plots").size(), 1U);
  EXPECT_EQ(graph.at("plots")[0].at("count"), 1000);
  EXPECT_EQ(graph.at("plots")[0].at("colour"), json({0, 0, 128}));
  EXPECT_EQ(graph.at("axes").at("y").at("title"), "Probability");
  EXPECT_EQ(graph.at("cursors").size(), 2U);
  // Open probability 0.5 (1 - exp(-2 t)), t in ms.
  EXPECT_NEAR(lines[lines.size() - 3].at("value")[0].get<double>(), 0.5, 1e-5);
}

TEST_F(RunDriveTest, TheStopButtonWorksDuringARunAndNothingElseDoes) {
  const auto lines =
      Run(std::string(TwoStates) +
          "during 2 press FxnSimRefresh\nduring 3 press FxnStopRun\npress AcquireData\nget SimTrace[990]");
  EXPECT_TRUE(HasPopup(lines, "Simulation Interrupted by User"));
  const auto errors =
      std::count_if(lines.begin(), lines.end(), [](const json& line) { return line.contains("error"); });
  EXPECT_EQ(errors, 1);              // the refresh
  EXPECT_EQ(LastValue(lines), 0.0);  // the part that was never reached
}

TEST_F(RunDriveTest, RefreshShowsAnotherStateAfterTheRun) {
  const auto lines = Run(std::string(TwoStates) +
                         "press AcquireData\nenter StateMonitored[2] off\nenter StateMonitored[1] on\n"
                         "press FxnSimRefresh\nget SimTrace[0]");
  EXPECT_EQ(LastValue(lines), 1.0);
}

TEST_F(RunDriveTest, ChoosingMonteCarloTellsThatItIsNotThereYet) {
  const auto lines = Run(std::string(TwoStates) + "enter SimulatorKind 1\npress AcquireData\nget TraceValid");
  EXPECT_EQ(LastValue(lines), 0);
  EXPECT_EQ(lines[lines.size() - 2].value("title", ""), "! Warning");
}

}  // namespace
}  // namespace zelvane
