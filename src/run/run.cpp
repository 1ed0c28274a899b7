#include "run/run.h"

#include <cmath>
#include <numeric>

#include "kinetics/state_exits.h"
#include "model/model.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "run/integrator.h"
#include "run/monte_carlo_loop.h"
#include "run/q_matrix_analysis.h"
#include "run/result_store.h"
#include "run/run_panel.h"
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

bool TalksToUser() {
  return Model.FitActive == 0;
}

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

/// Starts the run from the equilibrium under the resting stimulus where that is asked for. A scheme without
/// one starts as it is set.
void StartAtEquilibrium() {
  const int asked = TalksToUser() ? Model.StartAtEquilibrium : Model.FitStartAtEquilibrium;
  if (asked == 0) return;
  QMatrixAnalysis(false, RestingPoint);
  if (!HasEquilibrium()) return;
  Model.StartOccupancy = Result.EquilibriumOccupancy;
  if (TalksToUser()) WriteStartOccupancy();
}

void ReadRates() {
  if (Model.ModelIs2D != 0) {
    ReadGridRates();
  } else {
    ReadTableRates();
  }
}

/// Fills the connection table: the states that each state can leave to, in rising order.
/// @return the number of connections of the whole scheme
int BuildConnections() {
  const Connections connections = ConnectionsOf(Model.RateMatrix);
  Result.ConnectionCount = connections.count;
  Result.Connection = connections.to;
  return std::accumulate(connections.count.begin(), connections.count.end(), 0);
}

/// Whether the scheme can run; else the user is told why.
bool SchemeIsConnected() {
  const int sum = BuildConnections();
  if (Model.SimulatorKind == MonteCarlo) {
    for (int s = 1; s <= MaxStates; ++s) {
      if (Result.ConnectionCount[s] <= MaxConnections) continue;
      if (TalksToUser()) MessagePopup(ErrorTitle, TooManyConnections);
      return false;
    }
  }
  if (sum != 0) return true;
  if (TalksToUser()) MessagePopup(ErrorTitle, NoConnections);
  return false;
}

Outcome RunIntegrator() {
  Result.EffectiveChannels = static_cast<float>(Model.NumChannels);
  const bool weighted = Model.DisplayUnits == UnitsConductance || Model.DisplayUnits == UnitsCurrent;
  if (Model.MultiSubunit != 0 && weighted) {
    if (TalksToUser()) MessagePopup(WarningTitle, NoSubunitIntegration);
    return Outcome::Refused;
  }
  const Outcome outcome = IntegrateModel();
  BeginTrace(TraceOrigin::Simulation);
  if (TalksToUser()) ResetProgress();
  ForgetStop();
  return FirstNotDone(outcome, TellRunCompleted());
}

}  // namespace

void ConnectRuns() {
  RecordingCameIn.Add([] { Result.ResultKind = ResultMonteCarlo; });
  StepsToWrite.Add([](TraceSteps& steps) {
    if (Result.ResultKind != ResultSavedSteps) return;
    steps.values = SavedStepValues();
    steps.timeMs = Result.SavedTime.subspan(1, steps.values.size());
  });
}

Outcome TellRunCompleted() {
  Outcome saved = Outcome::Done;
  if (TalksToUser()) RunCompleted.Tell(saved);
  return saved;
}

bool RunHasLength() {
  const float lengthMs = Model.ADInterval * static_cast<float>(Model.NumPoints);
  if (Model.NumPoints >= 1 && Model.ADInterval > 0.0F && std::isfinite(lengthMs)) return true;
  if (TalksToUser()) MessagePopup(ErrorTitle, NoLength);
  return false;
}

Outcome RunSimulation(int numPoints) {
  Model.NumPoints = numPoints;
  if (TalksToUser() || Model.SimulatorKind == MonteCarlo) ClassifyConductances();
  if (TalksToUser()) ReadRunParameters();
  LimitNumPoints();
  if (!RunHasLength()) return Outcome::Refused;
  ForgetStop();
  Model.RecordPoints = Model.NumPoints;
  StartAtEquilibrium();
  if (TalksToUser()) ReadRates();
  if (Model.ModelIs2D == 0) ActivateTableModel();
  Trace.TraceUnits = Model.DisplayUnits;
  Trace.TraceValid = 0;  // from here on the trace is empty, also after a refusal
  Trace.TraceFromFile = 0;
  TellTraceChanges();
  ClearSamples(Model.NumPoints);
  ClearOccupancy(Model.NumPoints + 1);  // the fixed-step integrator also fills the point behind the last
  if (Model.ModelIs2D != 0) RatesFromGrid();
  if (!SchemeIsConnected()) return Outcome::Refused;
  if (TalksToUser()) RunBegins.Tell();
  return Model.SimulatorKind == MonteCarlo ? RunMonteCarlo() : RunIntegrator();
}

}  // namespace zelvane
