// The table's panel, the switch between the forms and the transfers.
#include "model/model.h"
#include "model/model_panels.h"
#include "support/pressing.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using FormsPanelTest = PanelTest;

TEST_F(FormsPanelTest, SwitchingMovesNoRateAndKeepsWhatWasTyped) {
  TypeOnly("KOn[1]", "11");
  PressCommand("FxnTableModel");
  EXPECT_EQ(Model.ModelIs2D, 0);
  EXPECT_TRUE(PanelVisible("TableModelPanel"));
  EXPECT_EQ(Model.KOn[1], 11.0);
  EXPECT_EQ(Model.TableRate[1][2], 0.0F);
  TypeOnly("TableRate[3][1]", "31");
  EXPECT_EQ(FindCommand("fxnk0707"), nullptr) << "the diagonal has no cell";
  EXPECT_EQ(FindCommand("fxnk0107"), FindControl("TableRate[1][7]"));
  Enter("TableRate[1][7]", "3.5");
  EXPECT_EQ(Model.TableRate[3][1], 31.0F) << "a cell takes over all that is typed";
  EXPECT_EQ(ControlNamed("TableRate[3][1]").colour, "mark");
  Enter("TableRate[1][7]", "0");
  EXPECT_EQ(ControlNamed("TableRate[1][7]").colour, "");
  PressCommand("fxnquit");
  EXPECT_FALSE(PanelVisible("TableModelPanel"));
  EXPECT_EQ(Model.ModelIs2D, 0) << "a closed table is still the model that runs";
  PressCommand("FxnMainModel");
  EXPECT_EQ(Model.ModelIs2D, 1);
  EXPECT_FALSE(PanelVisible("TableModelPanel"));
  EXPECT_EQ(Screen.PanelTag, "MN");
  EXPECT_EQ(Model.KOn[1], 11.0);
  EXPECT_EQ(ControlNamed("KOn[1]").number, 11.0);
}

TEST_F(FormsPanelTest, EachClearLeavesTheOtherFormAndWhatIsTypedThere) {
  Enter("KOn[1]", "5");
  TypeOnly("TableRate[1][2]", "6");
  answers = {true, true};
  PressCommand("FxnClear2DModel");
  EXPECT_EQ(Model.KOn[1], 0.0);
  EXPECT_EQ(Model.TableRate[1][2], 6.0F);
  EXPECT_EQ(Model.TableStateLabel[1], "1");
  TypeOnly("KOn[1]", "7");
  PressCommand("FxnClearTModel");
  EXPECT_EQ(popups.back().text,
            "Are you sure you want to clear all Table rate constants and concentation dependence?");
  EXPECT_EQ(Model.KOn[1], 7.0);
  EXPECT_EQ(ControlNamed("TableRate[1][2]").number, 0.0);
  EXPECT_EQ(ControlNamed("TableRate[1][2]").colour, "");
  EXPECT_EQ(Shown("TableStateLabel[1]"), "");
}

TEST_F(FormsPanelTest, TheGridIsCopiedIntoTheTableAsItStandsOnThePanel) {
  for (const char* state : {"StateOn[1]", "StateOn[2]"}) Enter(state, "1");
  TypeOnly("KOn[1]", "5");
  TypeOnly("KOn[2]", "6");  // state 3 is off
  TypeOnly("StateLabel[1]", "C0");
  Model.Depend.Drug[3][1][2] = 1;
  PressCommand("FxnGetGraphModel");
  EXPECT_EQ(ControlNamed("TableRate[1][2]").number, 5.0);
  EXPECT_EQ(ControlNamed("TableRate[1][2]").colour, "mark");
  EXPECT_EQ(Model.TableRate[2][3], 0.0F);
  EXPECT_EQ(Model.TableStateLabel[1], "C0");
  EXPECT_EQ(Shown("TableStateLabel[1]"), "C0");
  EXPECT_EQ(ControlNamed("TableDepend[1][2]").colour, "green");
  EXPECT_EQ(ControlNamed("TableDepend[2][1]").colour, "");
}

TEST_F(FormsPanelTest, TheTableIsCopiedIntoTheGridWithAWarningForWhatStaysBehind) {
  PressCommand("FxnTableModel");
  TypeOnly("TableStateLabel[2]", "Open");
  TypeOnly("TableRate[1][2]", "5");
  PressCommand("FxnSetGraphModel");
  EXPECT_TRUE(popups.empty());
  EXPECT_EQ(Model.ModelIs2D, 1);
  EXPECT_FALSE(PanelVisible("TableModelPanel"));
  EXPECT_EQ(ControlNamed("KOn[1]").number, 5.0);
  EXPECT_EQ(Shown("StateLabel[2]"), "Open");
  EXPECT_EQ(ControlNamed("StateOn[2]").number, 1.0);
  Enter("TableRate[1][7]", "1");
  PressCommand("FxnSetGraphModel");
  EXPECT_EQ(popups.back(),
            (SeenPopup{"! Warning", "All rate constants for 3D model do not transfer to 2D model."}));
  EXPECT_EQ(Model.KOn[1], 5.0);
}

}  // namespace
}  // namespace zelvane
