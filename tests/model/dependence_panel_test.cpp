// The panel on which one rate's dependence is set.
#include "model/model.h"
#include "model/model_panels.h"
#include "support/pressing.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using DependencePanelTest = PanelTest;

TEST_F(DependencePanelTest, OpensForTheRateOfItsButton) {
  for (const auto& [command, code] : {std::pair{"FxnDepend1On", "102"},
                                      {"FxnDepend31Off", "2019"},
                                      {"FxnDepend15On", "712"},
                                      {"fxndep1207", "1207"},
                                      {"fxndep0120", "120"}}) {
    PressCommand(command);
    EXPECT_TRUE(PanelVisible("DependencePanel"));
    EXPECT_EQ(Shown("DependCode"), code);
  }
}

TEST_F(DependencePanelTest, StoresTheSettingsOfAGridRateWhenClosed) {
  PressCommand("FxnDepend1Off");
  Enter("DependDrug[4]", "1");
  Enter("DependVolt", "1");
  TypeOnly("DependSteepness", "-0.5");
  TypeOnly("DependTemperature", "37");
  TypeOnly("DrugLabel[4]", "Glycine");
  EXPECT_EQ(Model.Depend.Drug[4][2][1], 0);
  PressCommand("FxnExitConc");
  EXPECT_FALSE(PanelVisible("DependencePanel"));
  EXPECT_EQ(Model.Depend.Drug[4][2][1], 1);
  EXPECT_EQ(Model.Depend.Volt[2][1], 1);
  EXPECT_EQ(Model.Depend.Steepness[2][1], -0.5F);
  EXPECT_EQ(Model.Depend.Range[2][1], 37.0F);
  EXPECT_EQ(Model.Temperature, 25.0F) << "the temperature of the program follows its own field's commit";
  EXPECT_EQ(Model.DrugLabel[4], "Glycine");
  EXPECT_EQ(Model.Depend.Drug[4][1][2], 0);
  EXPECT_EQ(Model.TableDepend.Drug[4][2][1], 0);
  PressCommand("FxnDepend1Off");  // another rate keeps what was set for the first
  TypeOnly("DependSteepness", "1e300");
  PressCommand("FxnDepend1On");
  EXPECT_EQ(ControlNumber("DependDrug[4]"), 0.0);
  EXPECT_EQ(Model.Depend.Steepness[2][1], std::numeric_limits<float>::max()) << "held to its bound";
}

TEST_F(DependencePanelTest, StoresTheSettingsOfATableRateAndMarksItsButton) {
  PressCommand("FxnTableModel");
  PressCommand("fxndep0107");
  Enter("DependDrug[2]", "1");
  Enter("DependVolt", "1");
  TypeOnly("DependTemperature", "37");
  PressCommand("FxnExitConc");
  EXPECT_EQ(Model.TableDepend.Drug[2][1][7], 1);
  EXPECT_EQ(Model.TableDepend.Range[1][7], 37.0F);
  EXPECT_EQ(Model.Temperature, 37.0F);
  EXPECT_EQ(Model.Depend.Drug[2][1][7], 0);
  EXPECT_EQ(ControlNamed("TableDepend[1][7]").colour, "green");
  EXPECT_EQ(ControlNamed("TableDepend[1][7]").label, "2V");
  PressCommand("fxndep0107");
  EXPECT_EQ(ControlNumber("DependDrug[2]"), 1.0);
  EXPECT_EQ(ControlNumber("DependDrug[1]"), 0.0);
  Enter("DependDrug[2]", "0");
  Enter("DependVolt", "0");
  PressCommand("FxnExitConc");
  EXPECT_EQ(Model.TableDepend.Volt[1][7], 0);
  EXPECT_EQ(ControlNamed("TableDepend[1][7]").colour, "");
}

TEST_F(DependencePanelTest, ShowsTheCoefficientInBothForms) {
  PressCommand("FxnDepend1On");
  Enter("DependSteepness", "1");
  EXPECT_EQ(Shown("DependGrowth"), "Voltage    kv=k exp(38.91535 Vh)");
  EXPECT_EQ(Shown("DependEfold"), "Voltage    kv=k exp(Vh / 0.02570)");
  Enter("DependTemperature", "10");
  EXPECT_EQ(Model.Temperature, 10.0F);
  EXPECT_EQ(Shown("DependGrowth"), "Voltage    kv=k exp(40.97683 Vh)");  // 11603 / 283.16
}

TEST_F(DependencePanelTest, WhatAFileBringsIsShownAndClosedAway) {
  PressCommand("FxnDepend1On");
  Model.Depend.Volt[1][2] = 2;
  Model.Depend.Steepness[1][2] = 2.0F;
  RefreshModelPanels();
  EXPECT_EQ(ControlNamed("KOn[1]").colour, "green");
  EXPECT_EQ(ControlNumber("DependVolt"), 2.0);
  EXPECT_EQ(ControlNumber("DependSteepness"), 2.0);
  PressCommand("FxnExitConc");
  EXPECT_EQ(Model.Depend.Steepness[1][2], 2.0F) << "an open panel does not overwrite the file's";
  EXPECT_EQ(Model.Depend.Volt[1][2], 0) << "a flag of two goes with the next close";
}

}  // namespace
}  // namespace zelvane
