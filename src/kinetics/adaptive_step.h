// The adaptive integrator: an embedded Runge-Kutta pair with step-size control, and its saved steps.
#pragma once

#include <array>
#include <span>

#include "kinetics/compiled_scheme.h"
#include "kinetics/fixed_step.h"

namespace zelvane {

inline constexpr float FinestPrecision = 1e-9F;
inline constexpr float CoarsestPrecision = 1.0F;  // an error as large as the occupancy itself

struct AdaptiveRun {
  const CompiledScheme& scheme;
  const StimulusView& stimulus;                   // its offset is the first point of the integration
  const std::array<float, MaxStates + 1>& start;  // occupancies at time 0
  int numPoints = 0;                              // intervals of the run, from the offset on
  float precision = 0.0005F;                      // from FinestPrecision to CoarsestPrecision
  BreathHook breathe{};
  StretchBook* book = nullptr;  // of earlier runs under this stimulus and from the same point
};

struct AdaptiveResult {
  bool finished = false;  // the end was reached and the last step saved
  bool stopped = false;
  bool precisionReduced = false;  // a step did not change the time any more
  bool precisionLost = false;     // the run ended because a step needed more than CoarsestPrecision
  bool stalled = false;           // the run ended because no step was short enough for a float
  float precision = 0.0F;         // tolerance at the end; ten times larger after each reduction, at most 1
  int rounds = 0;                 // of the last stepping loop
  int saved = 0;                  // saved steps in this loop
};

/// Returns the first point at which an occupancy can change. This is 0 when a constant rate leaves a
/// populated state. Otherwise it is the first point at which a profile of a rate out of a populated state
/// is not 0. At most `numPoints`.
int FirstActivePoint(const SchemeTables& tables, const std::array<float, MaxStates + 1>& start,
                     const StimulusView& stimulus, int numPoints);

/// Integrates `run` and saves steps from index 1: their times (ms from the offset) in `savedTime`, the
/// occupancies of states that are on in `rows`. Saves at most numPoints steps, at least one interval apart
/// except for the last. Does not write rows of states that are off. Does nothing without points or without
/// time between them.
///
/// A run fails when it has not reached its end after 10 x numPoints steps. When a step is so short that it
/// does not change the time any more, the tolerance is multiplied by ten. If the run then does not reach
/// its end, it is repeated once, with the tolerance multiplied by ten again. The tolerance ends at
/// CoarsestPrecision: a run that needs more fails at once.
///
/// States, rates and times are 32-bit floats. The method is that of Cash & Karp (1990), ACM Trans. Math.
/// Softw. 16, 201-222; driver and step control are odeint and rkqs of Press, Teukolsky, Vetterling & Flannery
/// (1992), Numerical Recipes in C, 2nd ed., section 16.2, with one difference: a step at the lower limit goes
/// on.
///
/// Allocates no memory and uses no store, so several threads may integrate at the same time.
AdaptiveResult IntegrateAdaptive(const AdaptiveRun& run, std::span<float> savedTime,
                                 const OccupancyRows& rows, const RunHook& hook = {});

}  // namespace zelvane
