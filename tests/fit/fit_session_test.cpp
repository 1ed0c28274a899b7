// Sessions of waveform fits: known rates come back, the session leaves what it should, and its evaluations agree with
// the plain form.
#include "fit/fit_session.h"

#include <cmath>

#include "fit/fit_objective.h"
#include "fit/fit_panel.h"
#include "fit/fit_rows.h"
#include "fit/plain_objective.h"
#include "fit/simulated_set.h"
#include "formats/allocations.h"
#include "headless/commands/job_settings.h"
#include "model/constraints_store.h"
#include "model/model.h"
#include "parameters/vertex_store.h"
#include "run/run_panel.h"
#include "stimulus/stimulus_store.h"
#include "support/pressing.h"
#include "trace/program_random.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr int Points = 700;
constexpr FitAnswers NoToAll{};

class FitSessionTest : public PanelTest {
 protected:
  /// Loads three doses with 1 % noise.
  static void LoadDoses(double noise = 0.01) {
    LoadSimulatedWave(1, Points, 1e-3F, 6.0F, noise);
    LoadSimulatedWave(2, Points, 2e-4F, 6.0F, noise);
    LoadSimulatedWave(3, Points, 5e-5F, 12.0F, noise);
  }

  /// Sets limits of a factor of 10 around the true rates, then moves the free rates away from them.
  static void SpoilRates(double factor) {
    ShowJobStores();
    WriteFitPanel();
    static_cast<void>(WaveFitRowsBuild(RowLimits::Keep));
    for (const FitRow& row : FitRowsInUse()) {
      const double rate = RateOf(row.code);
      Fit.WaveFitLimits[Index(row.row)] = {rate / 10.0, rate * 10.0};
      if (RowIsFixed(row.row)) continue;
      PutRate(row.code, rate * factor);
      factor = 1.0 / factor;
    }
    ShowJobStores();
    WriteFitPanel();
  }

  static std::vector<double> Rates() {
    std::vector<double> rates;
    for (const FitRow& row : FitRowsInUse()) rates.push_back(RateOf(row.code));
    return rates;
  }

  static void SetFit(int iterations, int restarts, double tolerance) {
    Fit.FitNumIterations = iterations;
    Fit.FitNumRestarts = restarts;
    Fit.WaveFitTolerance = tolerance;
  }

  /// Returns whether all rates are within a fraction of the wanted ones.
  static bool AllNear(const std::vector<double>& wanted, double fraction) {
    const std::vector<double> rates = Rates();
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (std::fabs(rates[i] / wanted[i] - 1.0) > fraction) return false;
    }
    return true;
  }

  /// Fits with four seeds from the same rates and returns how often all rates came back.
  int SeedsThatSucceed(double spoiled, double fraction) {
    int good = 0;
    for (int seed = 1; seed <= 4; ++seed) {
      SetSeeds(ProgramRandom, {100.0 + seed, 200.0, 300.0});
      LoadDoses();
      ShowJobStores();
      static_cast<void>(WaveFitRowsBuild(RowLimits::Keep));
      const std::vector<double> truth = Rates();
      const FittedValues values = FittedValuesNow();
      SpoilRates(spoiled);
      EXPECT_EQ(RunRateFit(NoToAll), Outcome::Done) << testing::PrintToString(PopupTexts());
      if (AllNear(truth, fraction)) ++good;
      PutFittedValues(values);
    }
    return good;
  }
};

TEST_F(FitSessionTest, TwoAndFourRatesComeBack) {
  MakeThreeStateModel();
  SetFit(800, 1, 1e-9);
  EXPECT_GE(SeedsThatSucceed(1.8, 0.03), 3);

  ShowJobStores();
  static_cast<void>(WaveFitRowsBuild(RowLimits::Keep));
  FixRow(1, true);
  FixRow(2, true);
  EXPECT_GE(SeedsThatSucceed(1.8, 0.01), 3);
}

