// `zelvane-cli qmatrix`: its output, and every way to fail.
#include "headless/commands/q_matrix_command.h"

#include <map>

#include "headless/commands/job_test.h"

namespace zelvane {
namespace {

using nlohmann::json;

class QMatrixCommandTest : public JobTest {
 protected:
  QMatrixCommandTest() {
    options.model = ZELVANE_DATA "/models/nicotinic_colquhoun_1982.mod";
    options.json = true;
  }

  int Run() {
    return JobTest::Run([this](const JobStreams& streams) { return QMatrixCommand(options, streams); });
  }

  json Result() {
    return Written([this](const JobStreams& streams) { return QMatrixCommand(options, streams); });
  }

  QMatrixOptions options;
};

// Occupancies and time constants at 100 nM as printed for this scheme by Colquhoun & Hawkes (1995), "A
// Q-matrix cookbook", in Single-Channel Recording, 2nd ed., chapter 20.
TEST_F(QMatrixCommandTest, GivesThePrintedEquilibriumOfTheFiveStateScheme) {
  options.timeMs = 200.0;
  const json result = Result();
  const std::map<int, double> printed{
      {7, 0.00002483}, {8, 0.00186203}, {3, 0.00006207}, {2, 0.00496541}, {1, 0.99308567}};
  ASSERT_EQ(result["states"].size(), printed.size());
  for (const json& state : result["states"]) {
    EXPECT_NEAR(state["equilibrium"], printed.at(state["state"]), 1e-7) << state["label"];
  }
  std::vector<double> rates;
  for (const json& tau : result["tau"]) {
    if (tau["ms"].is_number() && tau["ms"] < 1e3) rates.push_back(1000.0 / tau["ms"].get<double>());
  }
  std::sort(rates.begin(), rates.end());
  const std::vector<double> printedRates{101.8, 2022.0, 3094.0, 19408.0};
  ASSERT_EQ(rates.size(), printedRates.size());
  for (std::size_t k = 0; k < rates.size(); ++k)
    EXPECT_NEAR(rates[k], printedRates[k], 1e-3 * printedRates[k]);
  EXPECT_EQ(result["q"].size(), 5U);
  EXPECT_EQ(result["q"][0].size(), 5U);
  EXPECT_EQ(result["singular"], false);
  EXPECT_EQ(err.str(), "");
}

TEST_F(QMatrixCommandTest, WithoutATimeTheStimulusRests) {
  const json result = Result();
  EXPECT_EQ(result["point"], 1);
  EXPECT_EQ(result["states"][0]["equilibrium"], 1);
  options.json = false;
  ASSERT_EQ(Run(), JobDone);
  ExpectParts(
      {"(point 1)", "Q (1/s)\n", "Relaxation time constants\n  tau 1 ", "Occupancy at equilibrium\n  R "});
}

TEST_F(QMatrixCommandTest, TellsWhyThereIsNone) {
  for (const auto& [setting, status, told] :
       {std::tuple{"ModelIs2D=0", JobFailed, "no rate leads into any state"},
        {"KOff[6]=1e300", JobMisused, "1e300"},
        {"KOnn[1]=3", JobMisused, "did you mean KOn[1]"}}) {
    options.settings = {setting};
    EXPECT_EQ(Run(), status) << setting;
    EXPECT_TRUE(Told(told)) << err.str();
    EXPECT_EQ(out.str(), "");
  }
}

}  // namespace
}  // namespace zelvane
