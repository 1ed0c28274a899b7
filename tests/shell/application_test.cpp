// Start-up, what every control owes its user, and the end of the program.
#include "shell/application.h"

#include <map>
#include <set>

#include "fit/fit_store.h"
#include "model/model_store.h"
#include "screen/screen.h"
#include "shell/stores.h"
#include "sim/random.h"
#include "stimulus/stimulus_store.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

/// Every plain field and small array of the registry as one text; the large arrays by their first samples.
std::string StoreDigest() {
  std::string digest;
  for (const auto& [name, field] : AllFields()) {
    digest += name + '=';
    if (field.rank == 0) {
      digest += FieldText({&field, field.base});
    } else {
      std::byte* element = field.base;
      for (int k = 0; k < field.rank; ++k) {
        element +=
            field.index[static_cast<std::size_t>(k)].step * field.index[static_cast<std::size_t>(k)].first;
      }
      const FieldIndex& last = field.index[static_cast<std::size_t>(field.rank) - 1];
      for (int i = last.first; i <= std::min(last.last, last.first + 200); ++i) {
        digest += FieldText({&field, element + last.step * (i - last.first)}) + ' ';
      }
    }
    digest += '\n';
  }
  return digest;
}

class ApplicationTest : public StoreTest {
 protected:
  void Start(std::vector<std::string> files = {}) {
    StartApplication({folder.Path().string(), std::move(files), {{1.0, 2.0, 3.0}}});
  }
  TemporaryFolder folder;
};

TEST_F(ApplicationTest, AStartWithoutConfigStandsAtTheInitialValuesAndAsksNothing) {
  Start();
  EXPECT_TRUE(popups.empty());
  EXPECT_TRUE(fileRequests.empty());
  EXPECT_EQ(Model.NumPoints, 10240);
  EXPECT_EQ(Screen.PanelTag, "MN");
  EXPECT_TRUE(PanelVisible("MainPanel"));
  EXPECT_FALSE(PanelVisible("AboutPanel"));
  EXPECT_EQ(Stimulus.Profile[1][100], 0.005F) << "the automatic step is built before the first run";
  EXPECT_EQ(Stimulus.Profile[1][99], 0.0F);
}

TEST_F(ApplicationTest, ConfigThatCannotBeReadLeavesTheInitialValues) {
  WriteWholeFile(folder.File("config.mod"), "this is no model");
  Start();
  EXPECT_EQ(Model.NumPoints, 10240);
  EXPECT_TRUE(fileRequests.empty());
  std::filesystem::remove(folder.File("config.mod"));
  std::filesystem::create_directory(folder.File("config.mod"));
  Start();
  EXPECT_EQ(Model.NumPoints, 10240);
}

TEST_F(ApplicationTest, AnArgumentThatNamesNoFileIsPassedOver) {
  Start({folder.File("nothing.abf"), folder.Path().string()});
  EXPECT_TRUE(popups.empty());
}

TEST_F(ApplicationTest, DefaultFitLimitsStandAfterStart) {
  Start();
  EXPECT_EQ(Fit.SublevelFitLimits[8].hi, 10000.0);
  EXPECT_EQ(Fit.VarFitLimits[1].lo, -10.0);
  EXPECT_EQ(Fit.SpecFitLimits[4].lo, 1e-12);
  EXPECT_EQ(Fit.DwellFitLimits[9].lo, 0.01);
  EXPECT_EQ(Fit.DwellFitLimits[10].hi, 100.0);
  EXPECT_EQ(Fit.DwellFitLimits[11].lo, 0.05);
  EXPECT_EQ(Fit.ExpFitLimits[3].hi, 1000.0);
  EXPECT_EQ(Fit.ExpFitLimits[6].hi, 0.0);
  EXPECT_EQ(Fit.WaveFitLimits[1].hi, 0.0);
}

TEST_F(ApplicationTest, ResetBringsEveryFieldBack) {
  const std::string before = StoreDigest();
  for (const auto& [name, field] : AllFields()) {
    std::byte* element = field.base;
    for (int k = 0; k < field.rank; ++k) {
      element +=
          field.index[static_cast<std::size_t>(k)].step * field.index[static_cast<std::size_t>(k)].last;
    }
    SetFieldText({&field, element}, "77");
  }
  EXPECT_NE(StoreDigest(), before);
  ResetStores();
  EXPECT_EQ(StoreDigest(), before);
}

TEST_F(ApplicationTest, ARightClickOnAnyControlExplainsItAndChangesNothing) {
  Start();
  const std::string before = StoreDigest();
  for (Control& control : Screen.controls) {
    popups.clear();
    RightClick(control);
    ASSERT_EQ(popups.size(), 1U) << control.name;
    EXPECT_EQ(popups[0].title, control.helpActs ? "? Main Panel Help" : "? Help") << control.name;
    EXPECT_FALSE(popups[0].text.empty()) << control.name << " (" << control.command << ") has no help";
  }
  EXPECT_EQ(StoreDigest(), before);
}

TEST_F(ApplicationTest, NamesAreUniqueAndEveryCommandLeadsSomewhere) {
  Start();
  std::set<std::string> names;
  std::map<std::string, Action> actions;
  for (const Control& control : Screen.controls) {
    EXPECT_TRUE(names.insert(control.name).second) << control.name;
    const auto [known, isNew] = actions.try_emplace(control.command, control.action);
    if (!control.command.empty()) {
      EXPECT_EQ(known->second, control.action) << control.command << " does two things";
    }
    const bool deadButton = control.kind == ControlKind::Button && control.action == nullptr;
    EXPECT_FALSE(deadButton) << control.name << " is a button that does nothing";
  }
  for (const MenuItem& item : Screen.menu) EXPECT_NE(item.action, nullptr) << item.path;
  for (const Panel& panel : Screen.panels) EXPECT_FALSE(panel.help.empty()) << panel.name << " has no help";
}

TEST_F(ApplicationTest, TheThreeWaysOutAskTheirQuestionAndNoDoesNothing) {
  bool ended = false;
  Start();
  FrontEnd frontEnd = SetFrontEnd({});
  frontEnd.quit = [&] { ended = true; };
  SetFrontEnd(frontEnd);
  Press(*FindCommand("Shutdown"));
  PressMenu(*FindMenu("ShutDown"));
  ClosePanel(PanelNamed("MainPanel"));
  const std::vector<SeenPopup> asked = {{"", "Are you ready to exit Zelvane?"},
                                        {"", "Are you ready to exit Zelvane ?"},
                                        {"", "Are you ready to exit Zelvane ?"}};
  EXPECT_EQ(popups, asked);
  EXPECT_FALSE(ended);
  EXPECT_TRUE(PanelVisible("MainPanel"));
  answers = {true};
  Press(*FindCommand("Shutdown"));
  EXPECT_TRUE(ended);
}

TEST_F(ApplicationTest, TheSeedsOfTheOptionsAreInForceAtTheFirstCommand) {
  Start();
  const double first = UniformRandom();
  Start();
  EXPECT_EQ(UniformRandom(), first);
}

}  // namespace
}  // namespace zelvane
