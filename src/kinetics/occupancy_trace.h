// From the occupancies of a run to a trace.
//
//   Settings             TraceConversion  OhmicDrive
//   Points               AddMonitoredStates
//   Steps saved          SavedSteps  SavedStepValues  SavedStepsToSamples
#pragma once

#include <array>
#include <span>
#include <vector>

#include "kinetics/fixed_step.h"
#include "kinetics/scheme_tables.h"

namespace zelvane {

enum class TraceUnit { Channels, Conductance, Current, Probability };  // -, pS, pA, -

/// How occupancies become a trace.
struct TraceConversion {
  const std::array<int, MaxStates + 1>& monitored;      // not 0 = the state is part of the sum
  const std::array<float, MaxStates + 1>& conductance;  // pS
  TraceUnit unit = TraceUnit::Conductance;
  float channels = 1.0F;
  std::span<const float> volts;  // the voltage profile, not empty
  float reversalMv = 0.0F;
  int valence = 1;
};

/// Returns the driving force at point `p` of the voltage profile times the valence: volts which, times pS,
/// give pA. Points beyond the profile take its last sample.
float OhmicDrive(const TraceConversion& conversion, int p);

/// Adds the monitored states to `trace`: sample p - 1 gets a factor times the occupancy at point p, in 32-bit
/// floats, state after state. The factor is the number of channels, times the conductance (pS), times driving
/// force (V) and valence (pA), or 1 for a probability.
///
/// @param rows  occupancies, points from 1
/// @param used  points of each state at and beyond this one hold 0
void AddMonitoredStates(const TraceConversion& conversion, const OccupancyRows& rows,
                        const std::array<int, MaxStates + 1>& used, std::span<float> trace);

/// The steps that an adaptive run has saved, numbered from 1.
struct SavedSteps {
  std::span<const float> timeMs;  // from the point at which integration started
  const OccupancyRows& rows;      // [state][step]
  int count = 0;
  int offset = 0;            // point of the stimulus at which integration started
  float intervalMs = 0.01F;  // between points
};

/// Returns the value of every saved step: the sum over the monitored states, with the voltage of the point
/// that the step falls on. Element q - 1 belongs to step q.
std::vector<float> SavedStepValues(const TraceConversion& conversion, const SavedSteps& steps);

/// Fills `samples` from the saved steps with a spline. Samples before the point at which integration started
/// get the occupancies of the first step; there only a current follows the voltage.
void SavedStepsToSamples(const TraceConversion& conversion, const SavedSteps& steps,
                         std::span<float> samples);

}  // namespace zelvane
