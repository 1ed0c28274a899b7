// Settings of the maximum-likelihood fit of dwell times. Data only.
#pragma once

namespace zelvane {

struct DwellFitStore {
  float ScTolerance = 1e-6F;  // stop value of the fractional spread
};

inline DwellFitStore DwellFit;

}  // namespace zelvane
