// FitLimitsPanel: the table of the present fit, what is typed there, and the rows of a fit of rates on it.
#include "parameters/fit_limits_panel.h"

#include "analysis/analysis_fit_store.h"
#include "fit/fit_rows.h"
#include "model/constraints_store.h"
#include "noise/noise_fit_store.h"
#include "parameters/fit_modes.h"
#include "screen/fields.h"
#include "support/pressing.h"

namespace zelvane {
namespace {

class FitLimitsTest : public PanelTest {
 protected:
  FitLimitsTest() {
    for (const std::size_t state : {1U, 2U, 6U}) Model.StateOn[state] = 1;
    Model.KOn[1] = 20.0;
    WriteAllControls();
  }
};

TEST_F(FitLimitsTest, WhatIsTypedGoesToTheTableOfTheFormerFitWhenAnotherIsChosen) {
  Parameters.AnalysisLimitsOn = 1;
  ShowFitLimits(FitDecay);
  TypeOnly("ExpFitLimits[2].hi", "55");
  SetFitMode(FitSublevels);
  EXPECT_EQ(AnalysisFit.ExpFitLimits[2].hi, 55.0);
  EXPECT_EQ(Parameters.AnalysisFitLimits[2].hi, 55.0);
  EXPECT_EQ(NoiseFit.SublevelFitLimits[2].hi, 1.0);
  EXPECT_FALSE(ControlNamed("ExpFitLimits[2].hi").visible);
  TypeOnly("SublevelFitLimits[8].hi", "900");
  PressCommand("FxnQuitFitLimits");
  EXPECT_EQ(NoiseFit.SublevelFitLimits[8].hi, 900.0);
  EXPECT_FALSE(PanelVisible("FitLimitsPanel"));
}

TEST_F(FitLimitsTest, OnlyTheParametersOfTheFitCanBeEditedAndOnlyWhereItsSwitchesAllow) {
  const auto open = [](const std::string& name) {
    const Control& control = ControlNamed(name);
    return control.visible && !control.dimmed;
  };
  struct Case {
    int mode;
    const char* limits;
    int row;
    bool parameter;
    bool seed;
  };
  for (const Case& c :
       {Case{FitRise, "ExpFitLimits", 3, true, true}, Case{FitRise, "ExpFitLimits", 4, false, false},
        Case{FitTwoDecays, "ExpFitLimits", 5, true, true},
        Case{FitDoseResponse, "DoseFitLimits", 4, true, false},
        Case{FitSublevels, "SublevelFitLimits", 4, false, false},
        Case{FitDwells, "DwellFitLimits", 11, true, true},
        Case{FitSpectrum, "SpecFitLimits", 4, true, true}}) {
    SCOPED_TRACE(std::to_string(c.mode) + ", row " + std::to_string(c.row));
    const std::string limit = std::string(c.limits) + '[' + std::to_string(c.row) + "].lo";
    const std::string row = '[' + std::to_string(c.row) + ']';
    Parameters.AnalysisLimitsOn = Parameters.AnalysisFixOn = 0;
    Parameters.AnalysisAutoSeed = 1;
    ShowFitLimits(c.mode);
    EXPECT_FALSE(open(limit) || open("AnalysisFitFixed" + row) || open("AnalysisFitSeed" + row));
    PressCommand("FxnParamLimits");
    EXPECT_EQ(open(limit), c.parameter);
    PressCommand("FxnFixFree");
    EXPECT_EQ(open("AnalysisFitFixed" + row), c.parameter);
    EXPECT_EQ(open("AnalysisFitSeed" + row), c.seed);
  }
}

TEST_F(FitLimitsTest, TheStatusWordTellsOfLimitsBeforeFixedParameters) {
  for (const auto& [fix, limits, automatic, word] : {std::tuple{0, 0, 1, "Free, Automatic"},
                                                     {0, 0, 0, "Free, Manual"},
                                                     {1, 0, 1, "Fixed, Automatic"},
                                                     {1, 0, 0, "Fixed, Manual"},
                                                     {1, 1, 0, "Limits, Manual"},
                                                     {0, 1, 1, "Limits, Automatic"}}) {
    Parameters.AnalysisFixOn = fix;
    Parameters.AnalysisLimitsOn = limits;
    Parameters.AnalysisAutoSeed = automatic;
    FitLimitsRead();
    EXPECT_EQ(ControlNamed("AnalysisFitStatus").text, word);
  }
}

TEST_F(FitLimitsTest, ARateThatAConstraintSetsIsFixedUntilTheConstraintGoes) {
  SetFitMode(FitWaveforms);
  EXPECT_EQ(ControlNamed("FitRowLabel[4]").text, "K6,1");
  EXPECT_FALSE(ControlNamed("FitRowLabel[5]").visible);
  PressCommand("FxnModeVertex4");
  EXPECT_EQ(ControlNamed("FitRowLabel[4]").colour, "red");
  Constraints.Rate[1] = {.Enabled = 1, .TargetFrom = 1, .TargetTo = 6};
  Constraints.Loop[1] = {.Enabled = 1, .RateFrom = 6, .RateTo = 1};
  UpdateDimming();
  EXPECT_EQ(ControlNamed("FitRowLabel[3]").colour, "blue");
  EXPECT_EQ(ControlNamed("FitRowLabel[4]").colour, "green");
  EXPECT_EQ(ControlNamed("WaveFitFixed[3]").number, 1.0);
  EXPECT_TRUE(ControlNamed("WaveFitFixed[3]").dimmed);
  EXPECT_TRUE(ControlNamed("WaveFitSeed[1]").dimmed);
  Constraints = ConstraintsStore{};
  UpdateDimming();
  EXPECT_EQ(ControlNamed("WaveFitFixed[3]").number, 0.0);
  EXPECT_EQ(ControlNamed("WaveFitFixed[4]").number, 1.0);
}

TEST_F(FitLimitsTest, TypedLimitsOutliveTheBuildOfTheRowsAndAnotherFormShowsItsRates) {
  ShowFitLimits(FitWaveforms);
  TypeOnly("WaveFitLimits[1].hi", "321");
  WaveFitRowsBuild(RowLimits::Follow);
  EXPECT_EQ(Fit.WaveFitLimits[1].hi, 321.0);
  Model.TableRate[7][1] = 9.0F;
  WriteAllControls();
  PressCommand("FxnFit2D3D");
  EXPECT_EQ(popups.size(), 1U);
  EXPECT_EQ(Model.ModelIs2D, 0);
  EXPECT_EQ(ControlNamed("FitRowLabel[1]").text, "K7,1");
  EXPECT_FALSE(ControlNamed("FitRowLabel[2]").visible);
}

TEST_F(FitLimitsTest, CellsOfTheTableOfRatesReachTheModelAndTheLimits) {
  SetFitMode(FitWaveforms);
  Table& table = TableNamed("FitRatesTable");
  ASSERT_EQ(table.rows, 4);
  EXPECT_EQ(EnterCell(table, 1, 2, "25"), "");
  EXPECT_EQ(EnterCell(table, 1, 4, "50"), "");
  EXPECT_EQ(EnterCell(table, 1, 5, "1"), "");
  EXPECT_EQ(ControlNamed("KOn[1]").number, 25.0);
  EXPECT_EQ(ControlNamed("WaveFitLimits[1].hi").number, 50.0);
  EXPECT_EQ(CellText(table, 1, 5), "1");
  EXPECT_EQ(EnterCell(table, 1, 2, "-3"), "");
  EXPECT_EQ(EnterCell(table, 1, 5, "0.5"), "");
  EXPECT_EQ(notes.size(), 2U);
  EXPECT_EQ(Model.KOn[1], 25.0);
  EXPECT_EQ(Fit.WaveFitOwnFixed[1], 1);
}

}  // namespace
}  // namespace zelvane
