// Both integrators in their plain form: at each use they read every state that is on, every other state and
// every flag of every rate from the tables of the model. The compiled forms must give the same bits.
#pragma once

#include <array>
#include <span>

#include "kinetics/adaptive_step.h"
#include "kinetics/compiled_scheme.h"
#include "kinetics/fixed_step.h"

namespace zelvane {

using States = std::array<float, MaxStates + 1>;  // from index 1

/// Does the same as IntegrateFixedStep.
FixedStepResult PlainFixedStep(const SchemeTables& tables, const StimulusView& stimulus, const States& start,
                               int numPoints, float maxStepMs, const OccupancyRows& rows);

/// Does the same as IntegrateAdaptive.
AdaptiveResult PlainAdaptive(const SchemeTables& tables, const StimulusView& stimulus, const States& start,
                             int numPoints, float precision, std::span<float> savedTime,
                             const OccupancyRows& rows);

}  // namespace zelvane
