// Run settings on MainPanel: what a commit does besides storing its value, dimming, help.
#include "run/run_fixtures.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_file.h"
#include "support/drive_test.h"
#include "trace/trace_events.h"

namespace zelvane {
namespace {

class RunPanelTest : public RunTest {
 protected:
  RunPanelTest() {
    Stimulus.StimMode = StimManual;  // the automatic step would rebuild the voltage at every change
    StimPanelRefresh();
    Show();
  }
};

using RunScreenTest = DriveTest;

TEST_F(RunScreenTest, AsManyPointsOrMoreExtendTheVoltageWhenTheUserAgrees) {
  const auto lines = Run(
      "enter StimMode MANUAL; enter NumPoints 200; answer no; enter VHold -62.5; enter NumPoints 199; "
      "answer no; enter NumPoints 199; slice VoltageProfile 198 1; answer no; enter NumPoints 200; answer yes; "
      "enter NumPoints 300; slice VoltageProfile 198 2; slice VoltageProfile 299 2; control SweepLength");
  EXPECT_EQ(Told(lines), (Values{{0}, {0, -0.0625}, {-0.0625, 0}, "3.000e+00ms"}));
  ASSERT_EQ(lines.size(), 8U);
  EXPECT_EQ(lines[1]["title"], "! New length specified");
  EXPECT_EQ(lines[1]["text"], "Extend voltage protocol with new Vhold?");
}

TEST_F(RunScreenTest, NumPointsIsHeldToItsLimitsAndNoLengthIsRefused) {
  EXPECT_EQ(
      Told("enter NumPoints 0; get NumPoints; enter NumPoints 5000001; get NumPoints; "
           "enter NumPoints 5000002; get NumPoints; enter NumPoints -1; control NumPoints; get NumPoints; "
           "enter ADInterval 0; control ADInterval"),
      (Values{"A run needs at least one point.", 10240, 5'000'001, 5'000'000,
              "A run needs at least one point.", 5'000'000, 5'000'000,
              "The time between points must be above 0 ms.", 0.00999999978}));
}

TEST_F(RunScreenTest, TheHoldingPotentialReplacesTheProtocolWhenTheUserAgrees) {
  const std::string profile = "enter VHold -62.5; slice VoltageProfile 0 1; slice VoltageProfile 199 2; ";
  const auto lines =
      Run("enter StimMode MANUAL; enter NumPoints 200; answer no; " + profile + "answer yes; " + profile);
  EXPECT_EQ(Told(lines), (Values{{0}, {0, 0}, {-0.0625}, {-0.0625, 0}}));
  EXPECT_EQ(lines[0]["title"], "! New timeinterval specified");
  EXPECT_EQ(lines[0]["text"], "Replace voltage protocol with new Vhold?");
}

TEST_F(RunPanelTest, ANewIntervalClearsTheTraceAndItsPlots) {
  RunAsSet();
  ASSERT_NE(Trace.SimTrace[150], 0.0F);
  Enter("ADInterval", "0.02");
  EXPECT_EQ(Trace.SimTrace[150], 0.0F);
  EXPECT_EQ(Trace.TraceValid, 0);
  EXPECT_TRUE(GraphNamed("MainPanel").plots.empty());
  EXPECT_EQ(ControlNamed("SweepLength").text, "4.000e+00ms");
  RunAsSet();
  Enter("NumPoints", "199");
  EXPECT_EQ(Trace.TraceValid, 0);
}

TEST_F(RunScreenTest, ATraceOfAnotherLengthOrIntervalIsNotValidAndOneOfAnotherIntervalIsGone) {
  const std::string run =
      "press OnOff_State_1; press OnOff_State_2; enter KOn[1] 1000; enter KOff[1] 500; enter StateMonitored[2] 1; "
      "set MultiSubunit 0; set SimulatorKind 0; enter DisplayUnits 3; press FxnStartState; enter StartOccupancy[1] 1; "
      "press CloseInitialConditions; enter NumPoints 200; press AcquireData; ";
  const std::string stm = folder.File("other.stm");
  const std::string column = folder.Written(
      "other.asc", "2.0e-2\n" + [] {
        std::string rows;
        for (int i = 0; i < 150; ++i) rows += "0\n";
        return rows;
      }());
  ASSERT_EQ(WriteStimProfiles(stm, 0.02F,
                              [] {
                                static std::array<float, 151> zeros{};
                                StimProfileSpans profiles;
                                profiles.fill(zeros);
                                return profiles;
                              }()),
            Outcome::Done);
  const std::string model = folder.File("m.mod");
  const std::string open = "; press OpenStimulus; ";
  using Row = std::tuple<std::string, int, bool>;
  for (const auto& [change, valid, kept] :
       {Row{"enter NumRuns 3; enter StepAmp 0.1; press FxnQMatrix; ", 1, true},
        Row{"set NumPoints 150; enter NumChannels 2; press FxnQMatrix; ", 0, true},
        Row{"set NumPoints 150; press FxnStimulusButton; ", 0, true},
        Row{"set ADInterval 0.02; press FxnQMatrix; ", 0, false},
        Row{"set NumPoints 150; press FxnQMatrix; set NumPoints 200; press FxnSimRefresh; ", 1, true},
        Row{"answer no; answer yes; choose " + stm + open, 0, true},
        Row{"answer yes; answer no; choose " + stm + open, 0, false},
        Row{"answer no; answer no; choose " + stm + open, 1, true},
        Row{"answer no; answer yes; choose " + column + "; press ImportStim; ", 0, true},
        Row{"choose " + model + "; press SaveParameters; choose " + model + "; press OpenParameterFile; ", 0,
            true},
        Row{"answer no; enter NumPoints 300; press AcquireData; get TraceValid; press FxnUndo; ", 0, true}}) {
    const auto values = Told(run + change + "get TraceValid; slice SimTrace 149 1");
    ASSERT_GE(values.size(), 2U);
    EXPECT_EQ(values[values.size() - 2], valid) << change;
    EXPECT_EQ(values.back()[0] != 0.0, kept) << change;
  }
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
  }
}

TEST_F(RunPanelTest, FieldsThatHaveNoEffectAreDimmed) {
  using Case = std::tuple<int, int, int, const char*>;
  for (
      const auto& [kind, subunits, runs, expected] :
      {Case{FixedStepIntegrator, 0, 5,
            "NumRuns NumIntervals Precision ReseedSimulation ShowAllTraces AutoAnalyze "},
       Case{AdaptiveIntegrator, 0, 5, "NumRuns NumIntervals MaxStepSize ReseedSimulation "},
       Case{MonteCarlo, 0, 5, "MaxStepSize Precision "},
       Case{MonteCarlo, 0, 1, "MaxStepSize Precision ShowAllTraces AutoAnalyze "},
       Case{
           MonteCarlo, 1, 5,
           "NumRuns NumIntervals MaxStepSize Precision StartAtEquilibrium ReseedSimulation ShowAllTraces AutoAnalyze "}}) {
    Model.SimulatorKind = kind;
    Model.MultiSubunit = subunits;
    Model.NumRuns = runs;
    UpdateDimming();
    std::string dimmed;
    for (const Control* control : PanelNamed("MainPanel").controls) {
      if (control->dimmed) dimmed += control->name + ' ';
    }
    EXPECT_EQ(dimmed, expected) << "kind " << kind << " subunits " << subunits << " runs " << runs;
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
  const float last = std::exchange(Trace.SimTrace[199], -7.0F);
  EXPECT_EQ(cell(200, 2), last) << "the result when the table was filled";
  Model.SimulatorKind = AdaptiveIntegrator;
  Model.Depend.Drug[1][1][2] = 1;
  Model.KOn[1] = 1e6;
  std::fill_n(Stimulus.Profile[1].begin() + 50, 500,
              1e-3F);  // the integration starts here, 0.5 ms into the sweep
  RunAsSet();
  Commit(*FindCommand("FxnFillTable"));
  ASSERT_EQ(table.rows, Result.KeptSteps);
  ASSERT_LT(table.rows, 200);
  ConnectRuns();
  TraceSteps steps;
  StepsToWrite.Tell(steps);
  ASSERT_EQ(steps.timeMs.size(), static_cast<std::size_t>(table.rows)) << "a file gets the same";
  for (int q = 1; q <= table.rows; ++q) {
    EXPECT_FLOAT_EQ(cell(q, 1), 0.5F + Result.SavedTime[q]);
    EXPECT_NEAR(cell(q, 2), 50.0F * Result.Occupancy[2][q], 1e-4F);
    EXPECT_FLOAT_EQ(cell(q, 1), static_cast<float>(steps.timeMs[static_cast<std::size_t>(q) - 1]));
    EXPECT_EQ(cell(q, 2), steps.values[static_cast<std::size_t>(q) - 1]);
  }
  Model.NumPoints = 150;
  Commit(*FindCommand("FxnFillTable"));
  EXPECT_EQ(table.rows, 150) << "a trace of another length has no saved steps";
}

}  // namespace
}  // namespace zelvane
