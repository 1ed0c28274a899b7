#include "run/monte_carlo_loop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

#include "dwells/dwell_store.h"
#include "dwells/simulated_dwells.h"
#include "kinetics/monte_carlo.h"
#include "model/model.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "numerics/rounding.h"
#include "run/active_scheme.h"
#include "run/result_store.h"
#include "run/run.h"
#include "run/run_panel.h"
#include "run/window_breath.h"
#include "screen/popups.h"
#include "stimulus/stimulus_store.h"
#include "trace/program_random.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char IsolatedState[] = "Error with model.";
constexpr char TooFast[] =
    "A rate is too fast for the length of the sweep: the time of a channel no longer advances. Lower the "
    "rate or shorten the sweep.";
constexpr char TooManyChannels[] =
    "A run of %d channels cannot be simulated, %d is the most. Lower the number of channels or its STD.";
constexpr char NoChannels[] = "There were no channels to simulate: the number of channels is 0.";
constexpr char Interrupted[] = "Simulation Interrupted by User";

constexpr int ReseedPointsBack = 100;  // a sweep's end may be cut off by the last dwell

/// The settings of a simulation, fixed while it lasts, and how far it has come.
struct Loop {
  Outcome saved = Outcome::Done;  // of the autosaves so far
  Loop() = default;
  Loop(const Loop&) = delete;  // the parts of the simulator refer to each other
  Loop& operator=(const Loop&) = delete;

  bool subunits = false;
  int numRuns = 0;
  int numChannels = 0;
  int numIntervals = 0;
  int numPoints = 0;
  StateTable<float> savedRates{};
  std::array<float, MaxStates + 1> savedStart{};
  bool reachedMonitored = false;

  // -- The simulator --
  ExitBook exits;
  OccupancyCounts occupancy;
  DwellRecorder recorder{};
  ChannelSweep sweep{ProgramRandom, exits, occupancy, recorder};

  // -- The present run --
  int channels = 0;
};

bool TalksToUser() {
  return Model.FitActive == 0;
}

void ReadSettings(Loop& loop) {
  ForceMultiSubunit();
  loop.subunits = Model.MultiSubunit != 0;
  loop.numRuns = loop.subunits ? Model.NumChannels : Model.NumRuns;
  loop.numChannels = loop.subunits ? 1 : Model.NumChannels;
  loop.numIntervals = std::max(0, Model.NumIntervals);
  loop.numPoints = Model.NumPoints;
  loop.savedRates = Model.RateMatrix;
  loop.savedStart = Model.StartOccupancy;
}

void PrepareSimulator(Loop& loop) {
  const ChannelTables tables{Model.RateMatrix, Model.Depend, Result.ConnectionCount, Result.Connection,
                             Model.Temperature};
  std::array<std::span<const float>, MaxDrugs + 1> profile;
  std::copy(Stimulus.Profile.begin(), Stimulus.Profile.end(), profile.begin());
  loop.exits = PrepareExits(tables, profile, Model.ADInterval, loop.numPoints);
  loop.recorder.monitored = Model.StateMonitored;
  loop.recorder.openClass = Result.StateClass;
  loop.recorder.lists = ListsOf(Dwell);
  StoreCounts(loop.recorder.lists, Dwell);
  loop.sweep.numPoints = loop.numPoints;
  loop.sweep.intervalMs = Model.ADInterval;
  loop.sweep.lengthMs = Model.ADInterval * static_cast<float>(loop.numPoints);
  loop.sweep.openState = Model.OpenState;
  if (const BreathHook breathe = WindowBreath()) {
    loop.sweep.breathe = [&loop, breathe](double ofChannel) {
      const auto total = static_cast<double>(std::max<std::int64_t>(1, loop.sweep.total));
      return breathe((static_cast<double>(loop.sweep.done) + ofChannel) / total);
    };
  }
}

void ShowStatistics() {
  if (TalksToUser()) StatisticsChanged.Tell();
}

