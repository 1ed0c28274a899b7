// The grid on MainPanel: states, links, rates and what is read beside them.
#include "model/model_panels.h"
#include "screen/screen.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

using GridPanelTest = DriveTest;

/// States 1 and 2 on, binding of drug 1 on the way from 1 to 2.
const std::string Binding =
    "press OnOff_State_1; press OnOff_State_2; enter KOn[1] 1e7; enter KOff[1] 100; press FxnDepend1On; "
    "enter DependDrug[1] 1; press FxnExitConc; ";

TEST_F(GridPanelTest, AStateSwitchTogglesAndItsLinksAppearWithBothStates) {
  const std::string script = "press OnOff_State_7; get StateOn[7]; ";
  EXPECT_EQ(Told(script), Values{1});
  EXPECT_FALSE(ControlNamed("KOn[6]").visible);  // link 6 joins 2 and 7
  Run(script + "press OnOff_State_2; ");
  for (const char* name : {"KOn[6]", "KOff[6]", "Kd[6]", "DependOn[6]", "DependOff[6]"}) {
    EXPECT_TRUE(ControlNamed(name).visible) << name;
  }
  EXPECT_FALSE(ControlNamed("KOn[10]").visible);  // 6 to 7
  EXPECT_EQ(Told(script + "press OnOff_State_2; " + script), (Values{1, 0}));
  EXPECT_FALSE(ControlNamed("KOn[6]").visible);
}

TEST_F(GridPanelTest, ARateCommandTakesOverAllRatesTyped) {
  EXPECT_EQ(Told("set KOff[31] 2.5e3; get KOff[31]; enter KOn[5] 1.25; get KOn[5]; get KOff[31]"),
            (Values{0, 1.25, 2500}));
}

TEST_F(GridPanelTest, ALinkThatDependsIsGreenAndShowsItsConstant) {
  EXPECT_EQ(Told(Binding + "control Kd[1]; control KOn[1]; control KOff[1]; control KOn[2]; "
                           "enter KOff[1] 250; control Kd[1]; enter KOff[1] 0; control Kd[1]"),
            (Values{"Kd=1.0e-05M", "green", 1e7, "green", 100, "green", 0, "Kd=2.5e-05M", "green",
                    "Kd=2.5e-05M", "green"}))
      << "a rate of 0 changes nothing";
  RefreshModelPanels();
  EXPECT_EQ(ControlNamed("Kd[1]").text, "") << "but it does not outlive its scheme";
  EXPECT_EQ(Told(Binding + "press FxnDepend1On; enter DependDrug[1] 0; press FxnExitConc; control Kd[1]; "
                           "control KOn[1]"),
            (Values{"", 1e7}));
}

TEST_F(GridPanelTest, ClearingAsksFirstAndEmptiesTheScreen) {
  const auto lines =
      Run(Binding +
          "enter ModelTitle two; enter StateConductance[2] 50; press FxnClearModel; get KOn[1]; "
          "answer yes; press FxnClearModel; control KOn[1]; control StateOn[1]; control ModelTitle; "
          "control Kd[1]; control GridConductance[2]; control ModelFileName");
  EXPECT_EQ(Told(lines), (Values{1e7, 0, 0, "", "", "", ""}));
  EXPECT_EQ(lines[0]["text"], "Clear all parameters in BOTH 2D and 3D models?");
  EXPECT_FALSE(ControlNamed("KOn[1]").visible);
}

}  // namespace
}  // namespace zelvane
