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

TEST_F(RunPanelTest, MorePointsExtendTheVoltageWhenTheUserAgrees) {
  Model.VHold = -80.0F;
  Show();
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

TEST_F(RunPanelTest, TheQuestionComesOnlyWhenTheLengthDoesNotFall) {
  Enter("NumPoints", "199");
  EXPECT_TRUE(popups.empty());
  Enter("NumPoints", "199");
  EXPECT_EQ(popups.size(), 1U);
  EXPECT_EQ(Millivolts(198), 0.0F);  // answered no
}

TEST_F(RunPanelTest, NumPointsIsHeldToItsLimit) {
  Enter("NumPoints", "5000001");
  EXPECT_EQ(Model.NumPoints, 5'000'001);
  Enter("NumPoints", "5000002");
  EXPECT_EQ(Model.NumPoints, 5'000'000);
}

TEST_F(RunPanelTest, NoLengthIsRefusedAndTheFormerOneStays) {
  Enter("NumPoints", "0");
  EXPECT_EQ(Model.NumPoints, 200);
  EXPECT_EQ(ControlNamed("NumPoints").number, 200.0);
  Enter("ADInterval", "0");
  EXPECT_EQ(Model.ADInterval, 0.01F);
  EXPECT_EQ(popups.size(), 2U);
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
  struct Case {
    const char* points;
    int decimals;
  };
  for (const Case& c : {Case{"999", 2}, Case{"1000", 1}, Case{"9999", 1}, Case{"10000", 0}}) {
    Enter("NumPoints", c.points);
    EXPECT_EQ(GraphNamed("MainPanel").x.decimals, c.decimals) << c.points;
  }
}

TEST_F(RunPanelTest, UnitsTitleTheAxisAndReachTheAnalysis) {
  const char* titles[] = {"Number of Channels Open", "Total Conductance pS", "Macroscopic Current pA",
                          "Probability"};
  for (int units = 0; units < 4; ++units) {
    Enter("DisplayUnits", titles[units]);
    EXPECT_EQ(GraphNamed("MainPanel").y.title, titles[units]);
    EXPECT_EQ(Trace.TraceUnits, units);
    EXPECT_EQ(ControlNamed("VRev").dimmed, units == 0 || units == 3);
    EXPECT_EQ(ControlNamed("Valence").dimmed, units == 0 || units == 3);
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
  struct Case {
    int kind, subunits, runs;
    std::set<std::string> dimmed;
  };
  const std::set<std::string> loopFields = {"NumRuns", "NumIntervals", "ReseedSimulation"};
  const std::set<std::string> runFields = {"AutoAnalyze", "ShowAllTraces"};
  const auto with = [](std::set<std::string> all, const std::set<std::string>& more) {
    all.insert(more.begin(), more.end());
    return all;
  };
  const Case cases[] = {
      {FixedStepIntegrator, 0, 5, with(with({"Precision"}, loopFields), runFields)},
      {AdaptiveIntegrator, 0, 5, with({"MaxStepSize"}, loopFields)},
      {AdaptiveIntegrator, 0, 1, with(with({"MaxStepSize"}, loopFields), runFields)},
      {MonteCarlo, 0, 5, {"MaxStepSize", "Precision"}},
      {MonteCarlo, 0, 1, with({"MaxStepSize", "Precision"}, runFields)},
      {MonteCarlo, 1, 5,
       with(with({"MaxStepSize", "Precision", "StartAtEquilibrium"}, loopFields), runFields)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "kind " << c.kind << " subunits " << c.subunits << " runs " << c.runs);
    Model.SimulatorKind = c.kind;
    Model.MultiSubunit = c.subunits;
    Model.NumRuns = c.runs;
    UpdateDimming();
    for (const char* name : {"MaxStepSize", "Precision", "NumRuns", "NumIntervals", "ReseedSimulation",
                             "AutoAnalyze", "ShowAllTraces", "StartAtEquilibrium"}) {
      EXPECT_EQ(ControlNamed(name).dimmed, c.dimmed.contains(name)) << name;
    }
  }
}

TEST_F(RunPanelTest, EveryControlHelpsOnARightClickAndChangesNothing) {
  for (Control* control : PanelNamed("MainPanel").controls) {
    if (control->group != "run") continue;
    SCOPED_TRACE(control->name);
    const double before = control->number;
    RightClick(*control);
    EXPECT_EQ(popups.back().title, "? Help");
    EXPECT_FALSE(popups.back().text.empty());
    EXPECT_EQ(control->number, before);
  }
  RightClick(*FindCommand("AcquireData"));
  EXPECT_EQ(
      popups.back().text,
      "Executes model defined by rate constants shown above\nand parameters shown to left of the screen");
  EXPECT_TRUE(SimulatedChannels.empty());
}

TEST_F(RunPanelTest, TheTableOfValuesHoldsTimeAndValueOfEveryPoint) {
  RunAsSet();
  Commit(*FindCommand("FxnFillTable"));
  const Table& table = TableNamed("ValuesTable");
  ASSERT_EQ(table.rows, 200);
  EXPECT_EQ(std::stof(CellText(table, 1, 1)), 0.0F);
  EXPECT_NEAR(std::stof(CellText(table, 200, 1)), 1.99F, 1e-5F);
  EXPECT_EQ(std::stof(CellText(table, 200, 2)), Trace.SimTrace[199]);
  EXPECT_TRUE(popups.empty());
  Model.NumPoints = 5101;
  RunAsSet();
  Commit(*FindCommand("FxnFillTable"));
  EXPECT_EQ(
      popups,
      (std::vector<SeenPopup>{{"! Slow operation", "Creating the table of values may take some time."}}));
}

TEST_F(RunPanelTest, TheTableOfValuesOfAnAdaptiveRunHoldsItsSavedSteps) {
  Model.SimulatorKind = AdaptiveIntegrator;
  RunAsSet();
  ASSERT_EQ(Result.ResultKind, ResultSavedSteps);
  Commit(*FindCommand("FxnFillTable"));
  const Table& table = TableNamed("ValuesTable");
  ASSERT_EQ(table.rows, Result.KeptSteps);
  ASSERT_LT(table.rows, 200);
  for (int q = 1; q <= table.rows; ++q) {
    EXPECT_EQ(std::stof(CellText(table, q, 1)), Result.SavedTime[q]);
    EXPECT_NEAR(std::stof(CellText(table, q, 2)), 50.0F * Result.Occupancy[2][q], 1e-4F);
  }
}

}  // namespace
}  // namespace zelvane
