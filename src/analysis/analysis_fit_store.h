// The exponential fit of a response: settings, limits, results and curve. Data only.
#pragma once

#include <vector>

#include "parameters/parameters_store.h"

namespace zelvane {

/// The curve of an exponential fit, point by point.
struct FittedCurve {
  std::vector<double> sample;   // of the trace
  std::vector<float> value;     // trace units, baseline included
  std::vector<float> residual;  // trace less curve
};

struct AnalysisFitStore {
  int AnalysisParse = 20;
  int AnalysisFitPts = 210;
  int AnalysisNumIterations = 300;
  int AnalysisNumRestarts = 2;
  double AnalysisTolerance = 1e-6;
  int DualSpeedPts = 30;
  int FitStartPts = 0;
  int FitExtrapolate = 0;  // 1 = amplitudes are those at StartAnalysis
  FitLimitTable ExpFitLimits = LimitTable({{1, 1, 1, {0.01, 100000}},
                                           {2, 2, 1, {0.01, 10000}},
                                           {3, 3, 1, {0.01, 1000}},
                                           {4, 4, 1, {0.001, 100000}},
                                           {5, 5, 1, {0.01, 10000}}});

  // -- Results, and the seeds before them --
  double FitAmp1 = -50.0;  // units of the trace
  double FitTau1 = 1.0;    // ms
  double FitAmp2 = -10.0;  // the second component
  double FitTau2 = 10.0;
  double FitOffset = 0.0;      // final level of the exponentials, relative to the baseline
  double FitAmp1Extrap = 0.0;  // amplitudes carried back to StartAnalysis
  double FitAmp2Extrap = 0.0;
  float FitSStot = 0.0F;              // sum of squares of the points about their mean
  float FitGoodness = 0.0F;           // 1 - residual / total sum of squares
  double AnalysisNormResidual = 0.0;  // sum of squares for each point
  FittedCurve Curve;                  // empty when no fit ran
};

inline AnalysisFitStore AnalysisFit;

}  // namespace zelvane
