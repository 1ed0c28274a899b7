#include "run/saved_steps.h"

#include <algorithm>
#include <cstddef>

#include "formats/number_text.h"
#include "model/model_store.h"
#include "run/active_scheme.h"
#include "run/result_store.h"
#include "run/run.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Finds the last saved step: the time after it is smaller. Sets KeptSteps to its number.
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

SavedSteps StepsOfResult() {
  return {Result.SavedTime, Result.Occupancy, Result.KeptSteps, Result.IntegrationOffset, Model.ADInterval};
}

}  // namespace

bool TraceHasSavedSteps() {
  return Result.ResultKind == ResultSavedSteps && ResultHasRunLength();
}

std::vector<double> SavedStepTimes() {
  const double start = Result.IntegrationOffset * AsTyped(Model.ADInterval);
  std::vector<double> times(static_cast<std::size_t>(std::max(0, Result.KeptSteps)));
  for (std::size_t i = 0; i < times.size(); ++i)
    times[i] = start + static_cast<double>(Result.SavedTime[i + 1]);
  return times;
}

std::vector<float> SavedStepValues() {
  return SavedStepValues(ActiveConversion(), StepsOfResult());
}

void SavedStepsToTrace() {
  FindLastStep();
  const auto points = static_cast<std::size_t>(std::clamp(Model.NumPoints, 0, MaxStimPoints));
  SavedStepsToSamples(ActiveConversion(), StepsOfResult(), Trace.SimTrace.first(points));
}

}  // namespace zelvane