TEST_F(FitSessionTest, TheSumOfSquaresIsThatOfThePlainFormBitForBit) {
  for (const bool grid : {true, false}) {
    for (const bool equilibrium : {true, false}) {
      Fit.FitNormalized = 0;
      grid ? MakeThreeStateModel() : MakeTableModel();
      Model.FitStartAtEquilibrium = equilibrium ? 1 : 0;
      LoadDoses();
      SpoilRates(1.5);
      Fit.FitParse = 3;
      Fit.FitDualSpeed = 40;
      SetFit(20, 1, 1e-9);
      ASSERT_EQ(RunRateFit(NoToAll), Outcome::Done);
      SimplexTable& table = Vertices.simplex;
      for (int column = 0; column < table.NumVertices; ++column) {
        const double plain = PlainSumOfSquares(column);
        Fit.WaveFitLimitsOn = 0;
        RateVertexEval(column);
        Fit.WaveFitLimitsOn = 1;
        EXPECT_EQ(table.At(0, column), plain) << "column " << column << " grid " << grid;
      }
    }
  }
}

TEST_F(FitSessionTest, ConstrainedRatesMoveTogetherAndLoopsStayBalanced) {
  MakeTableModel();
  Model.TableRate[1][4] = 200.0F;  // closes the loop 1, 2, 4
  Model.TableRate[4][1] = 200.0F;
  Constraints.Loop[1] = {.Enabled = 1, .State = {0, 1, 2, 4}, .RateFrom = 4, .RateTo = 1};
  Constraints.Rate[1] = {.Enabled = 1,
                         .TargetFrom = 2,
                         .TargetTo = 1,
                         .SourceFrom = 3,
                         .SourceTo = 2,
                         .Operation = 2,
                         .Value = 2.0F};
  LoadDoses();
  SpoilRates(1.4);
  SetFit(60, 1, 1e-9);
  ASSERT_EQ(RunRateFit(NoToAll), Outcome::Done);
  for (int column = 0; column < Vertices.simplex.NumVertices; ++column) {
    RateVertexEval(column);
    const auto& k = Model.TableRate;
    EXPECT_EQ(k[2][1], 2.0F * k[3][2]);
    EXPECT_NEAR(k[1][2] * k[2][4] * k[4][1] / (k[1][4] * k[4][2] * k[2][1]), 1.0F, 1e-5F);
  }
}

TEST_F(FitSessionTest, AnExponentialTransientComesBack) {
  MakeThreeStateModel();
  Stimulus.ExpComponents = 1;
  Stimulus.ExpRiseFlag = 0;
  int good = 0;
  for (int seed = 1; seed <= 3; ++seed) {
    SetSeeds(ProgramRandom, {50.0 + seed, 60.0, 70.0});
    LoadSimulatedWave(1, Points, 0.0, [] {
      float t = 0.0F;
      for (std::size_t i = 110; i < Points; ++i, t += Model.ADInterval)
        Stimulus.Profile[1][i] = static_cast<float>(1e-3 * std::exp(-static_cast<double>(t) / 1.2));
    });
    Fit.Waveform[1].DataFitStart = 2.0F;
    Stimulus.ExpAmp1 = 4e-4F;
    Stimulus.ExpTau1 = 2.5F;
    SetFit(1000, 2, 1e-12);
    ShowJobStores();
    WriteFitPanel();
    answers = {false, true, false, false, false};  // normalise, then go on without, log, save, export
    StartStimFit();
    if (std::fabs(Stimulus.ExpAmp1 / 1e-3F - 1.0F) < 0.02F &&
        std::fabs(Stimulus.ExpTau1 / 1.2F - 1.0F) < 0.02F)
      ++good;
  }
  EXPECT_GE(good, 2);
}

TEST_F(FitSessionTest, AnEvaluationAllocatesNothingButItsLine) {
  MakeThreeStateModel();
  LoadDoses();
  SpoilRates(1.5);
  SetFit(5, 1, 1e-9);
  ASSERT_EQ(RunRateFit(NoToAll), Outcome::Done);
  RateVertexRun(0);
  const std::size_t before = AllocatedBytes();
  RateVertexRun(1);
  EXPECT_EQ(AllocatedBytes(), before);
}

}  // namespace
}  // namespace zelvane
