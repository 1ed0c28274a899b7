// Settings and limits of the maximum-likelihood fit of dwell times. Data only.
#pragma once

#include "parameters/parameters_store.h"

namespace zelvane {

struct DwellFitStore {
  float ScTolerance = 1e-6F;  // stop value of the fractional spread
  FitLimitTable DwellFitLimits = LimitTable({{1, 9, 2, {0.01, 100000}},      // time constants 1 to 5
                                             {2, 10, 2, {0.001, 100}},       // areas
                                             {11, 11, 1, {0.05, 100000}}});  // time constant 6
};

inline DwellFitStore DwellFit;

}  // namespace zelvane
