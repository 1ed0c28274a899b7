#include "kinetics/occupancy_trace.h"

#include <algorithm>
#include <cstddef>

#include "numerics/spline.h"
#include "platform/index.h"
#include "platform/sweep_room.h"

namespace zelvane {
namespace {

/// Adds one monitored state as a current: occupancy and voltage at point p give sample p - 1.
void AddCurrent(const TraceConversion& conversion, std::span<const float> occupancy, float conductance,
                std::span<float> trace) {
  // Copies, because for the compiler a write to the trace could change the conversion.
  const std::span<const float> volts = conversion.volts.subspan(1);
  const float reversal = conversion.reversalMv / 1000.0F;
  const float valence = static_cast<float>(conversion.valence);
  const float channels = conversion.channels;
  const std::size_t inside = std::min(occupancy.size(), volts.size());
  for (std::size_t i = 0; i < inside; ++i) {
    trace[i] += (volts[i] - reversal) * valence * conductance * channels * occupancy[i];
  }
  for (std::size_t i = inside; i < occupancy.size();
       ++i) {  // the longest run has one point more than the voltage
    trace[i] += OhmicDrive(conversion, static_cast<int>(i) + 1) * conductance * channels * occupancy[i];
  }
}

/// Adds one monitored state to the trace, in the order of memory.
void AddState(const TraceConversion& conversion, std::span<const float> row, int used, float conductance,
              std::span<float> trace) {
  const std::size_t written = Index(std::max(0, used - 1));
  const std::size_t count = std::min(trace.size(), written);  // the rest is 0
  const std::span<const float> occupancy = row.subspan(1, count);
  if (conversion.unit == TraceUnit::Current) {
    AddCurrent(conversion, occupancy, conductance, trace);
    return;
  }
  float factor = 1.0F;
  if (conversion.unit == TraceUnit::Channels) factor = conversion.channels;
  if (conversion.unit == TraceUnit::Conductance) factor = conductance * conversion.channels;
  for (std::size_t i = 0; i < count; ++i) trace[i] += factor * occupancy[i];
}

/// Returns the factor of each state's occupancy in the trace at point `p` of the stimulus; 0 for states not
/// monitored.
std::array<float, MaxStates + 1> TraceFactors(const TraceConversion& conversion, int p) {
  const float channels = conversion.channels;
  std::array<float, MaxStates + 1> factor{};
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (conversion.monitored[s] == 0) continue;
    const float conductance = conversion.conductance[s];
    switch (conversion.unit) {
      case TraceUnit::Channels:
        factor[s] = channels;
        break;
      case TraceUnit::Conductance:
        factor[s] = conductance * channels;
        break;
      case TraceUnit::Current:
        factor[s] = OhmicDrive(conversion, p) * conductance * channels;
        break;
      default:
        factor[s] = 1.0F;
        break;
    }
  }
  return factor;
}

/// Returns the sum over the monitored states at saved step `q`, with the voltage of point `p`.
float SumAtStep(const TraceConversion& conversion, const SavedSteps& steps, std::size_t q, int p) {
  const auto factor = TraceFactors(conversion, p);
  float value = 0.0F;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (factor[s] != 0.0F) value += factor[s] * steps.rows[s][q];
  }
  return value;
}

float ValueOfStep(const TraceConversion& conversion, const SavedSteps& steps, std::size_t q) {
  const double points = static_cast<double>(steps.timeMs[q]) / static_cast<double>(steps.intervalMs);
  const double point =
      points > 0.0 ? std::min(points, static_cast<double>(MaxStimPoints)) : 0.0;  // also for NaN
  return SumAtStep(conversion, steps, q, static_cast<int>(point) + steps.offset);
}

void FillStart(const TraceConversion& conversion, const SavedSteps& steps, std::span<float> samples) {
  float value = 0.0F;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (i == 0 || conversion.unit == TraceUnit::Current) {
      value = SumAtStep(conversion, steps, 1, static_cast<int>(i));
    }
    samples[i] = value;
  }
}

}  // namespace

float OhmicDrive(const TraceConversion& conversion, int p) {
  const std::size_t last = conversion.volts.size() - 1;
  const float volts = conversion.volts[std::min(Index(p), last)];
  return (volts - conversion.reversalMv / 1000.0F) * static_cast<float>(conversion.valence);
}

void AddMonitoredStates(const TraceConversion& conversion, const OccupancyRows& rows,
                        const std::array<int, MaxStates + 1>& used, std::span<float> trace) {
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (conversion.monitored[s] != 0)
      AddState(conversion, rows[s], used[s], conversion.conductance[s], trace);
  }
}

std::vector<float> SavedStepValues(const TraceConversion& conversion, const SavedSteps& steps) {
  const auto count = Index(std::max(0, steps.count));
  std::vector<float> values(std::min(count, steps.timeMs.size() - 1));
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = ValueOfStep(conversion, steps, i + 1);
  return values;
}

void SavedStepsToSamples(const TraceConversion& conversion, const SavedSteps& steps,
                         std::span<float> samples) {
  const std::vector<float> saved = SavedStepValues(conversion, steps);
  std::vector<double> times;
  std::vector<double> values;
  times.reserve(saved.size());
  values.reserve(saved.size());
  for (std::size_t i = 0; i < saved.size(); ++i) {
    const auto time = static_cast<double>(steps.timeMs[i + 1]);
    if (!times.empty() && !(time > times.back())) continue;  // the two times are equal as floats
    times.push_back(time);
    values.push_back(static_cast<double>(saved[i]));
  }
  const std::size_t before = std::min(samples.size(), Index(std::max(0, steps.offset)));
  FillStart(conversion, steps, samples.first(before));
  SplineToSamples(times, values, static_cast<double>(steps.intervalMs), samples.subspan(before));
}

}  // namespace zelvane
