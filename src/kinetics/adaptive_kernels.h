// The stages of one adaptive step.
#pragma once

#include <array>

#include "kinetics/compiled_scheme.h"
#include "kinetics/lanes.h"

namespace zelvane {

/// Occupancies, slopes and the like over the lanes of a scheme.
struct alignas(32) LaneValues {
  float lane[MaxLanes] = {};
};

/// An occupancy whose scale is not above this one takes no part in the control of the step.
inline constexpr float SmallestScale = 1e-6F;

/// Slopes at the start of a step of size `h`, and the scale of each lane: |y| + |h x slope| + 1e-27.
void StartSlopes(const CompiledScheme& scheme, const TermTable<float>& factor, float h, const LaneValues& y,
                 LaneValues& slope, LaneValues& scale);

/// Factors at the five later stages of a step.
using LaterStages = std::array<const TermTable<float>*, 5>;

/// Takes a trial step of size `h` from `y` to `end`, the fifth-order solution. Gives the largest |error /
/// scale| of the lanes, infinity when one is no number.
float TrialStep(const CompiledScheme& scheme, const LaterStages& factor, float h, const LaneValues& y,
                const LaneValues& slope, const LaneValues& scale, LaneValues& end);

}  // namespace zelvane
