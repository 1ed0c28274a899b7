#include "run/monte_carlo_loop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

#include "dwells/dwell_store.h"
#include "dwells/simulated_dwells.h"
#include "kinetics/monte_carlo.h"
#include "kinetics/simulate.h"
#include "model/model.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "numerics/rounding.h"
#include "run/active_scheme.h"
#include "run/result_store.h"
#include "run/run.h"
#include "screen/popups.h"
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
constexpr char NoRuns[] = "There was nothing to simulate: the number of runs is %d.";

constexpr int ReseedPointsBack = 100;  // the last dwell may be cut off by the end of a sweep

/// A simulation: its settings, which do not change during it, and its progress.
struct ChannelSeries {
  const RunReporter& reporter;
  RunReporter withText{};  // the same, with the text of the run beside its progress
  bool subunits = false;
  int numRuns = 0;
  int numChannels = 0;
  int numIntervals = 0;
  StateTable<float> savedRates{};
  std::array<float, MaxStates + 1> savedStart{};

  // -- The simulator --
  StimulusView stimulus{};
  SimulationSettings sweep{};  // settings of the next sweep
  ChannelMemory memory{};
  DwellRecorder recorder{};

  // -- Results --
  bool reachedMonitored = false;
  Outcome saved = Outcome::Done;  // outcome of the autosaves
};

void ReadSettings(ChannelSeries& series) {
  ForceMultiSubunit();
  series.subunits = Model.MultiSubunit != 0;
  series.numRuns = series.subunits ? Model.NumChannels : Model.NumRuns;
  series.numChannels = series.subunits ? 1 : Model.NumChannels;
  series.numIntervals = std::max(0, Model.NumIntervals);
  series.savedRates = Model.RateMatrix;
  series.savedStart = Model.StartOccupancy;
}

void PrepareSimulator(ChannelSeries& series) {
  series.withText = series.reporter;
  if (series.reporter.progress) {
    series.withText.progress = [&reporter = series.reporter](double fraction, std::string_view) {
      reporter.progress(fraction, Result.RunText);
    };
  }
  series.stimulus = ActiveStimulus();
  series.sweep.simulator = Simulator::Channels;
  series.sweep.numPoints = Model.NumPoints;
  series.sweep.openState = Model.OpenState;
  series.recorder.monitored = Model.StateMonitored;
  series.recorder.openClass = Result.StateClass;
  series.recorder.lists = ListsOf(Dwell);
  StoreCounts(series.recorder.lists, Dwell);
}

/// Begins a run. When it has too many channels, shows a message and returns Refused.
Outcome StartRun(ChannelSeries& series) {
  ClearProgress(series.reporter);
  const bool drawn = Model.ChannelsGaussian != 0 && !series.subunits;
  const int channels =
      ChannelsOfRun(series.numChannels, drawn ? Model.ChannelsSTD * GaussianNoise(ProgramRandom) : 0.0F);
  if (channels > MaxChannelsOfRun) {
    Tell(series.reporter, ErrorTitle, FormatText(TooManyChannels, channels, MaxChannelsOfRun));
    return Outcome::Refused;
  }
  const auto ofTrace = static_cast<float>(series.subunits ? series.numRuns : channels);
  if (channels > 0) Result.ChannelUnit = 1.0F / ofTrace;
  Result.EffectiveChannels = ofTrace;
  Dwell.OpenStateExits = Dwell.MonitoredChannels = 0;
  series.sweep.channels = channels;
  series.sweep.channelUnit = Result.ChannelUnit;
  series.sweep.channelsDone = 0;
  series.sweep.channelsOfWork =
      static_cast<std::int64_t>(channels) * (static_cast<std::int64_t>(series.numIntervals) + 1);
  return Outcome::Done;
}

void TellStopped(const RunReporter& reporter) {
  ClearProgress(reporter);
  Tell(reporter, NoticeTitle, RunInterrupted);
}

/// Shows the reason for an incomplete sweep.
void TellWhy(const SimulationResult& result, const RunReporter& reporter) {
  if (result.outcome == Outcome::Stopped) TellStopped(reporter);
  if (result.outcome != Outcome::Failed) return;
  ClearProgress(reporter);
  if (result.fault == SimulationFault::IsolatedState) Tell(reporter, NoticeTitle, IsolatedState);
  if (result.fault == SimulationFault::RateTooFast) Tell(reporter, ErrorTitle, TooFast);
}

/// Simulates one sweep. Afterwards occupancies, record and statistics are valid, even if it was interrupted.
Outcome SimulateSweep(ChannelSeries& series) {
  ClearOccupancy(series.sweep.numPoints);
  series.sweep.start = Model.StartOccupancy;
  SimulationRoom room;
  room.rows = Result.Occupancy;
  room.random = &ProgramRandom;
  room.recorder = &series.recorder;
  room.memory = &series.memory;
  const SimulationResult result =
      Simulate(ActiveTables(), series.stimulus, series.sweep, room, series.withText);
  series.sweep.channelsDone = result.channelsDone;
  RaiseOccupancyUsed(result.used);
  StoreCounts(series.recorder.lists, Dwell);
  Dwell.OpenStateExits += result.openStateExits;
  Dwell.MonitoredChannels += result.monitoredChannels;
  if (Dwell.MonitoredChannels > 0) series.reachedMonitored = true;
  TellWhy(result, series.reporter);
  return result.outcome;
}

