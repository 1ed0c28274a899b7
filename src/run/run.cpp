#include "run/run.h"

#include <algorithm>

#include "kinetics/simulate.h"
#include "kinetics/state_exits.h"
#include "model/model.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "run/integrator.h"
#include "run/monte_carlo_loop.h"
#include "run/q_matrix_analysis.h"
#include "run/result_store.h"
#include "run/saved_steps.h"
#include "screen/popups.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char TooManyConnections[] =
    "No state can connect to more than five other states for Monte Carlo simulations.";
constexpr char NoConnections[] = "No states connected.";
constexpr char NoSubunitIntegration[] = "Cannot run integrator for cooperative multi-subunit receptors.";
constexpr char NoLength[] = "A run needs at least one point and a time interval above 0.";

/// Fills `Result.StateClass`: state 1 has level 1, each new conductance the next. Floats are compared
/// exactly.
void ClassifyConductances() {
  int levels = 0;
  for (int s = 1; s <= MaxStates; ++s) {
    int level = 0;
    for (int former = 1; former < s && level == 0; ++former) {
      if (Model.StateConductance[former] == Model.StateConductance[s]) level = Result.StateClass[former];
    }
    Result.StateClass[s] = level != 0 ? level : ++levels;
  }
}

/// Calculates the equilibrium under the resting stimulus and starts the run from it.
void StartAtEquilibrium(bool announced) {
  QMatrixAnalysis(false, RestingPoint);
  if (announced) EquilibriumCalculated.Tell(RestingPoint);
  if (!HasEquilibrium()) return;
  Model.StartOccupancy = Result.EquilibriumOccupancy;
  if (announced) StartOccupancyChanged.Tell();
}

/// Returns whether the scheme can run. If not, shows the reason.
bool SchemeIsConnected(const RunReporter& reporter) {
  const auto exits = ConnectionsOf(Model.RateMatrix).count;
  const int most = *std::max_element(exits.begin(), exits.end());
  if (Model.SimulatorKind == MonteCarlo && most > MaxConnections) {
    Tell(reporter, ErrorTitle, TooManyConnections);
    return false;
  }
  if (most != 0) return true;
  Tell(reporter, ErrorTitle, NoConnections);
  return false;
}

Outcome RunIntegrator(const RunReporter& reporter, RunMemory* memory) {
  Result.EffectiveChannels = static_cast<float>(Model.NumChannels);
  const bool weighted = Model.DisplayUnits == UnitsConductance || Model.DisplayUnits == UnitsCurrent;
  if (Model.MultiSubunit != 0 && weighted) {
    Tell(reporter, WarningTitle, NoSubunitIntegration);
    return Outcome::Refused;
  }
  const Outcome outcome = IntegrateModel(reporter, memory);
  Finish(reporter);
  if (Trace.TraceValid == 0) return outcome;
  return FirstNotDone(outcome, TellRunCompleted(reporter));
}

}  // namespace

void ConnectRuns() {
  RecordingCameIn.Add([] { Result.ResultKind = ResultMonteCarlo; });
  StepsToWrite.Add([](TraceSteps& steps) {
    if (!TraceHasSavedSteps()) return;
    steps.values = SavedStepValues();
    steps.timeMs = SavedStepTimes();
  });
}

Outcome TellRunCompleted(const RunReporter& reporter) {
  Outcome saved = Outcome::Done;
  if (!IsSilent(reporter)) RunCompleted.Tell(saved);
  return saved;
}

bool ResultHasRunLength() {
  return Result.RunPoints == Model.NumPoints && Result.RunInterval == Model.ADInterval;
}

bool RunHasLength(const RunReporter& reporter) {
  if (HasLength(Model.NumPoints, Model.ADInterval)) return true;
  Tell(reporter, ErrorTitle, NoLength);
  return false;
}

RunStart ChosenStart() {
  return Model.StartAtEquilibrium != 0 ? RunStart::AtEquilibrium : RunStart::AsSet;
}

Outcome RunSimulation(int numPoints, RunStart start, const RunReporter& reporter, RunMemory* memory) {
  const bool announced = !IsSilent(reporter);
  Model.NumPoints = numPoints;
  ClassifyConductances();
  LimitNumPoints();
  if (!RunHasLength(reporter)) return Outcome::Refused;
  Model.RecordPoints = Model.NumPoints;
  if (start == RunStart::AtEquilibrium) StartAtEquilibrium(announced);
  if (Model.ModelIs2D == 0) ActivateTableModel();
  Trace.TraceUnits = Model.DisplayUnits;
  Trace.TraceValid = 0;  // the trace is empty now, even after a refusal
  Trace.TracePoints = 0;
  Trace.TraceFromFile = 0;
  if (announced) TellTraceWillChange();
  ClearSamples(Model.NumPoints);
  Trace.TraceSimulator = Model.SimulatorKind;
  Result.RunPoints = Model.NumPoints;
  Result.RunInterval = Model.ADInterval;
  ClearOccupancy(Model.NumPoints + 1);  // the fixed-step integrator also fills the point after the last
  if (Model.ModelIs2D != 0) RatesFromGrid();
  if (!SchemeIsConnected(reporter)) return Outcome::Refused;
  if (announced) RunBegins.Tell();
  return Model.SimulatorKind == MonteCarlo ? RunMonteCarlo(reporter) : RunIntegrator(reporter, memory);
}

}  // namespace zelvane
