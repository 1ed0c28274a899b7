// The table's panel, the switch between the forms and the transfers.
#include "screen/screen.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

using FormsPanelTest = DriveTest;

TEST_F(FormsPanelTest, SwitchingMovesNoRateAndKeepsWhatWasTyped) {
  const nlohmann::json both{"MainPanel", "TableModelPanel"};
  const nlohmann::json main{"MainPanel"};
  EXPECT_EQ(
      Told("set KOn[1] 11; press FxnTableModel; get ModelIs2D; panels; get KOn[1]; get TableRate[1][2]; "
           "set TableRate[3][1] 31; enter TableRate[1][7] 3.5; get TableRate[3][1]; "
           "control TableRate[3][1]; enter TableRate[1][7] 0; control TableRate[1][7]; press fxnquit; "
           "panels; get ModelIs2D; press FxnMainModel; get ModelIs2D; panels; get KOn[1]; control KOn[1]"),
      (Values{0, both, 11, 0, 31, 31, "mark", 0, main, 0, 1, main, 11, 11}))
      << "a cell takes over all that is typed, and a closed table is still the model that runs";
  EXPECT_EQ(FindCommand("fxnk0707"), nullptr) << "the diagonal has no cell";
  EXPECT_EQ(FindCommand("fxnk0107"), FindControl("TableRate[1][7]"));
}

TEST_F(FormsPanelTest, EachClearLeavesWhatIsTypedIntoTheOtherForm) {
  const auto lines =
      Run("enter KOn[1] 5; set TableRate[1][2] 6; answer yes; press FxnClear2DModel; get KOn[1]; "
          "get TableRate[1][2]; set KOn[1] 7; answer yes; press FxnClearTModel; get KOn[1]; "
          "control TableRate[1][2]; control TableStateLabel[1]");
  EXPECT_EQ(Told(lines), (Values{0, 6, 7, 0, ""}));
  EXPECT_EQ(lines[3]["text"],
            "Are you sure you want to clear all Table rate constants and concentation dependence?");
}

TEST_F(FormsPanelTest, TheGridIsCopiedIntoTheTableAsItStandsOnThePanel) {
  EXPECT_EQ(Told("enter StateOn[1] 1; enter StateOn[2] 1; set KOn[1] 5; set KOn[2] 6; set StateLabel[1] C0; "
                 "press FxnDepend1On; enter DependDrug[3] 1; press FxnExitConc; press FxnGetGraphModel; "
                 "control TableRate[1][2]; get TableRate[2][3]; get TableStateLabel[1]; "
                 "control TableStateLabel[1]; control TableDepend[1][2]; control TableDepend[2][1]"),
            (Values{5, "mark", 0, "C0", "C0", nullptr, "green", nullptr}))
      << "state 3 is off";
}

TEST_F(FormsPanelTest, TheTableIsCopiedIntoTheGridWithAWarningForWhatStaysBehind) {
  EXPECT_EQ(Told("press FxnTableModel; set TableStateLabel[2] Open; set TableRate[1][2] 5; "
                 "press FxnSetGraphModel; panels; get ModelIs2D; control KOn[1]; control StateLabel[2]; "
                 "control StateOn[2]; enter TableRate[1][7] 1; press FxnSetGraphModel; get KOn[1]"),
            (Values{{"MainPanel"},
                    1,
                    5,
                    "Open",
                    1,
                    "All rate constants for 3D model do not transfer to 2D model.",
                    5}));
}

}  // namespace
}  // namespace zelvane
