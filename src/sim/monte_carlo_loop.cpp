#include "sim/monte_carlo_loop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

#include "io/trace_store.h"
#include "model/model.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "screen/popups.h"
#include "sim/internal/ohmic_drive.h"
#include "sim/random.h"
#include "sim/result_store.h"
#include "sim/run.h"
#include "sim/run_panel.h"

namespace zelvane {
namespace {

constexpr char NoSimulator[] =
    "This version cannot simulate single channels. Choose one of the integrators to run this model.";
constexpr char Interrupted[] = "Simulation Interrupted by User";

constexpr int PollingFrom = 21;        // fewer channels are over before a user can press stop
constexpr int ManyChannels = 1000;     // from here on stops are looked for at fixed steps
constexpr int ManyChannelsStep = 50;   // channels of a state
constexpr int PollsPerRun = 20;        // with fewer than ManyChannels
constexpr int ReseedPointsBack = 100;  // a sweep's end may be cut off by the last dwell

/// The settings of a simulation, fixed while it lasts, and how far it has come.
struct Loop {
  bool subunits = false;
  int numRuns = 0;
  int numChannels = 0;
  int numIntervals = 0;
  int numPoints = 0;
  StateTable<float> savedRates{};
  std::array<float, MaxStates + 1> savedStart{};
  bool reachedMonitored = false;

  // -- The present run --
  int channels = 0;
  std::int64_t done = 0;
  std::int64_t total = 0;
};

Loop PrepareLoop() {
  ForceMultiSubunit();
  Loop loop;
  loop.subunits = Model.MultiSubunit != 0;
  loop.numRuns = loop.subunits ? Model.NumChannels : Model.NumRuns;
  loop.numChannels = loop.subunits ? 1 : Model.NumChannels;
  loop.numIntervals = std::max(0, Model.NumIntervals);
  loop.numPoints = Model.NumPoints;
  loop.savedRates = Model.RateMatrix;
  loop.savedStart = Model.StartOccupancy;
  return loop;
}

bool TalksToUser() {
  return Model.FitActive == 0;
}

void StartRun(Loop& loop) {
  if (TalksToUser()) ResetProgress();
  const bool drawn = Model.ChannelsGaussian != 0 && !loop.subunits;
  loop.channels = ChannelsOfRun(loop.numChannels, drawn ? Model.ChannelsSTD * GaussianNoise() : 0.0F);
  if (loop.channels > 0) {
    Result.ChannelUnit = 1.0F / static_cast<float>(loop.subunits ? loop.numRuns : loop.channels);
  }
  Result.EffectiveChannels = static_cast<float>(loop.subunits ? loop.numRuns : loop.channels);
  loop.done = 0;
  loop.total = static_cast<std::int64_t>(loop.channels) * (static_cast<std::int64_t>(loop.numIntervals) + 1);
}

/// Shows how far the run has come and lets the user press stop. True when stop was pressed.
bool StoppedByUser(const Loop& loop) {
  if (TalksToUser()) {
    ShowProgress(std::min(1.0, static_cast<double>(loop.done) / static_cast<double>(loop.total)),
                 Result.RunText);
  }
  ProcessSystemEvents();
  if (Result.StopRequested == 0) return false;
  if (TalksToUser()) {
    ResetProgress();
    MessagePopup(NoticeTitle, Interrupted);
  }
  return true;
}

/// Simulates the channels of one sweep, sorted by the state that they start in. False when the run is over.
bool SimulateSweep(Loop& loop) {
  for (std::size_t b = 1; b <= MaxStates; ++b) {
    const int starting = ChannelsStartingIn(loop.channels, Model.StartOccupancy[b]);
    for (int k = 0; k < starting; ++k) {
      if (PollIsDue(loop.channels, loop.done, loop.total, k, !TalksToUser()) && StoppedByUser(loop))
        return false;
      const ChannelOutcome outcome = SimulateChannel(static_cast<int>(b));
      if (outcome == ChannelOutcome::Failed) return false;
      if (outcome == ChannelOutcome::Monitored) loop.reachedMonitored = true;
      ++loop.done;
    }
  }
  return true;
}

bool DependsOnDrug(std::size_t from, std::size_t to) {
  for (std::size_t d = 1; d <= MaxDrugs; ++d) {
    if (Model.Depend.Drug[d][from][to] != 0) return true;
  }
  return false;
}

/// Takes the agonists away for the intervals: rates with a voltage dependence alone stay.
void RemoveDrugRates() {
  for (std::size_t from = 1; from <= MaxStates; ++from) {
    for (std::size_t to = 1; to <= MaxStates; ++to) {
      if (DependsOnDrug(from, to)) Model.RateMatrix[from][to] = 0.0F;
    }
  }
}

void ShowStartOccupancy() {
  if (TalksToUser()) WriteStartOccupancy();
}

void ReseedFromEnd(int numPoints) {
  const auto point = static_cast<std::size_t>(ReseedPoint(numPoints));
  for (std::size_t b = 1; b <= MaxStates; ++b) Model.StartOccupancy[b] = Result.Occupancy[b][point];
  ShowStartOccupancy();
}

void ShowSweepText(const Loop& loop, int run, int sweep) {
  const float lengthMs =
      Model.ADInterval * static_cast<float>(loop.numPoints) * (1.0F + static_cast<float>(loop.numIntervals));
  Result.RunText = RunProgressText(run, loop.numRuns, lengthMs / 1000.0F, sweep);
  if (TalksToUser()) ShowRunText();
}

/// One run: a sweep and, unless it is the last run, its intervals. False when the simulation is over.
bool SimulateRun(Loop& loop, int run) {
  for (int sweep = 0; sweep <= loop.numIntervals; ++sweep) {
    ShowSweepText(loop, run, sweep);
    ClearOccupancy(loop.numPoints);
    if (!SimulateSweep(loop)) return false;
    if (sweep == 0) {
      if (!loop.subunits) ConvertTrace(loop.numRuns != 1 && Model.ShowAllTraces == 0);
      RemoveDrugRates();
      AutosaveRun();
    }
    if (Model.ReseedSimulation != 0 || loop.numIntervals > 0) ReseedFromEnd(loop.numPoints);
    if (sweep == loop.numIntervals) Model.RateMatrix = loop.savedRates;
    if (run == loop.numRuns) break;
  }
  return true;
}

/// The monitored states, packed to the front.
struct MonitoredStates {
  std::array<std::size_t, MaxStates> state{};
  std::size_t count = 0;
};

MonitoredStates ListMonitored() {
  MonitoredStates list;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (Model.StateMonitored[s] != 0) list.state[list.count++] = s;
  }
  return list;
}

/// Adds the occupancies of one subunit, as numbers of channels or as probabilities.
void AddSubunitOccupancy(std::span<float> trace) {
  const float factor = Model.DisplayUnits == UnitsChannels ? Result.EffectiveChannels : 1.0F;
  const MonitoredStates monitored = ListMonitored();
  for (std::size_t k = 0; k < monitored.count; ++k) {
    const float* occupancy = Result.Occupancy[monitored.state[k]].data() + 1;
    for (std::size_t i = 0; i < trace.size(); ++i) trace[i] += factor * occupancy[i];
  }
}

/// Adds the conductance or current of one subunit: the conductance is that of the state whose number is the
/// count of monitored states which the subunit fills at that point, element 0 standing for none.
void AddSubunitConductance(std::span<float> trace) {
  Model.StateConductance[0] = 0.0F;
  const MonitoredStates monitored = ListMonitored();
  for (std::size_t i = 0; i < trace.size(); ++i) {
    std::size_t filled = 0;
    for (std::size_t k = 0; k < monitored.count; ++k) {
      if (Result.Occupancy[monitored.state[k]][i + 1] == Result.ChannelUnit) ++filled;
    }
    const float conductance = Model.StateConductance[filled];
    const bool current = Model.DisplayUnits == UnitsCurrent;
    trace[i] += current ? OhmicDrive(static_cast<int>(i) + 1) * conductance : conductance;
  }
}

void AddSubunit(int numPoints) {
  const std::span<float> trace = Trace.SimTrace.first(static_cast<std::size_t>(numPoints));
  Trace.SimTraceUsed = std::max(Trace.SimTraceUsed, numPoints);
  if (Model.DisplayUnits == UnitsConductance || Model.DisplayUnits == UnitsCurrent) {
    AddSubunitConductance(trace);
  } else {
    AddSubunitOccupancy(trace);
  }
}

void FinishLoop(const Loop& loop) {
  if (loop.subunits && TalksToUser()) {
    ShowSweepLength();
    PlotTrace(true);
  }
  if (Model.ReseedSimulation == 0) Model.StartOccupancy = loop.savedStart;
  ShowStartOccupancy();
  if (loop.reachedMonitored) {
    Trace.TraceValid = 1;
    Trace.TraceParsed = 0;
    Trace.RsCorrected = 0;
  }
  Result.StopRequested = 0;
  if (TalksToUser()) ResetProgress();
}

}  // namespace

