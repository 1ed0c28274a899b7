// The grid on MainPanel: states, links, rates and what is read beside them.
#include "model/model.h"
#include "model/model_panels.h"
#include "support/pressing.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

class GridPanelTest : public PanelTest {
 protected:
  /// States 1 and 2 on, binding of drug 1 on the way from 1 to 2.
  static void SetBinding() {
    PressCommand("OnOff_State_1");
    PressCommand("OnOff_State_2");
    Enter("KOn[1]", "1e7");
    Enter("KOff[1]", "100");
    PressCommand("FxnDepend1On");
    Enter("DependDrug[1]", "1");
    PressCommand("FxnExitConc");
  }
};

TEST_F(GridPanelTest, AStateSwitchTogglesAndItsLinksAppearWithBothStates) {
  PressCommand("OnOff_State_7");
  EXPECT_EQ(Model.StateOn[7], 1);
  EXPECT_FALSE(ControlNamed("KOn[6]").visible);  // link 6 joins 2 and 7
  PressCommand("OnOff_State_2");
  for (const char* name : {"KOn[6]", "KOff[6]", "Kd[6]", "DependOn[6]", "DependOff[6]"}) {
    EXPECT_TRUE(ControlNamed(name).visible) << name;
  }
  EXPECT_FALSE(ControlNamed("KOn[10]").visible);  // 6 to 7
  PressCommand("OnOff_State_7");
  EXPECT_EQ(Model.StateOn[7], 0);
  EXPECT_FALSE(ControlNamed("KOn[6]").visible);
}

TEST_F(GridPanelTest, ARateCommandTakesOverAllRatesTyped) {
  TypeOnly("KOff[31]", "2.5e3");
  EXPECT_EQ(Model.KOff[31], 0.0);
  Enter("KOn[5]", "1.25");
  EXPECT_EQ(Model.KOn[5], 1.25);
  EXPECT_EQ(Model.KOff[31], 2500.0);
}

TEST_F(GridPanelTest, ALinkThatDependsIsGreenAndShowsItsConstant) {
  SetBinding();
  EXPECT_EQ(Shown("Kd[1]"), "Kd=1.0e-05M");
  for (const char* name : {"Kd[1]", "KOn[1]", "KOff[1]"})
    EXPECT_EQ(ControlNamed(name).colour, "green") << name;
  EXPECT_EQ(ControlNamed("KOn[2]").colour, "");
  Enter("KOff[1]", "250");
  EXPECT_EQ(Shown("Kd[1]"), "Kd=2.5e-05M");
  Enter("KOff[1]", "0");
  EXPECT_EQ(Shown("Kd[1]"), "Kd=2.5e-05M") << "a rate of 0 changes nothing";
  RefreshModelPanels();
  EXPECT_EQ(Shown("Kd[1]"), "") << "but it does not outlive its scheme";
  PressCommand("FxnDepend1On");
  Enter("DependDrug[1]", "0");
  PressCommand("FxnExitConc");
  EXPECT_EQ(Shown("Kd[1]"), "");
  EXPECT_EQ(ControlNamed("KOn[1]").colour, "");
}

TEST_F(GridPanelTest, ClearingAsksFirstAndEmptiesTheScreen) {
  SetBinding();
  Enter("ModelTitle", "Two states");
  Enter("StateConductance[2]", "50");
  PressCommand("FxnClearModel");
  EXPECT_EQ(Model.KOn[1], 1e7) << "answered no";
  answers = {true};
  PressCommand("FxnClearModel");
  EXPECT_EQ(popups.back().text, "Clear all parameters in BOTH 2D and 3D models?");
  EXPECT_EQ(ControlNamed("KOn[1]").number, 0.0);
  EXPECT_EQ(ControlNamed("StateOn[1]").number, 0.0);
  for (const char* name : {"ModelTitle", "Kd[1]", "GridConductance[2]", "ModelFileName"})
    EXPECT_EQ(Shown(name), "");
  EXPECT_FALSE(ControlNamed("KOn[1]").visible);
}

}  // namespace
}  // namespace zelvane
