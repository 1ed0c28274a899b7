#include "run/integrator.h"

#include <algorithm>
#include <cstddef>

#include "kinetics/simulate.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "run/active_scheme.h"
#include "run/result_store.h"
#include "run/run.h"
#include "screen/popups.h"
#include "trace/trace.h"

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
constexpr char PrecisionLost[] =
    "The adaptive integrator would need a precision above %g for this run, so there is no trace: a rate is too "
    "fast for the length of the run.";
constexpr char StepsUsedUp[] =
    "The adaptive integrator has used up its %d steps before the end of the run, so there is no trace: enter a "
    "larger number for the precision or use the fixed-step integrator.";
constexpr char Stalled[] =
    "The adaptive integrator found no step that is short enough for this run, so there is no trace: a rate is too "
    "large for 32-bit floats.";

constexpr int ManyPoints = 20001;  // from here on a run may be slow
constexpr double ManySubsteps = 10.0;

/// Returns whether the user accepts a long run with a step that the last run has reduced.
bool StepIsWanted(const RunReporter& reporter) {
  if (Model.SimulatorKind != FixedStepIntegrator) return true;
  const float stepMs = std::max(Model.MaxStepSize, SmallestStepMs);
  const double substeps = static_cast<double>(Model.ADInterval) / static_cast<double>(stepMs);
  const bool slow = Result.ReductionCount != 0 && substeps > ManySubsteps && Model.NumPoints >= ManyPoints;
  return !slow || Agrees(reporter, SlowTitle, SlowQuestion);
}

void TellFixedStep(const FixedStepResult& run, const RunReporter& reporter) {
  if (run.stopped) Tell(reporter, NoticeTitle, RunInterrupted);
  if (run.reductions == 0) return;
  if (!IsSilent(reporter)) RunSettingsChanged.Tell();
  Tell(reporter, StepWarningTitle, StepDecreased);
  if (run.reductions == MaxReductions) Tell(reporter, StepErrorTitle, StepFailed);
}

Outcome FinishFixedStep(const SimulationResult& result, const RunReporter& reporter) {
  const FixedStepResult& run = result.fixedStep;
  Result.ReductionCount = run.reductions;
  for (int k = 0; k < run.reductions; ++k) Model.MaxStepSize *= 0.5F;
  for (int k = 0; k < run.stalledPasses; ++k) ConsoleLine(StepTooSmall);
  TellFixedStep(run, reporter);
  ConvertTrace(false, reporter);
  BeginTrace(TraceOrigin::Simulation);
  return result.outcome;
}

/// Sets the times after the last saved step to 0. Times are above 0 from index 2 on, so the times of an
/// earlier run end at the first 0.
void ClearTimesBehind(int saved) {
  for (auto q = static_cast<std::size_t>(saved) + 1; q < Result.SavedTime.size(); ++q) {
    if (Result.SavedTime[q] == 0.0F) return;
    Result.SavedTime[q] = 0.0F;
  }
}

void TellAdaptive(const AdaptiveResult& run, const RunReporter& reporter) {
  if (run.stopped) Tell(reporter, NoticeTitle, RunInterrupted);
  if (run.precisionReduced) Tell(reporter, NoticeTitle, PrecisionReduced);
  if (IsSilent(reporter)) return;
  RunSettingsChanged.Tell();
  if (run.finished || run.stopped) return;
  if (run.precisionLost) {
    Note(FormatText(PrecisionLost, static_cast<double>(CoarsestPrecision)));
  } else {
    Note(run.stalled ? Stalled : FormatText(StepsUsedUp, run.rounds));
  }
}

Outcome FinishAdaptive(const SimulationResult& result, const RunReporter& reporter) {
  const AdaptiveResult& run = result.adaptive;
  // A finished run has at most one step more than rounds: each round may save its start, and the end is saved
  // too.
  Result.KeptSteps = run.finished ? run.rounds + 1 : run.rounds;
  ClearTimesBehind(run.saved);
  Model.Precision = run.precision;
  TellAdaptive(run, reporter);
  if (!run.finished) {
    Result.RunPoints = 0;  // the occupancies of its steps are not those of points
    return result.outcome;
  }
  Result.ResultKind = ResultSavedSteps;
  ConvertTrace(false, reporter);
  BeginTrace(TraceOrigin::Simulation);
  return run.precisionReduced ? Outcome::Failed : Outcome::Done;
}

}  // namespace

Outcome IntegrateModel(const RunReporter& reporter, RunMemory* memory) {
  Result.ResultKind = ResultUniform;
  if (!StepIsWanted(reporter)) return Outcome::Refused;
  const bool adaptive = Model.SimulatorKind == AdaptiveIntegrator;
  SimulationSettings settings;
  settings.simulator = adaptive ? Simulator::Adaptive : Simulator::FixedStep;
  settings.numPoints = Model.NumPoints;
  settings.start = Model.StartOccupancy;
  settings.maxStepMs = Model.MaxStepSize;
  settings.precision = Model.Precision;
  SimulationRoom room;
  room.rows = Result.Occupancy;
  room.savedTimeMs = Result.SavedTime;
  if (memory != nullptr) room.scheme = &memory->scheme;
  const SimulationResult result = Simulate(ActiveTables(), ActiveStimulus(), settings, room, reporter);
  RaiseOccupancyUsed(result.used);
  Result.IntegrationOffset = result.offset;
  return adaptive ? FinishAdaptive(result, reporter) : FinishFixedStep(result, reporter);
}

}  // namespace zelvane