int ChannelsOfRun(int numChannels, float deviation) {
  return RoundCount(std::abs(static_cast<double>(numChannels) + static_cast<double>(deviation)));
}

int ChannelsStartingIn(int channels, float occupancy) {
  const float share = static_cast<float>(channels) * occupancy;
  if (!(share > 0.0F)) return 0;  // nan as well
  const float whole = std::trunc(share);
  if (whole >= static_cast<float>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
  return static_cast<int>(whole) + (share - whole >= 0.5F ? 1 : 0);
}

int ReseedPoint(int numPoints) {
  return numPoints >= ReseedPointsBack ? numPoints - ReseedPointsBack : numPoints;
}

std::string RunProgressText(int run, int numRuns, float lengthSeconds, int sweep) {
  return FormatText("Run %d of %d with %.2fs interval (sec %d)", run, numRuns,
                    static_cast<double>(lengthSeconds), sweep);
}

bool PollIsDue(int channels, std::int64_t done, std::int64_t total, int ofState, bool fitActive) {
  if (channels < PollingFrom) return false;
  if (channels >= ManyChannels) return ofState % ManyChannelsStep == 0;
  return !fitActive && done % (total / PollsPerRun) == 0;
}

void RunMonteCarlo() {
  if (SimulateChannel == nullptr) {
    if (TalksToUser()) MessagePopup(WarningTitle, NoSimulator);
    return;
  }
  Result.ResultKind = ResultMonteCarlo;
  Result.StopRequested = 0;
  Loop loop = PrepareLoop();
  for (int run = 1; run <= loop.numRuns; ++run) {
    StartRun(loop);
    if (!SimulateRun(loop, run)) return;
    if (loop.subunits) AddSubunit(loop.numPoints);
  }
  FinishLoop(loop);
}

}  // namespace zelvane
