// The adaptive integrator: an embedded Runge-Kutta pair with step-size control, and the steps that it saves.
#pragma once

#include <array>
#include <span>

#include "kinetics/compiled_scheme.h"
#include "kinetics/fixed_step.h"

namespace zelvane {

inline constexpr float FinestPrecision = 1e-9F;

struct AdaptiveRun {
  const CompiledScheme& scheme;
  const StimulusView& stimulus;                   // offset: the point at which integration starts
  const std::array<float, MaxStates + 1>& start;  // occupancies at time 0
  int numPoints = 0;                              // the run lasts numPoints intervals from the offset on
  float precision = 0.0005F;                      // below FinestPrecision it is read as that
  BreathHook breathe{};
};

struct AdaptiveResult {
  bool finished = false;  // the end was reached and the last step saved
  bool stopped = false;
  bool precisionReduced = false;  // a step no longer moved the time
  float precision = 0.0F;         // tolerance at the end: reduced tenfold each time
  int rounds = 0;                 // of the stepping loop that stands as the result
  int saved = 0;                  // steps in it that were saved
};

/// The point from which something can happen: 0 when a rate that depends on nothing leaves a populated state,
/// else the first point at which a profile that a rate out of a populated state waits for is not 0. At most
/// `numPoints`.
int FirstActivePoint(const SchemeTables& tables, const std::array<float, MaxStates + 1>& start,
                     const StimulusView& stimulus, int numPoints);

/// Integrates `run` and saves steps from index 1: their times (ms from the offset) in `savedTime`, the
/// occupancies of states that are on in `rows`. At most numPoints steps are saved, at least one interval
/// apart except for the last. Rows of states that are off are not touched. Nothing is done without points or
/// without time between them.
///
/// A run that has not reached its end after 10 x numPoints steps has failed. When a step had to be made so
/// short that it no longer moves the time, the tolerance grows tenfold; if the end was not reached then, the
/// run is repeated once with ten times more.
///
/// States, rates and times are 32-bit floats. The method is that of Cash & Karp (1990), ACM Trans. Math.
/// Softw. 16, 201-222; driver and step control are odeint and rkqs of Press, Teukolsky, Vetterling & Flannery
/// (1992), Numerical Recipes in C, 2nd ed., section 16.2, with one difference: a step at the lower limit goes
/// on.
///
/// Nothing is allocated and no store touched: several threads may integrate at once.
AdaptiveResult IntegrateAdaptive(const AdaptiveRun& run, std::span<float> savedTime,
                                 const OccupancyRows& rows, const RunHook& hook = {});

}  // namespace zelvane
