// Both integrators in their plain form: every state that is on, every other state, every flag of every rate
// at each use, straight from the tables of the model. What the compiled forms are held to, bit for bit.
#pragma once

#include <array>
#include <span>

#include "kinetics/adaptive_step.h"
#include "kinetics/compiled_scheme.h"
#include "kinetics/fixed_step.h"

namespace zelvane {

using States = std::array<float, MaxStates + 1>;  // from index 1

/// The same as IntegrateFixedStep.
FixedStepResult PlainFixedStep(const SchemeTables& tables, const StimulusView& stimulus, const States& start,
                               int numPoints, float maxStepMs, const OccupancyRows& rows);

/// The same as IntegrateAdaptive.
AdaptiveResult PlainAdaptive(const SchemeTables& tables, const StimulusView& stimulus, const States& start,
                             int numPoints, float precision, std::span<float> savedTime,
                             const OccupancyRows& rows);

}  // namespace zelvane
