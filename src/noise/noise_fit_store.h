// Limits of the fits of noise: current-variance, sublevels, power spectrum. Data only.
#pragma once

#include "parameters/parameters_store.h"

namespace zelvane {

struct NoiseFitStore {
  FitLimitTable VarFitLimits = LimitTable({{1, 1, 1, {-10, 10}}, {2, 2, 1, {0, 5000}}, {3, 3, 1, {0, 10}}});
  FitLimitTable SublevelFitLimits =
      LimitTable({{1, 4, 1, {0, 1}}, {5, 7, 1, {0, 100}}, {8, 8, 1, {0, 10000}}});
  FitLimitTable SpecFitLimits = LimitTable({{1, 3, 2, {0.001, 1}}, {2, 4, 2, {1e-12, 1}}});
};

inline NoiseFitStore NoiseFit;

}  // namespace zelvane
