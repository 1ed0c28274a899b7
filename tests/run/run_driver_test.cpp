// RunSimulation: its refusals, its preparations and what it reads.
#include "run/run_fixtures.h"

namespace zelvane {
namespace {

using RunDriverTest = RunTest;

TEST_F(RunDriverTest, RefusesAGridWithoutStatesAndLeavesNoOccupancy) {
  RunAsSet();
  ASSERT_NEAR(Result.Occupancy[1][1], 1.0F, 0.0F);
  Model.StateOn[1] = Model.StateOn[2] = 0;
  EXPECT_EQ(RunAsSet(), Outcome::Refused);
  EXPECT_EQ(popups.size(), 1U);
  for (int p = 0; p <= Model.NumPoints; ++p) ASSERT_EQ(Result.Occupancy[1][p], 0.0F) << p;
  EXPECT_EQ(Trace.SimTrace[100], 0.0F);
}

TEST_F(RunDriverTest, RefusesSixExitsForMonteCarloAlone) {
  using Case = std::tuple<int, int, bool>;
  Model.ModelIs2D = 0;
  for (const auto& [kind, exits, refused] :
       {Case{FixedStepIntegrator, 6, false}, Case{AdaptiveIntegrator, 6, false}, Case{MonteCarlo, 5, false},
        Case{MonteCarlo, 6, true}}) {
    SCOPED_TRACE(testing::Message() << kind << " with " << exits);
    Dwell.SegmentCounter = 1;
    Model.SimulatorKind = kind;
    Model.TableRate = {};
    for (int to = 2; to < 2 + exits; ++to) Model.TableRate[1][to] = 100.0F;
    EXPECT_EQ(RunAsSet() == Outcome::Refused, refused);
    EXPECT_EQ(Dwell.SegmentCounter - 1, kind == MonteCarlo && !refused ? 1 : 0);
  }
}

TEST_F(RunDriverTest, IntegratesSubunitsOnlyAsChannelsOrProbability) {
  Model.MultiSubunit = 1;
  for (const int units : {UnitsChannels, UnitsConductance, UnitsCurrent, UnitsProbability}) {
    const bool refused = units == UnitsConductance || units == UnitsCurrent;
    popups.clear();
    Trace.TraceValid = 0;
    Model.DisplayUnits = units;
    EXPECT_EQ(RunAsSet(), refused ? Outcome::Refused : Outcome::Done) << units;
    EXPECT_EQ(Trace.TraceValid, refused ? 0 : 1) << units;
    EXPECT_EQ(popups.size(), refused ? 1U : 0U) << units;
  }
}

TEST_F(RunDriverTest, RefusesARunWithoutLength) {
  for (const auto& [field, value] :
       {std::pair{"NumPoints", "0"}, {"NumPoints", "-5"}, {"ADInterval", "0"}, {"ADInterval", "3e38"}}) {
    popups.clear();
    TypeInto(ControlNamed(field), value);
    EXPECT_EQ(AcquireData(), Outcome::Refused) << field;
    EXPECT_EQ(popups.size(), 1U) << field;
    Model.NumPoints = 200;
    Model.ADInterval = 0.01F;
    Show();
  }
}

TEST_F(RunDriverTest, TakesWhatIsTypedButASilentRunReadsNoPanelAndShowsNothing) {
  TypeInto(ControlNamed("NumPoints"), "321");
  TypeInto(ControlNamed("KOn[1]"), "0");
  AcquireData();
  EXPECT_EQ(Model.NumPoints, 321);
  EXPECT_EQ(Model.RateMatrix[1][2], 0.0F);
  RemoveTracePlots();
  EXPECT_EQ(RunSimulation(150, RunStart::AtEquilibrium), Outcome::Done);
  EXPECT_EQ(Model.NumPoints, 150);
  EXPECT_TRUE(GraphNamed("MainPanel").plots.empty());
  Model.StateOn[1] = 0;
  EXPECT_EQ(RunSimulation(150, RunStart::AsSet), Outcome::Refused);
  EXPECT_TRUE(popups.empty());
}

}  // namespace
}  // namespace zelvane
