// RunSimulation: what it refuses, what it prepares, what it reads.
#include "sim/run_fixtures.h"

namespace zelvane {
namespace {

using RunDriverTest = RunTest;

void UseTableWithExits(int exits) {
  Model.ModelIs2D = 0;
  for (int to = 2; to < 2 + exits; ++to) Model.TableRate[1][to] = 100.0F;
}

TEST_F(RunDriverTest, RefusesAGridWithoutStatesAndLeavesNoOccupancy) {
  RunAsSet();
  ASSERT_NEAR(Result.Occupancy[1][1], 1.0F, 0.0F);
  Model.StateOn[1] = Model.StateOn[2] = 0;
  RunAsSet();
  EXPECT_EQ(popups.back(), (SeenPopup{"! Error", "No states connected."}));
  for (int p = 0; p <= Model.NumPoints; ++p) ASSERT_EQ(Result.Occupancy[1][p], 0.0F) << p;
  EXPECT_EQ(Trace.SimTrace[100], 0.0F);
}

TEST_F(RunDriverTest, RefusesSixExitsForMonteCarloAlone) {
  UseTableWithExits(6);
  for (const int kind : {FixedStepIntegrator, AdaptiveIntegrator, MonteCarlo}) {
    SCOPED_TRACE(kind);
    popups.clear();
    Trace.TraceValid = 0;
    Model.SimulatorKind = kind;
    RunAsSet();
    if (kind == MonteCarlo) {
      ASSERT_EQ(popups.size(), 1U);
      EXPECT_EQ(popups[0], (SeenPopup{"! Error",
                                      "No state can connect to more than five other states for Monte Carlo "
                                      "simulations."}));
    }
    EXPECT_EQ(Trace.TraceValid, kind == MonteCarlo ? 0 : 1);
  }
}

TEST_F(RunDriverTest, TakesFiveExitsForMonteCarlo) {
  UseTableWithExits(5);
  Model.SimulatorKind = MonteCarlo;
  RunAsSet();
  EXPECT_TRUE(popups.empty());
  EXPECT_EQ(SimulatedChannels.size(), 1U);
}

TEST_F(RunDriverTest, ListsTheExitsOfEachStateInRisingOrder) {
  Model.ModelIs2D = 0;
  Model.TableRate[3][20] = Model.TableRate[3][1] = Model.TableRate[3][7] = 1.0F;
  Model.TableRate[3][3] = 9.0F;  // the diagonal is no exit
  RunAsSet();
  ASSERT_EQ(Result.ConnectionCount[3], 3);
  EXPECT_EQ(Result.Connection[3][1], 1);
  EXPECT_EQ(Result.Connection[3][2], 7);
  EXPECT_EQ(Result.Connection[3][3], 20);
  EXPECT_EQ(Result.ConnectionCount[1], 0);
}

TEST_F(RunDriverTest, IntegratesSubunitsOnlyAsChannelsOrProbability) {
  for (const int units : {UnitsChannels, UnitsConductance, UnitsCurrent, UnitsProbability}) {
    SCOPED_TRACE(units);
    popups.clear();
    Trace.TraceValid = 0;
    Model.MultiSubunit = 1;
    Model.DisplayUnits = units;
    RunAsSet();
    const bool refused = units == UnitsConductance || units == UnitsCurrent;
    EXPECT_EQ(Trace.TraceValid, refused ? 0 : 1);
    EXPECT_EQ(PopupTexts(),
              refused ? std::vector<std::string>{"Cannot run integrator for cooperative multi-subunit "
                                                 "receptors."}
                      : std::vector<std::string>{});
  }
}

TEST_F(RunDriverTest, NumbersTheDistinctConductances) {
  const float conductances[] = {0.0F, 50.0F, 0.0F, 20.0F, 50.0F};
  for (int s = 1; s <= 5; ++s) Model.StateConductance[s] = conductances[s - 1];
  RunAsSet();
  const int expected[] = {1, 2, 1, 3, 2, 1};
  for (int s = 1; s <= 6; ++s) EXPECT_EQ(Result.StateClass[s], expected[s - 1]) << s;
}

TEST_F(RunDriverTest, TellsOnceThatItCannotComputeEquilibriumAndRuns) {
  Model.StartAtEquilibrium = 1;
  RunAsSet();
  ASSERT_EQ(popups.size(), 1U);
  EXPECT_EQ(popups[0].title, "! Warning");
  EXPECT_EQ(Trace.TraceValid, 1);
}

TEST_F(RunDriverTest, RefusesARunWithoutLength) {
  struct Case {
    const char* field;
    const char* value;
  };
  for (const Case& c : {Case{"NumPoints", "0"}, Case{"NumPoints", "-5"}, Case{"ADInterval", "0"},
                        Case{"ADInterval", "-0.01"}}) {
    SCOPED_TRACE(c.field);
    Show();
    popups.clear();
    TypeInto(ControlNamed(c.field), c.value);
    AcquireData();
    ASSERT_EQ(popups.size(), 1U);
    EXPECT_EQ(popups[0].title, "! Error");
    Model.NumPoints = 200;
    Model.ADInterval = 0.01F;
  }
}

TEST_F(RunDriverTest, TakesATypedValueThatWasNotCommitted) {
  TypeInto(ControlNamed("NumPoints"), "321");
  TypeInto(ControlNamed("KOn[1]"), "0");
  ASSERT_EQ(Model.NumPoints, 200);
  AcquireData();
  EXPECT_EQ(Model.NumPoints, 321);
  EXPECT_EQ(Model.RateMatrix[1][2], 0.0F);
}

TEST_F(RunDriverTest, ReadsNoPanelAndSaysNothingDuringAFit) {
  TypeInto(ControlNamed("NumPoints"), "321");
  Model.FitActive = 1;
  Model.StartAtEquilibrium = 1;
  RunSimulation(150);
  EXPECT_EQ(Model.NumPoints, 150);
  EXPECT_EQ(Trace.TraceValid, 1);
  EXPECT_TRUE(GraphNamed("MainPanel").plots.empty());
  Model.StateOn[1] = 0;
  RunSimulation(150);
  EXPECT_TRUE(popups.empty());
}

TEST_F(RunDriverTest, ClearsTheMarksOfAResampledOrCorrectedTrace) {
  Trace.TraceParsed = Trace.RsCorrected = 1;
  RunAsSet();
  EXPECT_EQ(Trace.TraceParsed + Trace.RsCorrected, 0);
}

}  // namespace
}  // namespace zelvane
