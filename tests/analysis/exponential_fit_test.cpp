// Exponential fits of a response: against SciPy, the points they take, their seeds and limits, and what they tell.
#include "analysis/exponential_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "analysis/series.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/format_text.h"
#include "platform/index.h"
#include "support/store_test.h"
#include "trace/program_random.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr int Onset = 400;

/// Returns noise of about normal distribution: twelve numbers of a linear congruential generator for each.
double Noise(std::uint32_t& state, double deviation) {
  double sum = -6.0;
  for (int k = 0; k < 12; ++k) {
    state = 1664525U * state + 1013904223U;
    sum += state / 4294967296.0;
  }
  return deviation * sum;
}

class ExponentialFitTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    Model.NumPoints = 3000;
    Model.ADInterval = 0.05F;
    Trace.TraceValid = 1;
    Analysis.BaselineStart = 0.0F;
    Analysis.BaselinePts = 300;
    Analysis.StartAnalysis = 20.0F;
    Analysis.PeakSearchPts = 40;
    AnalysisFit.AnalysisFitPts = 400;
    AnalysisFit.AnalysisParse = 5;
  }

  /// Fills the trace with `response` of the time (ms) since its onset, on a baseline of -3, with noise.
  template <typename Response>
  void Fill(const Response& response, double deviation) {
    std::uint32_t state = 12345;
    for (int i = 0; i < Model.NumPoints; ++i) {
      const double y = i >= Onset ? response((i - Onset) * 0.05) : 0.0;
      Trace.SimTrace[Index(i)] = static_cast<float>(y - 3.0 + Noise(state, deviation));
    }
  }

  void FillOf(int mode, double deviation) {
    Parameters.FitMode = mode;
    if (mode == FitDecay) Fill([](double t) { return -100 * std::exp(-t / 6) - 15; }, deviation);
    if (mode == FitTwoDecays)
      Fill([](double t) { return -60 * std::exp(-t / 2) - 40 * std::exp(-t / 20) - 15; }, deviation);
    if (mode == FitRise) {
      Fill([](double t) { return -80 * (1 - std::exp(-t / 8)); }, deviation);
      Analysis.PeakSearchPts = 2399;
    }
  }

  static std::vector<double> Fitted(int mode) {
    const AnalysisFitStore& f = AnalysisFit;
    if (mode != FitTwoDecays) return {f.FitAmp1, f.FitTau1, f.FitOffset};
    if (f.FitTau1 < f.FitTau2) return {f.FitAmp1, f.FitTau1, f.FitAmp2, f.FitTau2, f.FitOffset};
    return {f.FitAmp2, f.FitTau2, f.FitAmp1, f.FitTau1, f.FitOffset};
  }
};

TEST_F(ExponentialFitTest, NoisyResponsesGiveTheParametersOfLeastSquaresForEverySeed) {
  struct Case {
    int mode;
    std::vector<double> parameters;  // scipy.optimize.least_squares (SciPy 1.10.1) on the same points
    double sumOfSquares;
    double within;
    double sumWithin;
  };
  for (const Case& c :
       {Case{FitDecay, {-97.76094, 5.921881, -15.12075}, 1409.3619, 0.01, 1.02},
        Case{FitTwoDecays, {-60.08267, 1.99343, -40.56475, 19.8796, -14.71899}, 1430.5182, 0.05, 1.10},
        Case{FitRise, {-70.50271, 7.913105, -9.399338}, 1687.9478, 0.01, 1.02}}) {
    FillOf(c.mode, 2.0);
    for (const double seed : {1000.0, 2000.0, 3000.0, 4000.0}) {
      SCOPED_TRACE(FormatText("mode %d, seed %g", c.mode, seed));
      AnalysisFit.FitOffset = 0.0;
      SetSeeds(ProgramRandom, {seed, 2222, 3333});
      ASSERT_EQ(MeasureTrace(), Outcome::Done);
      EXPECT_EQ(Vertices.FitResultCode, FitConverged);
      const std::vector<double> fitted = Fitted(c.mode);
      for (std::size_t k = 0; k < fitted.size(); ++k)
        EXPECT_NEAR(fitted[k], c.parameters[k], c.within * std::fabs(c.parameters[k])) << k;
      EXPECT_LT(AnalysisFit.AnalysisNormResidual * AnalysisFit.AnalysisFitPts, c.sumWithin * c.sumOfSquares);
      EXPECT_GT(AnalysisFit.FitGoodness, 0.98F);
    }
  }
}

TEST_F(ExponentialFitTest, PointsFollowEachOtherBeforeTheyAreParsed) {
  EXPECT_EQ(FitSamples(7, 4, 0, 20), (std::vector<int>{7, 27, 47, 67}));
  const std::vector<int> dual = FitSamples(100, 34, 30, 20);
  EXPECT_EQ(std::vector<int>(dual.end() - 5, dual.end()), (std::vector<int>{129, 130, 150, 170, 190}));
}

