// The stages of one adaptive step.
#pragma once

#include <array>

#include "kinetics/compiled_scheme.h"
#include "kinetics/lanes.h"

namespace zelvane {

/// Occupancies, slopes or similar values over the lanes of a scheme.
struct alignas(32) LaneValues {
  float lane[MaxLanes] = {};
};

/// The step control ignores an occupancy whose scale is not above this value.
inline constexpr float SmallestScale = 1e-6F;

/// Calculates the slopes at the start of a step of size `h`, and the scale of each lane: |y| + |h x slope|
/// + 1e-27.
void StartSlopes(const CompiledScheme& scheme, const TermTable<float>& factor, float h, const LaneValues& y,
                 LaneValues& slope, LaneValues& scale);

/// Factors at the five later stages of a step.
using LaterStages = std::array<const TermTable<float>*, 5>;

/// Makes a trial step of size `h` from `y` to `end`, the fifth-order solution. Returns the largest |error /
/// scale| of the lanes; infinity when one of them is not a number.
float TrialStep(const CompiledScheme& scheme, const LaterStages& factor, float h, const LaneValues& y,
                const LaneValues& slope, const LaneValues& scale, LaneValues& end);

}  // namespace zelvane
