#include "sim/saved_steps.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "model/model_store.h"
#include "numerics/spline.h"
#include "sim/internal/ohmic_drive.h"
#include "sim/result_store.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// What one channel in each state adds to the trace at point `p` of the stimulus; 0 for states not monitored.
std::array<float, MaxStates + 1> TraceFactors(int p) {
  const float channels = Result.EffectiveChannels;
  std::array<float, MaxStates + 1> factor{};
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (Model.StateMonitored[s] == 0) continue;
    const float conductance = Model.StateConductance[s];
    switch (Model.DisplayUnits) {
      case UnitsChannels:
        factor[s] = channels;
        break;
      case UnitsConductance:
        factor[s] = conductance * channels;
        break;
      case UnitsCurrent:
        factor[s] = OhmicDrive(p) * conductance * channels;
        break;
      default:
        factor[s] = 1.0F;
        break;
    }
  }
  return factor;
}

/// Sum over the monitored states at saved step `q`, with the voltage of point `p`.
float SumAtStep(std::size_t q, int p) {
  const auto factor = TraceFactors(p);
  float value = 0.0F;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (factor[s] != 0.0F) value += factor[s] * Result.Occupancy[s][q];
  }
  return value;
}

float ValueOfStep(std::size_t q) {
  const double points = static_cast<double>(Result.SavedTime[q]) / static_cast<double>(Model.ADInterval);
  const double point =
      points > 0.0 ? std::min(points, static_cast<double>(MaxStimPoints)) : 0.0;  // nan as well
  return SumAtStep(q, static_cast<int>(point) + Result.IntegrationOffset);
}

/// The samples before integration starts: the start occupancies of the run, as its first step holds them,
/// whatever the panels have become since. Only a current follows the voltage there.
void FillStart(std::span<float> samples) {
  float value = 0.0F;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (i == 0 || Model.DisplayUnits == UnitsCurrent) value = SumAtStep(1, static_cast<int>(i));
    samples[i] = value;
  }
}

/// Finds the last saved step: the time behind it is smaller. Sets KeptSteps to it.
void FindLastStep() {
  const int room = static_cast<int>(Result.SavedTime.size()) - 1;
  Result.KeptSteps = std::clamp(Result.KeptSteps, 1, room);
  for (int q = 2; q <= Result.KeptSteps; ++q) {
    const auto here = static_cast<std::size_t>(q);
    if (Result.SavedTime[here] >= Result.SavedTime[here - 1]) continue;
    Result.SavedTime[here] = static_cast<float>(Model.NumPoints) * Model.ADInterval;
    Result.KeptSteps = q - 1;
    return;
  }
}

}  // namespace

std::vector<float> SavedStepValues() {
  const auto steps = static_cast<std::size_t>(std::max(0, Result.KeptSteps));
  std::vector<float> values(std::min(steps, Result.SavedTime.size() - 1));
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = ValueOfStep(i + 1);
  return values;
}

void SavedStepsToTrace() {
  FindLastStep();
  const std::vector<float> saved = SavedStepValues();
  std::vector<double> times;
  std::vector<double> values;
  times.reserve(saved.size());
  values.reserve(saved.size());
  for (std::size_t i = 0; i < saved.size(); ++i) {
    const auto time = static_cast<double>(Result.SavedTime[i + 1]);
    if (!times.empty() && !(time > times.back())) continue;  // one float cannot tell the two apart
    times.push_back(time);
    values.push_back(static_cast<double>(saved[i]));
  }
  const auto points = static_cast<std::size_t>(std::clamp(Model.NumPoints, 0, MaxStimPoints));
  const std::size_t before =
      std::min(points, static_cast<std::size_t>(std::max(0, Result.IntegrationOffset)));
  FillStart(Trace.SimTrace.first(before));
  SplineToSamples(times, values, static_cast<double>(Model.ADInterval),
                  Trace.SimTrace.subspan(before, points - before));
}

}  // namespace zelvane
