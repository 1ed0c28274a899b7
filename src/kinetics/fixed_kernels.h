// The inner loop of the fixed-step integrator.
#pragma once

#include <array>

#include "kinetics/compiled_scheme.h"
#include "kinetics/lanes.h"

namespace zelvane {

/// Bounds of a stored occupancy.
inline constexpr float LowestOccupancy = -0.01F;
inline constexpr float HighestOccupancy = 1.01F;

/// The state of one pass.
struct FixedPass {
  float t = 0.0F;          // s
  float h = 0.0F;          // s
  long long step = 0;      // steps done
  long long substeps = 1;  // per point
  long long substep = 0;   // steps since the last stored point
  int point = 1;           // last stored point
  bool stalled = false;    // a step did not move the time
  int stored = 0;          // lanes that are on
  std::array<int, MaxLanes> storedLane{};
  std::array<float*, MaxLanes> row{};  // row of each stored lane, index = point
  alignas(32) float y[MaxLanes] = {};
};

enum class StepsEnded {
  Limit,      // step `limit` is done
  Edge,       // the next step would reach `endTime`
  Unchanged,  // two stored points are equal bit for bit; so are all later ones until the stimulus changes
  OutOfRange  // the last stored point left the range of occupancies
};

/// Factors at the times of a step: its start, its middle and its end.
struct StageFactors {
  const TermTable<float>& start;
  const TermTable<float>& middle;
  const TermTable<float>& end;
};

/// Takes Runge-Kutta steps of `pass` up to step number `limit` as long as they end before `endTime`, and
/// stores a point after every `pass.substeps` of them. Uses the first vector kernel that fits the scheme.
StepsEnded TakeSteps(const CompiledScheme& scheme, const StageFactors& factors, float endTime,
                     long long limit, FixedPass& pass);

}  // namespace zelvane