TEST_F(ExponentialFitTest, AFitBeyondTheRecordIsShortenedWithAMessageOnceInASeries) {
  FillOf(FitDecay, 1.0);
  AnalysisFit.AnalysisFitPts = 210;
  AnalysisFit.AnalysisParse = 20;
  BeginSeries();
  MeasureTrace();
  EXPECT_EQ(AnalysisFit.AnalysisFitPts, (3000 - Analysis.Measures.PeakPos) / 20);
  EXPECT_EQ(popups, (std::vector<SeenPopup>{{"! ", "Number of fit points has been reduced."}}));
  AnalysisFit.AnalysisFitPts = 210;
  MeasureTrace();
  EndSeries();
  EXPECT_EQ(popups.size(), 1U);
  EXPECT_EQ(Analysis.FittedMode, FitDecay);
}

TEST_F(ExponentialFitTest, WhatCannotBeFittedLeavesZerosAndANote) {
  struct Case {
    const char* fault;
    std::function<void()> spoil;
    const char* note;
  };
  const Case cases[] = {
      {"a peak at the end", [] { AnalysisFit.FitStartPts = 2590; },
       "No exponential was fitted: the record has fewer points after the start of the fit than the fit has parameters."},
      {"a search after the record", [] { Analysis.StartAnalysis = 400.0F; },
       "No exponential was fitted: the response has no peak."},
      {"one sample", [] { Model.NumPoints = 1; }, "No exponential was fitted: the response has no peak."},
      {"no number", [] { Trace.SimTrace[500] = std::nanf(""); },
       "No exponential was fitted: not all its points are numbers."},
      {"another fit", [] { Parameters.FitMode = FitDoseResponse; },
       "Measured without an exponential fit, because another fit is the present one; choose decay, two decays or rise "
       "under Exponential fit."}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.fault);
    AnalysisFit = {};
    SetUp();
    FillOf(FitDecay, 1.0);
    c.spoil();
    MeasureTrace();
    EXPECT_EQ(Fitted(FitTwoDecays), std::vector<double>(5));
    EXPECT_EQ(Analysis.FittedMode, 0);
    EXPECT_TRUE(AnalysisFit.Curve.sample.empty());
    EXPECT_EQ(notes.empty() ? std::string() : notes.back(), c.note);
  }
}

TEST_F(ExponentialFitTest, AFlatRecordHasNoGoodnessOfFit) {
  Fill([](double) { return 0.0; }, 0.0);
  Parameters.FitMode = FitDecay;
  MeasureTrace();
  EXPECT_EQ(AnalysisFit.FitSStot, 0.0F);
  EXPECT_EQ(AnalysisFit.FitGoodness, 0.0F);
}

TEST_F(ExponentialFitTest, AnAmplitudeIsCarriedBackToTheStartOfTheSearch) {
  Parameters.FitMode = FitDecay;
  Fill([](double t) { return t < 2 ? 0.0 : -50 * std::exp(-(t - 2) / 5); }, 0.0);
  MeasureTrace();
  EXPECT_NEAR(AnalysisFit.FitAmp1, -50, 0.1);
  EXPECT_NEAR(AnalysisFit.FitAmp1Extrap, -50 * std::exp(2.0 / 5), 0.2);
  EXPECT_GT(AnalysisFit.FitGoodness, 0.9999F);
  AnalysisFit.FitExtrapolate = 1;
  MeasureTrace();
  EXPECT_NEAR(AnalysisFit.FitAmp1, -50 * std::exp(2.0 / 5), 0.2);
  for (std::size_t i = 0; i < AnalysisFit.Curve.value.size(); ++i)
    ASSERT_NEAR(AnalysisFit.Curve.residual[i], 0, 0.1) << "the curve is that of the first point";
}

TEST_F(ExponentialFitTest, FixedParametersSeedAndHoldTheFitAndLimitsClipItsStart) {
  FillOf(FitDecay, 0.0);
  Parameters.AnalysisFixOn = 1;
  Parameters.AnalysisFitFixed[3] = 1;
  Parameters.AnalysisFitSeed[3] = -10.0;
  MeasureTrace();
  EXPECT_EQ(AnalysisFit.FitOffset, -10.0) << "the field shows the seed of a fixed parameter";
  EXPECT_GT(AnalysisFit.FitTau1, 6.3) << "the decay takes over what the offset may not";
  Parameters.AnalysisFixOn = 0;
  Parameters.AnalysisLimitsOn = 1;
  AnalysisFit.ExpFitLimits[1] = {-200, 0};
  AnalysisFit.ExpFitLimits[2] = {1, 4};
  AnalysisFit.ExpFitLimits[3] = {-100, 100};
  MeasureTrace();
  EXPECT_NEAR(AnalysisFit.FitTau1, 4.0, 0.1) << "the time constant runs to its limit";
}

TEST_F(ExponentialFitTest, ManualSeedsOfTheWrongSignAreTurned) {
  FillOf(FitDecay, 0.0);
  Parameters.AnalysisAutoSeed = 0;
  Parameters.AnalysisFitSeed = {0, -80, -3, -12};
  MeasureTrace();
  EXPECT_NEAR(AnalysisFit.FitTau1, 6, 0.06);
}

}  // namespace
}  // namespace zelvane
