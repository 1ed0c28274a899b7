// The fixed-step integrator: classical fourth-order Runge-Kutta over the points of a run.
#pragma once

#include <array>
#include <span>

#include "kinetics/compiled_scheme.h"
#include "platform/run_reporter.h"

namespace zelvane {

inline constexpr float SmallestStepMs = 1e-8F;
inline constexpr int MaxReductions = 5;  // passes of a run that fails

/// Occupancies of a run, [state][point], states and points from 1; rows of states that are off may be empty.
using OccupancyRows = std::array<std::span<float>, MaxStates + 1>;

/// Steps between two breaths of a run: up to some milliseconds of work.
inline constexpr int BreathSteps = 2048;

struct FixedStepRun {
  const CompiledScheme& scheme;
  const StimulusView& stimulus;                   // offset 0
  const std::array<float, MaxStates + 1>& start;  // occupancies at time 0
  int numPoints = 0;
  float maxStepMs = 0.005F;  // below SmallestStepMs it is read as that
  BreathHook breathe{};
};

struct FixedStepResult {
  int reductions = 0;     // passes in which an occupancy left its range; each halved the step
  int stalledPasses = 0;  // passes in which a step no longer moved the time
  bool stopped = false;
};

/// Steps between two points: trunc(interval / step), at least 1.
long long SubstepsPerPoint(float intervalMs, float stepMs);

/// Integrates `run` into points 1..numPoints + 1 of `rows`, point 1 being time 0.
///
/// A pass in which the occupancy of a state that is on is stored above 1.01 or below -0.01 (or as no number)
/// ends there, and the next starts over with half the step; after MaxReductions the last one stands as it is.
/// Rows of states that are off are not touched. Nothing is done without points or without time between them.
///
/// States, rates and times are 32-bit floats. The method and its order of operations are those of rk4 in
/// Press, Teukolsky, Vetterling & Flannery (1992), Numerical Recipes in C, 2nd ed., section 16.1. The last
/// stage of a step falls on the next point of the stimulus: a step across an edge sees it early by up to one
/// step.
///
/// Nothing is allocated and no store touched: several threads may integrate at once.
FixedStepResult IntegrateFixedStep(const FixedStepRun& run, const OccupancyRows& rows,
                                   const RunHook& hook = {});

}  // namespace zelvane
