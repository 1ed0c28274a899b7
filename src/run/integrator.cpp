#include "run/integrator.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "kinetics/adaptive_step.h"
#include "kinetics/compiled_scheme.h"
#include "kinetics/fixed_step.h"
#include "model/model.h"
#include "model/model_panels.h"
#include "run/active_scheme.h"
#include "run/result_store.h"
#include "run/run.h"
#include "run/run_panel.h"
#include "run/window_breath.h"
#include "screen/popups.h"
#include "stimulus/stimulus_store.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char SlowTitle[] = "! Slow Integration";
constexpr char SlowQuestion[] =
    "Do you want to integrate equations with this fine an integration step, which could take some time?";
constexpr MessageTitle StepWarningTitle{MessageKind::Warning, "! Integration Warning"};
constexpr char StepDecreased[] = "Max Step Size was decreased during integration.";
constexpr MessageTitle StepErrorTitle{MessageKind::Error, "! Integration Error"};
constexpr char StepFailed[] =
    "Integration has failed. You need to decrease Max Step Size or increase Time Interval.";
constexpr char StepTooSmall[] = "Step size too small in routine rkdumb";
constexpr char PrecisionReduced[] = "Precision reduced during integration.";
constexpr char Interrupted[] = "Simulation Interrupted by User";

constexpr int ManyPoints = 20001;  // a run that can take time
constexpr double ManySubsteps = 10.0;

/// Shows progress and lets the stop button work; nothing of it while a fit runs.
RunHook ProgressHook() {
  if (Model.FitActive != 0) return {};
  return [](double fraction) {
    ShowProgress(fraction);
    ProcessSystemEvents();
    return StopAsked();
  };
}

/// The user's consent to a long run with a step that the last one has reduced.
bool StepIsWanted() {
  if (Model.FitActive != 0 || Model.SimulatorKind != FixedStepIntegrator) return true;
  const float stepMs = std::max(Model.MaxStepSize, SmallestStepMs);
  const double substeps = static_cast<double>(Model.ADInterval) / static_cast<double>(stepMs);
  const bool slow = Result.ReductionCount != 0 && substeps > ManySubsteps && Model.NumPoints >= ManyPoints;
  return !slow || ConfirmPopup(SlowTitle, SlowQuestion);
}

/// Points below `end` of the states that are on may have been written.
void MarkOccupancy(const CompiledScheme& scheme, int end) {
  for (std::size_t lane = 0; lane < static_cast<std::size_t>(scheme.lanes); ++lane) {
    if (!scheme.on[lane]) continue;
    int& used = Result.OccupancyUsed[static_cast<std::size_t>(scheme.state[lane])];
    used = std::max(used, end);
  }
}

void TellFixedStep(const FixedStepResult& run) {
  if (run.stopped) MessagePopup(NoticeTitle, Interrupted);
  if (run.reductions == 0) return;
  WriteRunParameters();
  MessagePopup(StepWarningTitle, StepDecreased);
  if (run.reductions == MaxReductions) MessagePopup(StepErrorTitle, StepFailed);
}

Outcome IntegrateFixed(const CompiledScheme& scheme) {
  Result.IntegrationOffset = 0;
  const StimulusView stimulus = ActiveStimulus(0);
  const FixedStepRun run{scheme,          stimulus,          Model.StartOccupancy,
                         Model.NumPoints, Model.MaxStepSize, WindowBreath()};
  MarkOccupancy(scheme, Model.NumPoints + 2);
  const FixedStepResult result = IntegrateFixedStep(run, Result.Occupancy, ProgressHook());
  Result.ReductionCount = result.reductions;
  for (int k = 0; k < result.reductions; ++k) Model.MaxStepSize *= 0.5F;
  for (int k = 0; k < result.stalledPasses; ++k) ConsoleLine(StepTooSmall);
  if (Model.FitActive == 0) TellFixedStep(result);
  ConvertTrace(false);
  Trace.TraceValid = 1;
  if (result.stopped) return Outcome::Stopped;
  return result.reductions == MaxReductions ? Outcome::Failed : Outcome::Done;
}

/// The times behind the last saved step read as 0. Times are above 0 from index 2 on, so those that an
/// earlier run has left end at the first 0.
void ClearTimesBehind(int saved) {
  for (auto q = static_cast<std::size_t>(saved) + 1; q < Result.SavedTime.size(); ++q) {
    if (Result.SavedTime[q] == 0.0F) return;
    Result.SavedTime[q] = 0.0F;
  }
}

void TellAdaptive(const AdaptiveResult& run) {
  if (run.stopped) MessagePopup(NoticeTitle, Interrupted);
  if (!run.precisionReduced) return;
  MessagePopup(NoticeTitle, PrecisionReduced);
  WriteRunParameters();
}

Outcome IntegrateAdaptively(const SchemeTables& tables, const CompiledScheme& scheme) {
  Result.IntegrationOffset =
      FirstActivePoint(tables, Model.StartOccupancy, ActiveStimulus(0), Model.NumPoints);
  const StimulusView stimulus = ActiveStimulus(Result.IntegrationOffset);
  const AdaptiveRun run{scheme,          stimulus,        Model.StartOccupancy,
                        Model.NumPoints, Model.Precision, WindowBreath()};
  MarkOccupancy(scheme, Model.NumPoints + 1);
  const AdaptiveResult result = IntegrateAdaptive(run, Result.SavedTime, Result.Occupancy, ProgressHook());
  // A finished run has one step more than rounds at most: each round saves its start, the end adds itself.
  Result.KeptSteps = result.finished ? result.rounds + 1 : result.rounds;
  ClearTimesBehind(result.saved);
  if (result.precisionReduced) Model.Precision = result.precision;
  if (Model.FitActive == 0) TellAdaptive(result);
  if (result.finished) {
    Result.ResultKind = ResultSavedSteps;
    ConvertTrace(false);
  }
  Trace.TraceValid = 1;
  if (result.stopped) return Outcome::Stopped;
  return result.precisionReduced ? Outcome::Failed : Outcome::Done;
}

}  // namespace

Outcome IntegrateModel() {
  Result.ResultKind = ResultUniform;
  if (Model.ModelIs2D != 0) {
    if (Model.FitActive == 0) {
      ReadGridRates();
      ReadRunParameters();
    }
    RatesFromGrid();
  }
  LimitNumPoints();
  ClearOccupancy(Model.NumPoints + 1);
  if (!StepIsWanted()) return Outcome::Refused;
  ForgetStop();
  const SchemeTables tables = ActiveTables();
  const CompiledScheme scheme = CompileScheme(tables);
  return Model.SimulatorKind == AdaptiveIntegrator ? IntegrateAdaptively(tables, scheme)
                                                   : IntegrateFixed(scheme);
}

}  // namespace zelvane
