#include "kinetics/fixed_kernels.h"

#include "kinetics/rate_terms.h"
#include "platform/index.h"

namespace zelvane {
namespace {

/// Takes one classical fourth-order Runge-Kutta step.
template <int W, bool Gathered>
ZELVANE_INLINE void RungeKuttaStep(const CompiledScheme& scheme, const StageFactors& factors, float h,
                                   Lanes (&y)[W]) {
  const Lanes whole = Spread(h);
  const Lanes half = Spread(h * 0.5F);
  const Lanes sixth = Spread(h / 6.0F);
  Lanes slope1[W];
  Lanes slope2[W];
  Lanes slope3[W];
  Lanes slope4[W];
  Lanes trial[W];
  Derivatives<W, Gathered>(scheme, factors.start, y, slope1);
  for (int w = 0; w < W; ++w) trial[w] = y[w] + half * slope1[w];
  Derivatives<W, Gathered>(scheme, factors.middle, trial, slope2);
  for (int w = 0; w < W; ++w) trial[w] = y[w] + half * slope2[w];
  Derivatives<W, Gathered>(scheme, factors.middle, trial, slope3);
  for (int w = 0; w < W; ++w) {
    trial[w] = y[w] + whole * slope3[w];
    slope3[w] = slope3[w] + slope2[w];
  }
  Derivatives<W, Gathered>(scheme, factors.end, trial, slope4);
  const Lanes two = Spread(2.0F);
  for (int w = 0; w < W; ++w) y[w] = y[w] + sixth * ((slope1[w] + slope4[w]) + two * slope3[w]);
}

/// Stores the occupancies of the next point, state after state. Stops after an occupancy that is out of range
/// and returns false.
bool StorePointWithFailure(FixedPass& pass) {
  for (std::size_t i = 0; i < Index(pass.stored); ++i) {
    const float value = pass.y[pass.storedLane[i]];
    pass.row[i][pass.point] = value;
    if (!(value <= HighestOccupancy && value >= LowestOccupancy)) return false;
  }
  return true;
}

template <int W>
ZELVANE_INLINE bool StorePoint(FixedPass& pass, const Lanes (&y)[W]) {
  Store(pass.y, y);
  ++pass.point;
  bool suspect = false;
  for (int w = 0; w < W; ++w) suspect = suspect || AnyOutside(y[w], LowestOccupancy, HighestOccupancy);
  if (suspect) return StorePointWithFailure(pass);  // the suspect lane may belong to a state that is off
  for (std::size_t i = 0; i < Index(pass.stored); ++i) {
    pass.row[i][pass.point] = pass.y[pass.storedLane[i]];
  }
  return true;
}

template <int W>
ZELVANE_INLINE bool SameLanes(const Lanes (&a)[W], const Lanes (&b)[W]) {
  bool differs = false;
  for (int w = 0; w < W; ++w) differs = differs || AnyBitDiffers(a[w], b[w]);
  return !differs;
}

template <int W, bool Gathered>
ZELVANE_INLINE StepsEnded Steps(const CompiledScheme& scheme, const StageFactors& factors, float endTime,
                                long long limit, FixedPass& pass) {
  Lanes y[W];
  Lanes last[W];  // occupancies of the last stored point when `wholePoint`
  Load(pass.y, y);
  for (int w = 0; w < W; ++w) last[w] = y[w];
  bool wholePoint = pass.substep == 0;  // all steps since the last stored point were taken here
  const float h = pass.h;
  StepsEnded ended = StepsEnded::Limit;
  while (pass.step < limit) {
    const float next = pass.t + h;
    if (next >= endTime) {
      ended = StepsEnded::Edge;
      break;
    }
    RungeKuttaStep<W, Gathered>(scheme, factors, h, y);
    if (next == pass.t) pass.stalled = true;
    pass.t = next;
    ++pass.step;
    if (++pass.substep < pass.substeps) continue;
    pass.substep = 0;
    if (!StorePoint(pass, y)) return StepsEnded::OutOfRange;
    if (wholePoint && SameLanes(y, last)) return StepsEnded::Unchanged;
    wholePoint = true;
    for (int w = 0; w < W; ++w) last[w] = y[w];
  }
  Store(pass.y, y);
  return ended;
}

ZELVANE_CLONES StepsEnded StepsOf8(const CompiledScheme& scheme, const StageFactors& factors, float endTime,
                                   long long limit, FixedPass& pass) {
  return Steps<1, true>(scheme, factors, endTime, limit, pass);
}

ZELVANE_CLONES StepsEnded StepsOf16(const CompiledScheme& scheme, const StageFactors& factors, float endTime,
                                    long long limit, FixedPass& pass) {
  return Steps<2, true>(scheme, factors, endTime, limit, pass);
}

ZELVANE_CLONES StepsEnded StepsOf24(const CompiledScheme& scheme, const StageFactors& factors, float endTime,
                                    long long limit, FixedPass& pass) {
  return Steps<3, true>(scheme, factors, endTime, limit, pass);
}

ZELVANE_CLONES StepsEnded StepsOf16Pairs(const CompiledScheme& scheme, const StageFactors& factors,
                                         float endTime, long long limit, FixedPass& pass) {
  return Steps<2, false>(scheme, factors, endTime, limit, pass);
}

ZELVANE_CLONES StepsEnded StepsOf24Pairs(const CompiledScheme& scheme, const StageFactors& factors,
                                         float endTime, long long limit, FixedPass& pass) {
  return Steps<3, false>(scheme, factors, endTime, limit, pass);
}

}  // namespace

StepsEnded TakeSteps(const CompiledScheme& scheme, const StageFactors& factors, float endTime,
                     long long limit, FixedPass& pass) {
  if (scheme.vectors == 1) return StepsOf8(scheme, factors, endTime, limit, pass);
  if (scheme.vectors == 2) {
    return scheme.gathered ? StepsOf16(scheme, factors, endTime, limit, pass)
                           : StepsOf16Pairs(scheme, factors, endTime, limit, pass);
  }
  return scheme.gathered ? StepsOf24(scheme, factors, endTime, limit, pass)
                         : StepsOf24Pairs(scheme, factors, endTime, limit, pass);
}

}  // namespace zelvane
