#include "kinetics/adaptive_kernels.h"

#include <cmath>
#include <limits>

#include "kinetics/cash_karp.h"
#include "kinetics/rate_terms.h"

namespace zelvane {
namespace {

template <int W, bool Gathered>
ZELVANE_INLINE void Slopes(const CompiledScheme& scheme, const TermTable<float>& factor, const LaneValues& y,
                           LaneValues& slope) {
  Lanes from[W];
  Lanes dydt[W];
  Load(y.lane, from);
  Derivatives<W, Gathered>(scheme, factor, from, dydt);
  Store(slope.lane, dydt);
}

template <int W, bool Gathered>
ZELVANE_INLINE void CashKarpStep(const CompiledScheme& scheme, const LaterStages& factor, float h,
                                 const LaneValues& start, const LaneValues& slope, LaneValues& end,
                                 LaneValues& error) {
  using namespace cash_karp;
  Lanes y[W];
  Lanes k1[W];
  Lanes k2[W];
  Lanes k3[W];
  Lanes k4[W];
  Lanes k5[W];
  Lanes k6[W];
  Lanes trial[W];
  Load(start.lane, y);
  Load(slope.lane, k1);
  const auto weigh = [](float weight, const Lanes& k) ZELVANE_INLINE_LAMBDA { return Spread(weight) * k; };
  for (int w = 0; w < W; ++w) trial[w] = y[w] + weigh(B21 * h, k1[w]);
  Derivatives<W, Gathered>(scheme, *factor[0], trial, k2);
  for (int w = 0; w < W; ++w) trial[w] = y[w] + weigh(h, weigh(B31, k1[w]) + weigh(B32, k2[w]));
  Derivatives<W, Gathered>(scheme, *factor[1], trial, k3);
  for (int w = 0; w < W; ++w) {
    trial[w] = y[w] + weigh(h, (weigh(B41, k1[w]) + weigh(B42, k2[w])) + weigh(B43, k3[w]));
  }
  Derivatives<W, Gathered>(scheme, *factor[2], trial, k4);
  for (int w = 0; w < W; ++w) {
    const Lanes sum = (weigh(B51, k1[w]) + weigh(B52, k2[w])) + weigh(B53, k3[w]);
    trial[w] = y[w] + weigh(h, sum + weigh(B54, k4[w]));
  }
  Derivatives<W, Gathered>(scheme, *factor[3], trial, k5);
  for (int w = 0; w < W; ++w) {
    const Lanes sum = (weigh(B61, k1[w]) + weigh(B62, k2[w])) + weigh(B63, k3[w]);
    trial[w] = y[w] + weigh(h, (sum + weigh(B64, k4[w])) + weigh(B65, k5[w]));
  }
  Derivatives<W, Gathered>(scheme, *factor[4], trial, k6);
  for (int w = 0; w < W; ++w) {
    const Lanes fifth = (weigh(C1, k1[w]) + weigh(C3, k3[w])) + weigh(C4, k4[w]);
    trial[w] = y[w] + weigh(h, fifth + weigh(C6, k6[w]));
    const Lanes difference = (weigh(D1, k1[w]) + weigh(D3, k3[w])) + weigh(D4, k4[w]);
    k5[w] = weigh(h, (difference + weigh(D5, k5[w])) + weigh(D6, k6[w]));
  }
  Store(end.lane, trial);
  Store(error.lane, k5);
}

// One pair of functions for each number of vectors and arrangement of terms.

ZELVANE_CLONES void Slopes8(const CompiledScheme& s, const TermTable<float>& f, const LaneValues& y,
                            LaneValues& slope) {
  Slopes<1, true>(s, f, y, slope);
}
ZELVANE_CLONES void Slopes16(const CompiledScheme& s, const TermTable<float>& f, const LaneValues& y,
                             LaneValues& slope) {
  Slopes<2, true>(s, f, y, slope);
}
ZELVANE_CLONES void Slopes24(const CompiledScheme& s, const TermTable<float>& f, const LaneValues& y,
                             LaneValues& slope) {
  Slopes<3, true>(s, f, y, slope);
}
ZELVANE_CLONES void Slopes16Pairs(const CompiledScheme& s, const TermTable<float>& f, const LaneValues& y,
                                  LaneValues& slope) {
  Slopes<2, false>(s, f, y, slope);
}
ZELVANE_CLONES void Slopes24Pairs(const CompiledScheme& s, const TermTable<float>& f, const LaneValues& y,
                                  LaneValues& slope) {
  Slopes<3, false>(s, f, y, slope);
}

ZELVANE_CLONES void Step8(const CompiledScheme& s, const LaterStages& f, float h, const LaneValues& y,
                          const LaneValues& slope, LaneValues& end, LaneValues& error) {
  CashKarpStep<1, true>(s, f, h, y, slope, end, error);
}
ZELVANE_CLONES void Step16(const CompiledScheme& s, const LaterStages& f, float h, const LaneValues& y,
                           const LaneValues& slope, LaneValues& end, LaneValues& error) {
  CashKarpStep<2, true>(s, f, h, y, slope, end, error);
}
ZELVANE_CLONES void Step24(const CompiledScheme& s, const LaterStages& f, float h, const LaneValues& y,
                           const LaneValues& slope, LaneValues& end, LaneValues& error) {
  CashKarpStep<3, true>(s, f, h, y, slope, end, error);
}
ZELVANE_CLONES void Step16Pairs(const CompiledScheme& s, const LaterStages& f, float h, const LaneValues& y,
                                const LaneValues& slope, LaneValues& end, LaneValues& error) {
  CashKarpStep<2, false>(s, f, h, y, slope, end, error);
}
ZELVANE_CLONES void Step24Pairs(const CompiledScheme& s, const LaterStages& f, float h, const LaneValues& y,
                                const LaneValues& slope, LaneValues& end, LaneValues& error) {
  CashKarpStep<3, false>(s, f, h, y, slope, end, error);
}

}  // namespace

void StartSlopes(const CompiledScheme& scheme, const TermTable<float>& factor, float h, const LaneValues& y,
                 LaneValues& slope, LaneValues& scale) {
  if (scheme.vectors == 1) {
    Slopes8(scheme, factor, y, slope);
  } else if (scheme.vectors == 2) {
    (scheme.gathered ? Slopes16 : Slopes16Pairs)(scheme, factor, y, slope);
  } else {
    (scheme.gathered ? Slopes24 : Slopes24Pairs)(scheme, factor, y, slope);
  }
  for (int k = 0; k < scheme.vectors * LanesPerVector; ++k) {
    scale.lane[k] = std::fabs(y.lane[k]) + std::fabs(h * slope.lane[k]) + 1e-27F;
  }
}

float TrialStep(const CompiledScheme& scheme, const LaterStages& factor, float h, const LaneValues& y,
                const LaneValues& slope, const LaneValues& scale, LaneValues& end) {
  LaneValues error;
  if (scheme.vectors == 1) {
    Step8(scheme, factor, h, y, slope, end, error);
  } else if (scheme.vectors == 2) {
    (scheme.gathered ? Step16 : Step16Pairs)(scheme, factor, h, y, slope, end, error);
  } else {
    (scheme.gathered ? Step24 : Step24Pairs)(scheme, factor, h, y, slope, end, error);
  }
  float worst = 0.0F;
  for (int k = 0; k < scheme.lanes; ++k) {
    if (!(scale.lane[k] > SmallestScale)) continue;
    const float ratio = std::fabs(error.lane[k] / scale.lane[k]);
    if (!(ratio <= worst)) worst = std::isnan(ratio) ? std::numeric_limits<float>::infinity() : ratio;
  }
  return worst;
}

}  // namespace zelvane