/// Refused, with a message, when the run has too many channels.
Outcome StartRun(Loop& loop) {
  if (TalksToUser()) ResetProgress();
  const bool drawn = Model.ChannelsGaussian != 0 && !loop.subunits;
  loop.channels =
      ChannelsOfRun(loop.numChannels, drawn ? Model.ChannelsSTD * GaussianNoise(ProgramRandom) : 0.0F);
  if (loop.channels > MaxChannelsOfRun) {
    if (TalksToUser()) MessagePopup(ErrorTitle, FormatText(TooManyChannels, loop.channels, MaxChannelsOfRun));
    return Outcome::Refused;
  }
  if (loop.channels > 0) {
    Result.ChannelUnit = 1.0F / static_cast<float>(loop.subunits ? loop.numRuns : loop.channels);
  }
  Result.EffectiveChannels = static_cast<float>(loop.subunits ? loop.numRuns : loop.channels);
  Dwell.OpenStateExits = Dwell.MonitoredChannels = 0;
  loop.sweep.openStateExits = loop.sweep.monitoredChannels = 0;
  loop.sweep.done = 0;
  loop.sweep.total =
      static_cast<std::int64_t>(loop.channels) * (static_cast<std::int64_t>(loop.numIntervals) + 1);
  return Outcome::Done;
}

/// Shows how far the run has come and lets the user press stop.
RunHook PollOf() {
  if (!TalksToUser()) return {};
  return [](double fraction) {
    ShowProgress(fraction, Result.RunText);
    ProcessSystemEvents();
    return StopAsked();
  };
}

/// What the last channel of a sweep means for its run: Done when the run can go on, else shows why not.
Outcome OutcomeAfter(ChannelOutcome outcome) {
  if (outcome == ChannelOutcome::Unmonitored || outcome == ChannelOutcome::Monitored) return Outcome::Done;
  const Outcome ofRun = outcome == ChannelOutcome::Stopped ? Outcome::Stopped : Outcome::Failed;
  if (!TalksToUser()) return ofRun;
  ResetProgress();
  if (outcome == ChannelOutcome::Stopped) MessagePopup(NoticeTitle, Interrupted);
  if (outcome == ChannelOutcome::Isolated) MessagePopup(NoticeTitle, IsolatedState);
  if (outcome == ChannelOutcome::Stalled) MessagePopup(ErrorTitle, TooFast);
  return ofRun;
}

/// One sweep. Whole or broken off, occupancies, record and statistics are then in order.
Outcome SimulateSweep(Loop& loop) {
  ClearOccupancy(loop.numPoints);
  StartSweep(loop.occupancy, Result.Occupancy, loop.numPoints, loop.channels, Result.ChannelUnit);
  const Outcome outcome =
      OutcomeAfter(SimulateChannels(loop.sweep, loop.channels, Model.StartOccupancy, PollOf()));
  EndSweep(loop.occupancy);
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    Result.OccupancyUsed[s] = std::max(Result.OccupancyUsed[s], loop.occupancy.used[s]);
  }
  EndRecord(loop.recorder);
  StoreCounts(loop.recorder.lists, Dwell);
  Dwell.OpenStateExits = loop.sweep.openStateExits;
  Dwell.MonitoredChannels = loop.sweep.monitoredChannels;
  if (Dwell.MonitoredChannels > 0) loop.reachedMonitored = true;
  return outcome;
}

bool DependsOnDrug(std::size_t from, std::size_t to) {
  for (std::size_t d = 1; d <= MaxDrugs; ++d) {
    if (Model.Depend.Drug[d][from][to] != 0) return true;
  }
  return false;
}

/// Takes the agonists away for the intervals: rates with a voltage dependence alone stay.
void RemoveDrugRates(Loop& loop) {
  for (std::size_t from = 1; from <= MaxStates; ++from) {
    for (std::size_t to = 1; to <= MaxStates; ++to) {
      if (DependsOnDrug(from, to)) Model.RateMatrix[from][to] = 0.0F;
    }
  }
  ForgetExits(loop.exits, Model.RateMatrix);
}

void RestoreRates(Loop& loop) {
  Model.RateMatrix = loop.savedRates;
  ForgetExits(loop.exits, Model.RateMatrix);
}

/// What follows on the first sweep of a run: the trace, and the rates of the intervals.
void FinishFirstSweep(Loop& loop, int run) {
  if (!loop.subunits) ConvertTrace(loop.numRuns != 1 && Model.ShowAllTraces == 0);
  if (loop.numIntervals > 0) RemoveDrugRates(loop);
  if (!loop.subunits) loop.saved = FirstNotDone(loop.saved, TellRunCompleted());
  if (!loop.subunits && TalksToUser()) SeriesRun.Tell(run);
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
  if (TalksToUser()) RunTextChanged.Tell();
}

