// Fits of formulas: known parameters come back, limits and fixed parameters hold by their penalties.
#include "parameters/formula_fit.h"

#include <gtest/gtest.h>

#include <cmath>

#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/index.h"
#include "trace/program_random.h"

namespace zelvane {
namespace {

/// Amplitude x exp(-x / tau) + offset.
void Decay(std::span<const double> value, std::span<const float> x, std::span<float> curve) {
  for (std::size_t i = 0; i < x.size(); ++i)
    curve[i] = static_cast<float>(value[1] * std::exp(-static_cast<double>(x[i]) / value[2]) + value[3]);
}

class FormulaFitTest : public testing::Test {
 protected:
  void SetUp() override {
    Parameters = {};
    Vertices = {};
    SetSeeds(ProgramRandom, {11, 22, 33});
    fit.params = 3;
    fit.formula = Decay;
    fit.seed = {0, -50, 1, 0};
    fit.scale = {0, 2.5F, 1, 0.5F};
    fit.iterations = 3000;
    Vertices.FormulaPoints = 500;
    for (std::size_t i = 0; i < 500; ++i) Vertices.FitX[i] = 0.05F * static_cast<float>(i);
    const std::array<double, 4> truth{0, -120, 4, 7};
    Decay(truth, std::span(Vertices.FitX).first(500), std::span(Vertices.FitData).first(500));
  }

  double Fitted(int row) const { return Vertices.simplex.At(row, Vertices.simplex.BestVertex); }

  void Run() {
    for (int restart = 0; restart < 3; ++restart) {
      AnalysisVertexBuild(fit);
      AnalysisSimplex(fit);
      for (int r = 1; r <= 3; ++r) fit.seed[Index(r)] = Fitted(r);
    }
  }

  FormulaFit fit;
};

TEST_F(FormulaFitTest, AnExponentialGivesItsParametersBack) {
  Parameters.FitTolerance = 1e-9;
  Run();
  EXPECT_NEAR(Fitted(1), -120, 0.12);
  EXPECT_NEAR(Fitted(2), 4, 0.004);
  EXPECT_NEAR(Fitted(3), 7, 0.01);
}

TEST_F(FormulaFitTest, AFixedParameterStaysNearItsSeedAndTheStartWithinLimits) {
  Parameters.AnalysisFixOn = 1;
  Parameters.AnalysisFitFixed[2] = 1;
  Parameters.AnalysisFitSeed[2] = 3;
  fit.seed[2] = 3;
  Run();
  EXPECT_NEAR(Fitted(2), 3, 0.05);

  Parameters.AnalysisFixOn = 0;
  Parameters.AnalysisLimitsOn = 1;
  Parameters.AnalysisFitLimits[1] = {-100, -10};
  Parameters.AnalysisFitLimits[2] = {2, 8};
  Parameters.AnalysisFitLimits[3] = {0, 5};
  fit.seed = {0, -500, 5, 1};
  AnalysisVertexBuild(fit);
  EXPECT_EQ(Vertices.simplex.At(1, 0), -55);  // the middle
  for (int k = 0; k <= 3; ++k) {
    for (int r = 1; r <= 3; ++r) {
      EXPECT_GE(Vertices.simplex.At(r, k), Parameters.AnalysisFitLimits[Index(r)].lo);
      EXPECT_LE(Vertices.simplex.At(r, k), Parameters.AnalysisFitLimits[Index(r)].hi);
    }
  }
}

TEST_F(FormulaFitTest, PenaltiesCountFromTheUpperLimitAndHugeSumsBecomeSmaller) {
  Parameters.AnalysisLimitsOn = 1;
  for (int r = 1; r <= 3; ++r) Parameters.AnalysisFitLimits[Index(r)] = {-1000, 1000};
  SimplexTable& table = Vertices.simplex;
  table.At(1, 0) = -120;
  table.At(2, 0) = 4;
  table.At(3, 0) = 8;
  AnalysisEval(fit, 0);
  const double free = table.At(0, 0);
  EXPECT_NEAR(free, 500, 0.1);  // one unit off at each of 500 points
  Parameters.AnalysisFitLimits[3] = {9, 12};
  AnalysisEval(fit, 0);
  EXPECT_DOUBLE_EQ(table.At(0, 0), free * (1 + 100 * 4));
  Vertices.FitData[0] = 1e30F;
  AnalysisEval(fit, 0);
  EXPECT_EQ(table.At(0, 0), 1e40);
}

}  // namespace
}  // namespace zelvane
