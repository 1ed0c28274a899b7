// Run settings on MainPanel: what a commit does beside storing its value, what is dimmed, what help says.
#include <set>

#include "sim/run_fixtures.h"
#include "stimulus/stimulus.h"

namespace zelvane {
namespace {

class RunPanelTest : public RunTest {
 protected:
  RunPanelTest() {
    Stimulus.StimMode = StimManual;  // the automatic step would rebuild the voltage at every change
    StimPanelRefresh();
    Show();
  }
  static float Millivolts(int i) { return Stimulus.Profile[0][i] * 1000.0F; }
};

TEST_F(RunPanelTest, AsManyPointsOrMoreExtendTheVoltageWhenTheUserAgrees) {
  Model.VHold = -80.0F;
  Show();
  Enter("NumPoints", "199");
  EXPECT_TRUE(popups.empty());
  Enter("NumPoints", "199");  // the user says no
  EXPECT_EQ(popups.size(), 1U);
  EXPECT_EQ(Millivolts(198), 0.0F);
  Enter("NumPoints", "200");
  popups.clear();
  answers = {true};
  Trace.TraceValid = 1;
  ASSERT_TRUE(Enter("NumPoints", "300").empty());
  EXPECT_EQ(popups,
            (std::vector<SeenPopup>{{"! New length specified", "Extend voltage protocol with new Vhold?"}}));
  EXPECT_EQ(Millivolts(198), 0.0F);
  EXPECT_EQ(Millivolts(199), -80.0F);
  EXPECT_EQ(Millivolts(299), -80.0F);
  EXPECT_EQ(Millivolts(300), 0.0F);
  EXPECT_EQ(Trace.TraceValid, 0);
  EXPECT_EQ(ControlNamed("SweepLength").text, "3.000e+00ms");
}

TEST_F(RunPanelTest, NumPointsIsHeldToItsLimitsAndNoLengthIsRefused) {
  for (const auto& [typed, kept] :
       {std::pair{"0", 200}, {"5000001", 5'000'001}, {"5000002", 5'000'000}, {"-1", 5'000'000}}) {
    Enter("NumPoints", typed);
    EXPECT_EQ(Model.NumPoints, kept) << typed;
  }
  EXPECT_EQ(ControlNamed("NumPoints").number, 5e6) << "the former value stands after a refusal";
  Enter("ADInterval", "0");
  EXPECT_EQ(Model.ADInterval, 0.01F);
}

TEST_F(RunPanelTest, TheHoldingPotentialReplacesTheProtocolWhenTheUserAgrees) {
  for (const bool answer : {false, true}) {
    answers = {answer};
    Enter("VHold", "-70");
    EXPECT_EQ(popups.back(),
              (SeenPopup{"! New timeinterval specified", "Replace voltage protocol with new Vhold?"}));
    EXPECT_EQ(Millivolts(0), answer ? -70.0F : 0.0F);
    EXPECT_EQ(Millivolts(199), answer ? -70.0F : 0.0F);
    EXPECT_EQ(Millivolts(200), 0.0F);
  }
}

TEST_F(RunPanelTest, ANewIntervalClearsTheTraceAndItsPlots) {
  RunAsSet();
  ASSERT_NE(Trace.SimTrace[150], 0.0F);
  Enter("ADInterval", "0.02");
  EXPECT_EQ(Trace.SimTrace[150], 0.0F);
  EXPECT_EQ(Trace.TraceValid, 0);
  EXPECT_TRUE(GraphNamed("MainPanel").plots.empty());
  EXPECT_EQ(ControlNamed("SweepLength").text, "4.000e+00ms");
}

TEST_F(RunPanelTest, TheTimeAxisHasFewerDecimalsTheLongerTheSweep) {
  for (const auto& [points, decimals] : {std::pair{"999", 2}, {"1000", 1}, {"9999", 1}, {"10000", 0}}) {
    Enter("NumPoints", points);
    EXPECT_EQ(GraphNamed("MainPanel").x.decimals, decimals) << points;
  }
}

TEST_F(RunPanelTest, SubunitsForceTheirFields) {
  Model.SimulatorKind = MonteCarlo;
  Model.NumRuns = 5;
  Model.NumIntervals = Model.ReseedSimulation = Model.ShowAllTraces = Model.AutoAnalyze = 1;
  Model.StartAtEquilibrium = 1;
  Show();
  Enter("MultiSubunit", "on");
  EXPECT_EQ(Model.NumRuns, 1);
  for (const char* name :
       {"StartAtEquilibrium", "NumIntervals", "ReseedSimulation", "AutoAnalyze", "ShowAllTraces"}) {
    EXPECT_EQ(FieldNumber(ControlNamed(name).field), 0.0) << name;
    EXPECT_EQ(ControlNamed(name).number, 0.0) << name;
    EXPECT_TRUE(ControlNamed(name).dimmed) << name;
  }
}

TEST_F(RunPanelTest, FieldsThatHaveNoEffectAreDimmed) {
  using Names = std::set<std::string>;
  struct Case {
    int kind, subunits, runs;
    Names dimmed;
  };
  for (const Case& c :
       {Case{FixedStepIntegrator,
             0,
             5,
             {"Precision", "NumRuns", "NumIntervals", "ReseedSimulation", "AutoAnalyze", "ShowAllTraces"}},
        Case{AdaptiveIntegrator, 0, 5, {"MaxStepSize", "NumRuns", "NumIntervals", "ReseedSimulation"}},
        Case{MonteCarlo, 0, 5, {"MaxStepSize", "Precision"}},
        Case{MonteCarlo, 0, 1, {"MaxStepSize", "Precision", "AutoAnalyze", "ShowAllTraces"}},
        Case{MonteCarlo,
             1,
             5,
             {"MaxStepSize", "Precision", "NumRuns", "NumIntervals", "ReseedSimulation", "AutoAnalyze",
              "ShowAllTraces", "StartAtEquilibrium"}}}) {
    Model.SimulatorKind = c.kind;
    Model.MultiSubunit = c.subunits;
    Model.NumRuns = c.runs;
    UpdateDimming();
    Names dimmed;
    for (const Control* control : PanelNamed("MainPanel").controls) {
      if (control->dimmed) dimmed.insert(control->name);
    }
    EXPECT_EQ(dimmed, c.dimmed) << "kind " << c.kind << " subunits " << c.subunits << " runs " << c.runs;
  }
}

TEST_F(RunPanelTest, TheTableOfValuesHoldsEveryPointOrEverySavedStep) {
  const Table& table = TableNamed("ValuesTable");
  const auto cell = [&table](int row, int column) { return std::stof(CellText(table, row, column)); };
  for (const int points : {5101, 200}) {
    Model.NumPoints = points;
    RunAsSet();
    Commit(*FindCommand("FxnFillTable"));
  }
  EXPECT_EQ(
      popups,
      (std::vector<SeenPopup>{{"! Slow operation", "Creating the table of values may take some time."}}));
  ASSERT_EQ(table.rows, 200);
  EXPECT_NEAR(cell(200, 1), 1.99F, 1e-5F);
  EXPECT_EQ(cell(200, 2), Trace.SimTrace[199]);
  Model.SimulatorKind = AdaptiveIntegrator;
  RunAsSet();
  Commit(*FindCommand("FxnFillTable"));
  ASSERT_EQ(table.rows, Result.KeptSteps);
  ASSERT_LT(table.rows, 200);
  for (int q = 1; q <= table.rows; ++q) {
    EXPECT_EQ(cell(q, 1), Result.SavedTime[q]);
    EXPECT_NEAR(cell(q, 2), 50.0F * Result.Occupancy[2][q], 1e-4F);
  }
}

}  // namespace
}  // namespace zelvane