/// Returns whether the user stops between two sweeps.
bool StopsBetweenSweeps(const ChannelSeries& series) {
  if (!series.reporter.breathe) return false;
  const auto total = static_cast<double>(std::max<std::int64_t>(1, series.sweep.channelsOfWork));
  return series.reporter.breathe(static_cast<double>(series.sweep.channelsDone) / total);
}

bool DependsOnDrug(std::size_t from, std::size_t to) {
  for (std::size_t d = 1; d <= MaxDrugs; ++d) {
    if (Model.Depend.Drug[d][from][to] != 0) return true;
  }
  return false;
}

/// Removes the agonists for the intervals; rates that depend only on voltage stay.
void RemoveDrugRates() {
  for (std::size_t from = 1; from <= MaxStates; ++from) {
    for (std::size_t to = 1; to <= MaxStates; ++to) {
      if (DependsOnDrug(from, to)) Model.RateMatrix[from][to] = 0.0F;
    }
  }
}

/// Finishes the first sweep of a run: makes the trace and sets the rates of the intervals.
void FinishFirstSweep(ChannelSeries& series, int run) {
  const RunReporter& reporter = series.reporter;
  if (!series.subunits) ConvertTrace(series.numRuns != 1 && Model.ShowAllTraces == 0, reporter);
  if (series.numIntervals > 0) RemoveDrugRates();
  if (series.subunits) return;
  series.saved = FirstNotDone(series.saved, TellRunCompleted(reporter));
  if (!IsSilent(reporter)) SeriesRun.Tell(run);
}

void ReseedFromEnd(const ChannelSeries& series) {
  const auto point = static_cast<std::size_t>(ReseedPoint(series.sweep.numPoints));
  for (std::size_t state = 1; state <= MaxStates; ++state) {
    Model.StartOccupancy[state] = Result.Occupancy[state][point];
  }
  if (!IsSilent(series.reporter)) StartOccupancyChanged.Tell();
}

void ShowSweepText(const ChannelSeries& series, int run, int sweep) {
  const float lengthMs = Model.ADInterval * static_cast<float>(series.sweep.numPoints) *
                         (1.0F + static_cast<float>(series.numIntervals));
  Result.RunText = RunProgressText(run, series.numRuns, lengthMs / 1000.0F, sweep);
  if (!IsSilent(series.reporter)) RunTextChanged.Tell();
}

/// Simulates one run: a sweep and, except in the last run, its intervals. The simulation ends unless this
/// returns Done.
Outcome SimulateRun(ChannelSeries& series, int run) {
  for (int sweep = 0; sweep <= series.numIntervals; ++sweep) {
    ShowSweepText(series, run, sweep);
    if (const Outcome outcome = SimulateSweep(series); outcome != Outcome::Done) return outcome;
    if (sweep == 0) FinishFirstSweep(series, run);
    if (Model.ReseedSimulation != 0 || series.numIntervals > 0) ReseedFromEnd(series);
    if (sweep == series.numIntervals && sweep > 0) Model.RateMatrix = series.savedRates;
    if (run == series.numRuns) break;
    if (StopsBetweenSweeps(series)) {
      TellStopped(series.reporter);
      return Outcome::Stopped;
    }
  }
  return Outcome::Done;
}

/// A list of the monitored states.
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

/// Adds the conductance or current of one subunit. Counts the monitored states that the subunit fills at each
/// point; the count is the number of the state with the conductance (element 0 if there are no such states).
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

/// Simulates all runs, unless one is interrupted.
Outcome SimulateRuns(ChannelSeries& series) {
  for (int run = 1; run <= series.numRuns; ++run) {
    Outcome outcome = StartRun(series);
    if (outcome == Outcome::Done) outcome = SimulateRun(series, run);
    if (outcome != Outcome::Done) return outcome;
    if (series.subunits) AddSubunit(series.sweep.numPoints);
  }
  return Outcome::Done;
}

void FinishTrace(ChannelSeries& series) {
  if (series.subunits) {
    if (!IsSilent(series.reporter)) TraceToPlot.Tell(true);
    series.saved = TellRunCompleted(series.reporter);
  }
  if (!series.reachedMonitored) return;
  BeginTrace(TraceOrigin::Simulation);
}

/// Makes the stores valid, even after an interrupted simulation.
void FinishSeries(const ChannelSeries& series) {
  KeepRawOpenTimes(Dwell);
  if (Model.ReseedSimulation == 0) Model.StartOccupancy = series.savedStart;
  if (!IsSilent(series.reporter)) {
    StartOccupancyChanged.Tell();
    SeriesEnds.Tell();
    StatisticsChanged.Tell();
  }
  Finish(series.reporter);
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

Outcome RunMonteCarlo(const RunReporter& reporter) {
  Result.ResultKind = ResultMonteCarlo;
  ChannelSeries series{.reporter = reporter};
  ReadSettings(series);
  Result.OfSubunits = series.subunits ? 1 : 0;
  if (!IsSilent(reporter)) SeriesBegins.Tell();
  PrepareSimulator(series);
  const Outcome outcome = SimulateRuns(series);
  const bool ran = series.numRuns >= 1;
  if (outcome == Outcome::Done && ran) FinishTrace(series);
  FinishSeries(series);
  if (!ran && !series.subunits) {
    if (!IsSilent(reporter)) Note(FormatText(NoRuns, series.numRuns));
    return Outcome::Refused;
  }
  const bool nothingRan = Dwell.SegmentCounter == 1;
  if (nothingRan && (!ran || series.numChannels == 0)) Tell(reporter, WarningTitle, NoChannels);
  return FirstNotDone(outcome, series.saved);
}

}  // namespace zelvane
