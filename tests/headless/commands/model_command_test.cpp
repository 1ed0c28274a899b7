// `zelvane-cli model`: the description of a model file, and its upgrade.
#include "headless/commands/model_command.h"

#include "headless/commands/job_test.h"

namespace zelvane {
namespace {

using nlohmann::json;

constexpr char Sodium[] = ZELVANE_DATA "/models/sodium_hodgkin_1952.mod";
constexpr char Ampa[] = ZELVANE_DATA "/models/ampa_jonas_1993.mod";

class ModelCommandTest : public JobTest {
 protected:
  json Account(const std::string& path) {
    return Written([&](const JobStreams& streams) { return ModelCommand(path, true, streams); });
  }
  int Upgrade(const std::string& from, const std::string& to) {
    return Run([&](const JobStreams& streams) { return UpgradeModelCommand(from, to, streams); });
  }

  /// Returns the rate between two states in a description.
  static json Rate(const json& account, int from, int to) {
    for (const json& rate : account["rates"]) {
      if (rate["from"] == from && rate["to"] == to) return rate;
    }
    return nullptr;
  }
};

// Rates of Jonas, Major & Sakmann (1993), figure 6.
TEST_F(ModelCommandTest, TellsStatesAndRatesWithUnits) {
  const json account = Account(Ampa);
  EXPECT_EQ(account["file"], Ampa);
  EXPECT_EQ(account["states"].size(), 7U);
  EXPECT_EQ(account["states"][3]["label"], "O");
  EXPECT_EQ(account["states"][3]["conductance"], 10);
  EXPECT_EQ(account["states"][3]["monitored"], true);
  EXPECT_EQ(Rate(account, 1, 2)["rate"], 4590000);
  EXPECT_EQ(Rate(account, 1, 2)["unit"], "1/(M s)");
  EXPECT_EQ(Rate(account, 1, 2)["drugs"], json({1}));
  EXPECT_EQ(Rate(account, 2, 1)["rate"], 4260);
  EXPECT_EQ(Rate(account, 2, 1)["unit"], "1/s");
  EXPECT_EQ(account["stimulus"]["value"], 0.001);
  EXPECT_EQ(account["stimulus"]["start"], 5);
  EXPECT_EQ(account["table"].size(), 0U);
}

// beta m of Hodgkin & Huxley (1952) falls e-fold in 18 mV.
TEST_F(ModelCommandTest, TellsPeopleTheSameInLines) {
  EXPECT_NEAR(Rate(Account(Sodium), 2, 1)["voltage"]["efold_mV"], -18.0, 0.01);
  out.str("");
  ASSERT_EQ(ModelCommand(Ampa, false, {out, err}), JobDone);
  ASSERT_EQ(ModelCommand(Sodium, false, {out, err}), JobDone);
  ExpectParts({"   1 -> 2   C0 -> C1", "4.59e+06 1/(M s) x [Glutamate]\n", "x exp(V / -18 mV)\n",
               "step of Glutamate: 0.001 M from 5 to 6 ms", "step of voltage: 65 mV"});
}

TEST_F(ModelCommandTest, UpgradesAFileOntoItself) {
  const std::string path = folder.Written("model.mod", ReadWholeFile(Ampa));
  EXPECT_EQ(Upgrade(path, path), JobDone) << err.str();
  EXPECT_EQ(Account(path)["rates"], Account(Ampa)["rates"]);
}

TEST_F(ModelCommandTest, AFileWithoutAllItsNumbersFailsUnlessLenient) {
  const std::string whole = ReadWholeFile(Ampa);
  const std::string cut = folder.Written("cut.mod", whole.substr(0, whole.size() / 2));
  const std::string target = folder.File("new.mod");
  EXPECT_EQ(ModelCommand(cut, false, {out, err}), JobFailed);
  EXPECT_TRUE(Told("cut.mod: the file ends at line "));
  EXPECT_EQ(UpgradeModelCommand(cut, target, {out, err}), JobFailed);
  EXPECT_FALSE(std::filesystem::exists(target));
  EXPECT_EQ(ModelCommand(cut, false, {out, err}, true), JobDone);
  EXPECT_EQ(UpgradeModelCommand(cut, target, {out, err}, true), JobDone);
}

TEST_F(ModelCommandTest, AFailedUpgradeLeavesWhatStoodThere) {
  const std::string target = folder.Written("target.mod", "former");
  EXPECT_EQ(Upgrade(folder.File("absent.mod"), target), JobFailed);
  EXPECT_EQ(ReadWholeFile(target), "former");
  EXPECT_EQ(Upgrade(Ampa, folder.Path().string()), JobFailed);
  EXPECT_TRUE(Told("cannot be created"));
}

}  // namespace
}  // namespace zelvane
