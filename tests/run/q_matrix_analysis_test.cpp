// The Q matrix of the stores: comparison with the integrator, schemes without an answer, the panel.
#include <limits>

#include "run/q_matrix_panel.h"
#include "run/run_fixtures.h"
#include "stimulus/stimulus.h"

namespace zelvane {
namespace {

class QMatrixTest : public RunTest {
 protected:
  static float Equilibrium(std::size_t state) { return Result.EquilibriumOccupancy[state]; }
};

TEST_F(QMatrixTest, TellsMatrixTimeConstantsAndEquilibrium) {
  Show();
  PressCommand("FxnQMatrix");
  EXPECT_TRUE(PanelVisible("QMatrixPanel"));
  EXPECT_EQ(TextBoxNamed("QMatrixText").lines,
            (Texts{"Q=", "-1.0e+03    1.0e+03    ", "5.0e+02    -5.0e+02    ", ""}));
  const Texts& results = TextBoxNamed("QResultsText").lines;
  EXPECT_EQ(results.front(), "Relaxation time constants");
  EXPECT_NE(std::find(results.begin(), results.end(), "    Tau(1)=0.666667 ms"), results.end());
  EXPECT_EQ((Texts{results.end() - 6, results.end()}),
            (Texts{"", "Equilibrium Probabilities", "    3.33e-01 State 1 probability  ",
                   "    6.67e-01 State 2 probability  ", "", ""}));
  PressCommand("FxnInsertInitProb");
  EXPECT_FLOAT_EQ(Model.StartOccupancy[2], 2.0F / 3.0F);
  EXPECT_FLOAT_EQ(static_cast<float>(ControlNamed("StartOccupancy[2]").number), 2.0F / 3.0F);
  PressCommand("FxnQuitQ");
  EXPECT_FALSE(PanelVisible("QMatrixPanel"));
}

TEST_F(QMatrixTest, ADrugCountsAtTheTimeEntered) {
  Model.KOn[1] = 1e8;
  Model.Depend.Drug[1][1][2] = 1;
  for (std::size_t p = 50; p < 100; ++p) Stimulus.Profile[1][p] = 1e-5F;
  Show();
  PressCommand("FxnQMatrix");
  EXPECT_EQ(Equilibrium(1), 1.0F);
  EXPECT_EQ(Shown("QMatrixPoint"), "1");
  using Case = std::tuple<const char*, const char*, float>;
  constexpr float Bound = 2.0F / 3.0F;
  for (const auto& [ms, point, open] :
       {Case{"0.5", "50", Bound}, Case{"0.999", "99", Bound}, Case{"1", "100", 0}, Case{"0", "1", 0},
        Case{"-3", "1", 0}, Case{"1e300", "5000000", 0}}) {
    TypeOnly("QMatrixTime", ms);
    PressCommand("FxnRecalculateQ");
    EXPECT_EQ(Shown("QMatrixPoint"), point) << ms;
    EXPECT_FLOAT_EQ(Equilibrium(2), open) << ms;
  }
}

TEST_F(QMatrixTest, TheTimeShownStandsForItsPoint) {
  for (const float interval : {0.001F, 0.005F, 0.01F, 0.02F, 0.05F, 0.07F, 0.1F, 0.3F, 1.0F}) {
    Model.ADInterval = interval;
    Show();
    for (const int point : {1, 2, 3, 7, 19, 101, 1003, 30011, 500009, 4999999}) {
      AnalyzeOnPanel(point);
      const std::string shown = ShownText(ControlNamed("QMatrixTime"));
      TypeOnly("QMatrixTime", shown);
      PressCommand("FxnRecalculateQ");
      EXPECT_EQ(Shown("QMatrixPoint"), std::to_string(point)) << shown << " ms at " << interval;
      EXPECT_NEAR(std::stod(shown), point * static_cast<double>(interval), 1e-7 * point) << interval;
    }
  }
  // 32-bit floats: 0.7 lies below seven times 0.1.
  Model.ADInterval = 0.1F;
  EXPECT_EQ(StimulusPointAt(0.7), 6);
}

TEST_F(QMatrixTest, StatesWithoutAWayInDoNotTakePart) {
  Model.StateOn[3] = 1;  // on, without a rate
  EXPECT_EQ(ActiveQMatrix(1).states, (std::vector{1, 2}));
  Model.ModelIs2D = 0;
  Model.TableRate[4][9] = 10.0F;
  Model.TableRate[9][4] = 30.0F;
  Model.TableRate[9][11] = 5.0F;
  EXPECT_EQ(ActiveQMatrix(1).states, (std::vector{4, 9, 11}));
  EXPECT_EQ(Model.TableStateOn[11], 1);
}

TEST_F(QMatrixTest, ARateOfZeroNeedsNoFactor) {
  Model.ModelIs2D = 0;
  Model.TableRate[1][2] = Model.TableRate[2][1] = 50.0F;
  Model.TableRate[3][1] = 1.0F;
  Model.TableRate[2][3] = 50.0F;
  Model.TableDepend.Volt[1][3] = 1;
  Model.TableDepend.Steepness[1][3] = 1e9F;
  Stimulus.Profile[0][1] = 1.0F;  // its exponential is infinite
  EXPECT_TRUE(QMatrixAnalysis(false, 1).finite);
  Model.TableRate[1][3] = 1.0F;
  EXPECT_FALSE(QMatrixAnalysis(false, 1).finite);
}

TEST_F(QMatrixTest, WithoutAnAnswerTheEquilibriumIsZeroAndTheNextAnalysisWorks) {
  const auto isClear = [] { return !HasEquilibrium(); };
  AnalyzeOnPanel(1);
  Model.StateOn[1] = Model.StateOn[2] = 0;
  WriteGridRates();
  EXPECT_TRUE(AnalyzeOnPanel(1).matrix.states.empty());
  EXPECT_TRUE(isClear());
  EXPECT_EQ(TextBoxNamed("QMatrixText").lines, (Texts{"Q=", ""}));
  Model.StateOn[1] = Model.StateOn[2] = 1;
  for (const double bad : {double(NAN), 1e300}) {
    consoleLines.clear();
    Model.KOff[1] = bad;
    EXPECT_FALSE(QMatrixAnalysis(true, 1).finite);
    EXPECT_TRUE(isClear());
    EXPECT_EQ(consoleLines.size(), 1U);
  }
  Model.KOff[1] = 500.0;
  QMatrixAnalysis(true, 1);
  EXPECT_FLOAT_EQ(Equilibrium(1), 1.0F / 3.0F);
  Model.StateOn[4] = Model.StateOn[5] = 1;  // a second, separate scheme
  Model.KOn[4] = Model.KOff[4] = 40.0;
  consoleLines.clear();
  QMatrixAnalysis(true, 1);
  EXPECT_EQ(consoleLines, Texts{"Singular matrix in routine ludcmp"});
  EXPECT_NEAR(Equilibrium(1) + Equilibrium(2) + Equilibrium(4) + Equilibrium(5), 1.0F, 1e-6F);
  EXPECT_TRUE(popups.empty());
}

TEST_F(QMatrixTest, ARunStartsAtEquilibriumWhenAskedAndThePanelShowsItsTime) {
  AnalyzeOnPanel(7);
  Model.StartAtEquilibrium = 1;
  RunAsSet();
  EXPECT_FLOAT_EQ(Model.StartOccupancy[2], 2.0F / 3.0F);
  EXPECT_NEAR(Result.Occupancy[2][200], 2.0 / 3.0, 1e-5);
  EXPECT_NEAR(Result.Occupancy[2][1], 2.0 / 3.0, 1e-6);
  EXPECT_FLOAT_EQ(static_cast<float>(ControlNamed("StartOccupancy[2]").number), 2.0F / 3.0F);
  EXPECT_EQ(Shown("QMatrixPoint"), "1");
  Model.StartOccupancy = {};
  Model.StartOccupancy[1] = 1.0F;
  RunSilently();
  EXPECT_EQ(Model.StartOccupancy[1], 1.0F);
  RunSilently(RunStart::AtEquilibrium);
  EXPECT_FLOAT_EQ(Model.StartOccupancy[1], 1.0F / 3.0F);
  EXPECT_TRUE(popups.empty());
}

}  // namespace
}  // namespace zelvane