/// One run: a sweep and, unless it is the last run, its intervals. The simulation is over unless Done.
Outcome SimulateRun(Loop& loop, int run) {
  for (int sweep = 0; sweep <= loop.numIntervals; ++sweep) {
    ShowSweepText(loop, run, sweep);
    if (const Outcome outcome = SimulateSweep(loop); outcome != Outcome::Done) return outcome;
    if (sweep == 0) FinishFirstSweep(loop, run);
    if (Model.ReseedSimulation != 0 || loop.numIntervals > 0) ReseedFromEnd(loop.numPoints);
    if (sweep == loop.numIntervals && sweep > 0) RestoreRates(loop);
    if (run == loop.numRuns) break;
    if (loop.sweep.breathe && loop.sweep.breathe(0.0)) return OutcomeAfter(ChannelOutcome::Stopped);
  }
  return Outcome::Done;
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
  const TraceConversion conversion = ActiveConversion();
  for (std::size_t i = 0; i < trace.size(); ++i) {
    std::size_t filled = 0;
    for (std::size_t k = 0; k < monitored.count; ++k) {
      if (Result.Occupancy[monitored.state[k]][i + 1] == Result.ChannelUnit) ++filled;
    }
    const float conductance = Model.StateConductance[filled];
    const bool current = Model.DisplayUnits == UnitsCurrent;
    trace[i] += current ? OhmicDrive(conversion, static_cast<int>(i) + 1) * conductance : conductance;
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

/// All runs, unless they are broken off.
Outcome SimulateRuns(Loop& loop) {
  for (int run = 1; run <= loop.numRuns; ++run) {
    Outcome outcome = StartRun(loop);
    if (outcome == Outcome::Done) outcome = SimulateRun(loop, run);
    if (outcome != Outcome::Done) return outcome;
    if (loop.subunits) AddSubunit(loop.numPoints);
  }
  return Outcome::Done;
}

void FinishTrace(Loop& loop) {
  if (loop.subunits) {
    if (TalksToUser()) {
      ShowSweepLength();
      TraceToPlot.Tell(true);
    }
    loop.saved = TellRunCompleted();
  }
  if (!loop.reachedMonitored) return;
  BeginTrace(TraceOrigin::Simulation);
}

/// Leaves the stores in order, also after a simulation that was broken off.
void FinishLoop(const Loop& loop) {
  KeepRawOpenTimes(Dwell);
  if (Model.ReseedSimulation == 0) Model.StartOccupancy = loop.savedStart;
  ShowStartOccupancy();
  if (TalksToUser()) SeriesEnds.Tell();
  ShowStatistics();
  ForgetStop();
  if (TalksToUser()) ResetProgress();
}

}  // namespace

int ChannelsOfRun(int numChannels, float deviation) {
  return RoundCount(std::abs(static_cast<double>(numChannels) + static_cast<double>(deviation)));
}

int ReseedPoint(int numPoints) {
  return numPoints - (numPoints >= ReseedPointsBack ? ReseedPointsBack : 1);
}

std::string RunProgressText(int run, int numRuns, float lengthSeconds, int sweep) {
  return FormatText("Run %d of %d with %.2fs interval (sec %d)", run, numRuns,
                    static_cast<double>(lengthSeconds), sweep);
}

Outcome RunMonteCarlo() {
  Result.ResultKind = ResultMonteCarlo;
  ForgetStop();
  Loop loop;
  ReadSettings(loop);
  if (TalksToUser()) SeriesBegins.Tell();
  PrepareSimulator(loop);
  const Outcome outcome = SimulateRuns(loop);
  if (outcome == Outcome::Done) FinishTrace(loop);
  FinishLoop(loop);
  const bool nothingRan = Dwell.SegmentCounter == 1 && !StopAsked();
  if (nothingRan && loop.numChannels == 0 && TalksToUser()) MessagePopup(WarningTitle, NoChannels);
  return FirstNotDone(outcome, loop.saved);
}

}  // namespace zelvane
