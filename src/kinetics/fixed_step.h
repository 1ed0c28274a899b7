// The fixed-step integrator: classical fourth-order Runge-Kutta over the points of a run.
#pragma once

#include <array>
#include <span>

#include "kinetics/compiled_scheme.h"
#include "platform/run_reporter.h"

namespace zelvane {

inline constexpr float SmallestStepMs = 1e-8F;
inline constexpr int MaxReductions = 5;  // passes of a run before it fails

/// Occupancies of a run, [state][point], states and points from 1; rows of states that are off may be empty.
using OccupancyRows = std::array<std::span<float>, MaxStates + 1>;

/// Steps between two breaths of a run: up to some milliseconds of work.
inline constexpr int BreathSteps = 2048;

struct FixedStepRun {
  const CompiledScheme& scheme;
  const StimulusView& stimulus;                   // offset 0
  const std::array<float, MaxStates + 1>& start;  // occupancies at time 0
  int numPoints = 0;
  float maxStepMs = 0.005F;  // SmallestStepMs if smaller
  BreathHook breathe{};
  StretchBook* book = nullptr;  // of earlier runs under this stimulus
};

struct FixedStepResult {
  int reductions = 0;     // passes in which an occupancy left its range; each halved the step
  int stalledPasses = 0;  // passes in which a step did not change the time any more
  bool stopped = false;
};

/// Returns the number of steps between two points: trunc(interval / step), at least 1.
long long SubstepsPerPoint(float intervalMs, float stepMs);

/// Integrates `run` into points 1..numPoints + 1 of `rows`. Point 1 is time 0.
///
/// A pass ends when the stored occupancy of a state that is on is above 1.01, below -0.01 or not a number.
/// The next pass starts again with half the step. After MaxReductions passes the last one is the result.
/// Does not write rows of states that are off. Does nothing without points or without time between them.
///
/// States, rates and times are 32-bit floats. The method and its order of operations are those of rk4 in
/// Press, Teukolsky, Vetterling & Flannery (1992), Numerical Recipes in C, 2nd ed., section 16.1. The last
/// stage of a step uses the next point of the stimulus, so a step across an edge meets it early by up to
/// one step.
///
/// Allocates no memory and uses no store, so several threads may integrate at the same time.
FixedStepResult IntegrateFixedStep(const FixedStepRun& run, const OccupancyRows& rows,
                                   const RunHook& hook = {});

}  // namespace zelvane
