// The panel on which one rate's dependence is set.
#include "model/model.h"
#include "model/model_panels.h"
#include "screen/screen.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

using DependencePanelTest = DriveTest;

TEST_F(DependencePanelTest, OpensForTheRateOfItsButton) {
  std::string script;
  for (const char* button : {"FxnDepend1On", "FxnDepend31Off", "FxnDepend15On", "fxndep1207", "fxndep0120"})
    script += std::string("press ") + button + "; control DependCode; ";
  EXPECT_EQ(Told(script), (Values{"102", "2019", "712", "1207", "120"}));
  EXPECT_TRUE(PanelVisible("DependencePanel"));
}

constexpr char Settings[] =
    "enter DependDrug[4] 1; enter DependVolt 1; set DependSteepness -0.5; set DependTemperature 37; "
    "set DrugLabel[4] Glycine; ";

TEST_F(DependencePanelTest, StoresTheSettingsOfAGridRateWhenClosed) {
  EXPECT_EQ(Told("press FxnDepend1Off; " + std::string(Settings) +
                 "get DrugDepend[4][2][1]; press FxnExitConc; panels; get DrugDepend[4][2][1]; "
                 "get VoltDepend[2][1]; get VoltSteepness[2][1]; get VoltRange[2][1]; "
                 "get DrugDepend[4][1][2]; get TableDrugDepend[4][2][1]; get DrugLabel[4]; get Temperature"),
            (Values{0, {"MainPanel"}, 1, 1, -0.5, 37, 0, 0, "Glycine", 25}))
      << "the temperature of the program follows its own field's commit";
}

TEST_F(DependencePanelTest, StoresTheSettingsOfATableRateAndMarksItsButton) {
  const std::string drugs = "get TableDrugDepend[4][2][1]; get DrugDepend[4][2][1]; ";
  EXPECT_EQ(Told("press FxnTableModel; press fxndep0201; " + std::string(Settings) + drugs +
                 "press FxnExitConc; " + drugs +
                 "get TableVoltDepend[2][1]; get TableVoltSteepness[2][1]; get TableVoltRange[2][1]; "
                 "get Temperature; control TableDepend[2][1]"),
            (Values{0, 0, 1, 0, 1, -0.5, 37, 37, nullptr, "green"}));
  EXPECT_EQ(ControlNamed("TableDepend[2][1]").label, "4V");
}

TEST_F(DependencePanelTest, ShowsWhatWasSetAndAnotherRateKeepsTheFirstOnes) {
  EXPECT_EQ(Told("press FxnTableModel; press fxndep0201; " + std::string(Settings) +
                 "press FxnExitConc; press fxndep0201; control DependDrug[4]; control DependDrug[1]; "
                 "enter DependDrug[4] 0; enter DependVolt 0; set DependSteepness 1e300; press fxndep0102; "
                 "control DependDrug[4]; get TableVoltDepend[2][1]; get TableVoltSteepness[2][1]; "
                 "control TableDepend[2][1]"),
            (Values{1, 0, 0, 0, 3.40282347e+38, nullptr}));
}

TEST_F(DependencePanelTest, ShowsTheCoefficientInBothForms) {
  EXPECT_EQ(Told("press FxnDepend1On; enter DependSteepness 1; control DependGrowth; control DependEfold; "
                 "enter DependTemperature 10; get Temperature; control DependGrowth"),
            (Values{"Voltage    kv=k exp(38.91535 Vh)", "Voltage    kv=k exp(Vh / 0.02570)", 10,
                    "Voltage    kv=k exp(40.97683 Vh)"}));  // 11603 / 283.16
}

TEST_F(DependencePanelTest, WhatAFileBringsIsShownAndClosedAway) {
  Run("press FxnDepend1On");
  Model.Depend.Volt[1][2] = 2;
  Model.Depend.Steepness[1][2] = 2.0F;
  RefreshModelPanels();
  EXPECT_EQ(ControlNamed("KOn[1]").colour, "green");
  EXPECT_EQ(ControlNumber("DependVolt"), 2.0);
  EXPECT_EQ(ControlNumber("DependSteepness"), 2.0);
  Press(*FindCommand("FxnExitConc"));
  EXPECT_EQ(Model.Depend.Steepness[1][2], 2.0F) << "an open panel does not overwrite the file's";
  EXPECT_EQ(Model.Depend.Volt[1][2], 0) << "a flag of two goes with the next close";
}

}  // namespace
}  // namespace zelvane
