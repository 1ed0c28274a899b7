// Converts occupancies to the displayed trace.
#include <algorithm>
#include <cstddef>
#include <span>

#include "model/model_events.h"
#include "model/model_store.h"
#include "platform/zero_pages.h"
#include "run/active_scheme.h"
#include "run/result_store.h"
#include "run/run.h"
#include "run/saved_steps.h"
#include "screen/popups.h"
#include "screen/window_reporter.h"
#include "stimulus/gaussian_filter.h"
#include "stimulus/stimulus_store.h"
#include "trace/program_random.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char ParsedText[] = "Cannot refresh since data has been parsed (resampled).";
constexpr char RecordingText[] = "Cannot refresh since the data was read from a file.";
constexpr char NoRunOfThisLength[] =
    "There is nothing to refresh: no run has the present number of points and interval.";
constexpr char RemovesCorrection[] = "Refreshing will remove RsCm correction. Do you want to continue?";

void AddNoise(std::span<float> trace) {
  for (float& sample : trace) sample += Model.AutoNoiseSTD * GaussianNoise(ProgramRandom);
}

}  // namespace

void ClearOccupancy(int points) {
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    ClearUsed(Result.Occupancy[s], Result.OccupancyUsed[s], points + 1);
  }
}

void RaiseOccupancyUsed(const std::array<int, MaxStates + 1>& used) {
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    Result.OccupancyUsed[s] = std::max(Result.OccupancyUsed[s], used[s]);
  }
}

void ConvertTrace(bool erase, const RunReporter& reporter) {
  const bool announced = !IsSilent(reporter);
  Trace.TraceUnits = Model.DisplayUnits;
  if (announced) TellTraceWillChange();
  ClearSamples(Trace.SimTraceUsed);
  const int samples = std::clamp(Model.NumPoints, 0, MaxStimPoints);
  const std::span<float> trace = Trace.SimTrace.first(static_cast<std::size_t>(samples));
  Trace.SimTraceUsed = samples;
  if (Result.ResultKind == ResultSavedSteps) {
    SavedStepsToTrace();
  } else {
    AddMonitoredStates(ActiveConversion(), Result.Occupancy, Result.OccupancyUsed, trace);
  }
  if (Model.AutoNoise != 0) AddNoise(trace);
  if (Model.AutoFilter != 0) GaussianFilter(trace, Model.AutoFilterFc, reporter);
  if (announced) TraceToPlot.Tell(erase);
}

void RefreshTrace() {
  if (Trace.TraceParsed != 0) {
    MessagePopup(WarningTitle, ParsedText);
    return;
  }
  if (Trace.TraceFromFile != 0) {  // the occupancies belong to an earlier run
    MessagePopup(WarningTitle, RecordingText);
    return;
  }
  RunSettingsWanted.Tell();
  const RunReporter reporter = WindowReporter();
  if (!RunHasLength(reporter)) return;
  if (!ResultHasRunLength()) {
    Note(NoRunOfThisLength);
    return;
  }
  if (Result.ResultKind == ResultMonteCarlo && Result.OfSubunits != 0) {
    TraceToPlot.Tell(true);  // the occupancies are those of the last subunit
    return;
  }
  if (Trace.RsCorrected != 0 && !ConfirmPopup(WarningTitle, RemovesCorrection)) return;
  ConvertTrace(true, reporter);
  Trace.RsCorrected = 0;
  Trace.RcFiltered = 0;
  if (Trace.TracePoints == Model.NumPoints) Trace.TraceValid = 1;  // the run is complete
}

}  // namespace zelvane
