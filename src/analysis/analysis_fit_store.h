// The exponential fit of a response: settings, limits and results; limits of the dose-response. Data only.
#pragma once

#include "parameters/parameters_store.h"

namespace zelvane {

struct AnalysisFitStore {
  int AnalysisParse = 20;
  int AnalysisFitPts = 210;
  int AnalysisNumIterations = 300;
  int AnalysisNumRestarts = 2;
  double AnalysisTolerance = 1e-6;
  int DualSpeedPts = 30;
  int FitStartPts = 0;
  FitLimitTable ExpFitLimits = LimitTable({{1, 1, 1, {0.01, 100000}},
                                           {2, 2, 1, {0.01, 10000}},
                                           {3, 3, 1, {0.01, 1000}},
                                           {4, 4, 1, {0.001, 100000}},
                                           {5, 5, 1, {0.01, 10000}}});
  FitLimitTable DoseFitLimits{};

  // -- Results, and the seeds before them --
  double FitAmp1 = -50.0;  // units of the trace
  double FitTau1 = 1.0;    // ms
  double FitAmp2 = -10.0;  // the second component
  double FitTau2 = 10.0;
  double FitOffset = 0.0;    // final level of the exponentials, relative to the baseline
  float FitGoodness = 0.0F;  // 1 - residual / total sum of squares
};

inline AnalysisFitStore AnalysisFit;

}  // namespace zelvane
