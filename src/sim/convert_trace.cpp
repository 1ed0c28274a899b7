// From occupancies to the displayed trace.
#include <algorithm>
#include <cstddef>
#include <span>

#include "model/model_store.h"
#include "noise/gaussian_filter.h"
#include "platform/zero_pages.h"
#include "screen/popups.h"
#include "sim/internal/ohmic_drive.h"
#include "sim/program_random.h"
#include "sim/result_store.h"
#include "sim/run.h"
#include "sim/run_panel.h"
#include "sim/saved_steps.h"
#include "stimulus/stimulus_store.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char ParsedText[] = "Cannot refresh since data has been parsed (resampled).";
constexpr char RecordingText[] = "Cannot refresh since the data was read from a file.";
constexpr char RemovesCorrection[] = "Refreshing will remove RsCm correction. Do you want to continue?";

/// Adds one monitored state as a current: point p goes with point p of the voltage, to sample p - 1.
void AddCurrent(std::span<const float> occupancy, float conductance, std::span<float> trace) {
  // Copies, since a write to the trace could be one to the store for all that the compiler knows.
  const std::span<const float> volts = Stimulus.Profile[0].subspan(1);
  const float reversal = Model.VRev / 1000.0F;
  const float valence = static_cast<float>(Model.Valence);
  const float channels = Result.EffectiveChannels;
  const std::size_t inside = std::min(occupancy.size(), volts.size());
  for (std::size_t i = 0; i < inside; ++i) {
    trace[i] += (volts[i] - reversal) * valence * conductance * channels * occupancy[i];
  }
  for (std::size_t i = inside; i < occupancy.size();
       ++i) {  // the longest run is one point longer than the voltage
    trace[i] += OhmicDrive(static_cast<int>(i) + 1) * conductance * channels * occupancy[i];
  }
}

/// Adds one monitored state to the trace: samples and points in the order of memory.
void AddState(std::size_t state, std::span<float> trace) {
  const std::size_t written = static_cast<std::size_t>(std::max(0, Result.OccupancyUsed[state] - 1));
  const std::size_t count = std::min(trace.size(), written);  // the rest holds 0 and adds nothing
  const std::span<const float> occupancy = Result.Occupancy[state].subspan(1, count);
  const float conductance = Model.StateConductance[state];
  if (Model.DisplayUnits == UnitsCurrent) {
    AddCurrent(occupancy, conductance, trace);
    return;
  }
  float factor = 1.0F;
  if (Model.DisplayUnits == UnitsChannels) factor = Result.EffectiveChannels;
  if (Model.DisplayUnits == UnitsConductance) factor = conductance * Result.EffectiveChannels;
  for (std::size_t i = 0; i < count; ++i) trace[i] += factor * occupancy[i];
}

void AddNoise(std::span<float> trace) {
  for (float& sample : trace) sample += Model.AutoNoiseSTD * GaussianNoise(ProgramRandom);
}

}  // namespace

void ClearOccupancy(int points) {
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    ClearUsed(Result.Occupancy[s], Result.OccupancyUsed[s], points + 1);
  }
}

bool ConvertTrace(bool erase) {
  if (Model.FitActive == 0) ReadRunParameters();
  if (!RunHasLength()) return false;
  Trace.TraceUnits = Model.DisplayUnits;
  TellTraceChanges();
  ClearSamples(Trace.SimTraceUsed);
  const int samples = std::clamp(Model.NumPoints, 0, MaxStimPoints);
  const std::span<float> trace = Trace.SimTrace.first(static_cast<std::size_t>(samples));
  Trace.SimTraceUsed = samples;
  if (Result.ResultKind == ResultSavedSteps) {
    SavedStepsToTrace();
  } else {
    for (std::size_t s = 1; s <= MaxStates; ++s) {
      if (Model.StateMonitored[s] != 0) AddState(s, trace);
    }
  }
  if (Model.AutoNoise != 0) AddNoise(trace);
  if (Model.AutoFilter != 0) GaussianFilter(trace, Model.AutoFilterFc);
  TraceToPlot.Tell(erase);
  return true;
}

void RefreshTrace() {
  if (Trace.TraceParsed != 0) {
    MessagePopup(WarningTitle, ParsedText);
    return;
  }
  if (Trace.TraceFromFile != 0) {  // the occupancies belong to a former run
    MessagePopup(WarningTitle, RecordingText);
    return;
  }
  if (Model.MultiSubunit != 0 && Result.ResultKind == ResultMonteCarlo) {
    TraceToPlot.Tell(true);  // occupancies hold the last subunit alone
    return;
  }
  if (Trace.RsCorrected != 0 && !ConfirmPopup(WarningTitle, RemovesCorrection)) return;
  if (!ConvertTrace(true)) return;
  Trace.RsCorrected = 0;
  Trace.RcFiltered = 0;
}

}  // namespace zelvane
