// The panels of a scheme: the grid on MainPanel, the table and the transfer between the two forms, the
// dependence of a rate, conductances and starting occupancies of the states.
#include "model/model_panels.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

using GridPanelTest = DriveTest;

/// States 1 and 2 are on; drug 1 binds from 1 to 2.
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

TEST_F(FormsPanelTest, ARunOfTheTableLeavesTheDependencesOfTheGrid) {
  const std::string model = folder.File("m.mod");
  const std::string run =
      "press OnOff_State_1; press OnOff_State_2; enter KOn[1] 1e7; enter KOff[1] 10; press FxnDepend1On; "
      "set DependDrug[1] 1; press FxnExitConc; set MultiSubunit 0; enter SimulatorKind 0; press FxnTableModel; "
      "enter TableRate[1][2] 5; enter TableRate[2][1] 5; press fxndep0102; set DependDrug[2] 1; press FxnExitConc; "
      "press AcquireData; ";
  const std::string both = "get DrugDepend[1][1][2]; get DrugDepend[2][1][2]; ";
  EXPECT_EQ(Told(run + both + "control KOn[1]"), (Values{0, 1, 1e7, "green"})) << "the table is active";
  for (const std::string& back :
       {std::string("press FxnMainModel; "), "choose " + model + "; press SaveParameters; ",
        std::string("press FxnDepend1Off; press FxnExitConc; press FxnMainModel; "),
        std::string("press FxnGetGraphModel; "),
        std::string("enter KOn[1] 3; press FxnUndo; press FxnUndo; ")}) {
    EXPECT_EQ(Told(run + back + both), (Values{1, 0})) << back;
  }
  EXPECT_EQ(Told("choose " + model + "; press OpenParameterFile; get TableDrugDepend[2][1][2]; " + both),
            (Values{1, 1, 0}));
  EXPECT_EQ(Told(run + "press FxnMainModel; press FxnTableModel; press AcquireData; " + both),
            (Values{0, 1}));
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

TEST_F(DependencePanelTest, ARunAndASaveTakeOverWhatAnOpenPanelShows) {
  const std::string open = "press FxnDepend1Off; " + std::string(Settings);
  for (const std::string& command :
       {std::string("press AcquireData; "), "choose " + folder.File("m.mod") + "; press SaveParameters; "}) {
    Run(open + command);
    EXPECT_EQ(Model.Depend.Drug[4][2][1], 1) << command;
    EXPECT_EQ(Model.Depend.Steepness[2][1], -0.5F) << command;
    EXPECT_TRUE(PanelVisible("DependencePanel")) << command;
  }
  EXPECT_EQ(Told(open + "press FxnConductance; press FxnTableModel; panels; get DrugDepend[4][2][1]"),
            (Values{{"MainPanel", "TableModelPanel"}, 1}))
      << "the table hides all dialogs";
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

using StatePanelsTest = DriveTest;

TEST_F(StatePanelsTest, ConductancesAboveZeroStandBesideTheStates) {
  EXPECT_EQ(Told("press FxnConductance; panels; set StateConductance[20] 12.4; enter StateConductance[3] 50; "
                 "control GridConductance[3]; control GridConductance[20]; control GridConductance[4]; "
                 "set StateConductance[3] 0; press CloseConductance; panels; get StateConductance[3]; "
                 "control GridConductance[3]"),
            (Values{{"MainPanel", "ConductancePanel"}, "50pS\n", "12pS\n", "", {"MainPanel"}, 0, ""}));
}

TEST_F(StatePanelsTest, StartingProportionsAreEditedAndCleared) {
  EXPECT_EQ(Told("press FxnStartState; enter StartOccupancy[1] 0.75; set StartOccupancy[2] 0.25; "
                 "press CloseInitialConditions; panels; slice StartOccupancy 1 3; "
                 "press ClearInitialConditions; slice StartOccupancy 1 20; control StartOccupancy[1]"),
            (Values{{"MainPanel"}, {0.75, 0.25, 0}, std::vector<int>(20), 0}));
}

TEST_F(StatePanelsTest, ProportionsAboveOneAreToldWhenThePanelOpens) {
  using Case = std::tuple<float, int, std::vector<SeenPopup>>;
  Run("");
  for (const auto& [each, subunits, told] :
       {Case{0.1F, 0, {}}, Case{0.1001F, 1, {}},
        Case{0.1001F, 0, {{"! Error", "Initial state starting proportions >1.0"}}}}) {
    popups.clear();
    Model.MultiSubunit = subunits;
    for (int s = 1; s <= 10; ++s) Model.StartOccupancy[s] = each;
    Press(*FindCommand("FxnStartState"));
    EXPECT_EQ(popups, told) << each << " with " << subunits;
    EXPECT_EQ(Model.StartOccupancy[1], each) << "nothing is changed by itself";
  }
}

}  // namespace
}  // namespace zelvane
