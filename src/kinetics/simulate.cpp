#include "kinetics/simulate.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>

#include "kinetics/monte_carlo.h"

namespace zelvane {
namespace {

SimulationFault WhyRefused(const Connections& connections, const StimulusView& stimulus,
                           const SimulationSettings& settings) {
  const float lengthMs = stimulus.intervalMs * static_cast<float>(settings.numPoints);
  if (settings.numPoints < 1 || !(stimulus.intervalMs > 0.0F) || !std::isfinite(lengthMs)) {
    return SimulationFault::NoLength;
  }
  if (settings.simulator != Simulator::Channels) return SimulationFault::None;
  const auto counts = std::span(connections.count).subspan(1);
  if (*std::max_element(counts.begin(), counts.end()) > MaxConnections) return SimulationFault::TooManyExits;
  if (settings.channels < 1) return SimulationFault::NoChannels;
  if (settings.channels > MaxChannelsOfRun) return SimulationFault::TooManyChannels;
  return SimulationFault::None;
}

void RunFixedStep(const SchemeTables& scheme, const StimulusView& stimulus,
                  const SimulationSettings& settings, const SimulationRoom& room, const RunReporter& reporter,
                  SimulationResult& result) {
  const CompiledScheme compiled = CompileScheme(scheme);
  const FixedStepRun run{compiled,           stimulus,           settings.start,
                         settings.numPoints, settings.maxStepMs, reporter.breathe};
  result.fixedStep = IntegrateFixedStep(run, room.rows, ProgressHook(reporter));
  if (result.fixedStep.stopped) result.outcome = Outcome::Stopped;
  if (result.fixedStep.reductions == MaxReductions) {
    result.outcome = Outcome::Failed;
    result.fault = SimulationFault::OutOfRange;
  }
}

void RunAdaptive(const SchemeTables& scheme, const StimulusView& stimulus, const SimulationSettings& settings,
                 const SimulationRoom& room, const RunReporter& reporter, SimulationResult& result) {
  const CompiledScheme compiled = CompileScheme(scheme);
  result.offset = FirstActivePoint(scheme, settings.start, stimulus, settings.numPoints);
  StimulusView moved = stimulus;
  moved.offset = result.offset;
  const AdaptiveRun run{compiled,           moved,           settings.start, settings.numPoints,
                        settings.precision, reporter.breathe};
  result.adaptive = IntegrateAdaptive(run, room.savedTimeMs, room.rows, ProgressHook(reporter));
  if (result.adaptive.finished) return;
  result.outcome = result.adaptive.stopped ? Outcome::Stopped : Outcome::Failed;
  if (!result.adaptive.stopped) result.fault = SimulationFault::NotFinished;
}

void SetOutcome(ChannelOutcome ended, SimulationResult& result) {
  if (ended == ChannelOutcome::Stopped) result.outcome = Outcome::Stopped;
  if (ended != ChannelOutcome::Isolated && ended != ChannelOutcome::Stalled) return;
  result.outcome = Outcome::Failed;
  result.fault =
      ended == ChannelOutcome::Isolated ? SimulationFault::IsolatedState : SimulationFault::RateTooFast;
}

void RunChannels(const SchemeTables& scheme, const Connections& connections, const StimulusView& stimulus,
                 const SimulationSettings& settings, const SimulationRoom& room, const RunReporter& reporter,
                 SimulationResult& result) {
  assert(room.random != nullptr && room.recorder != nullptr);
  const ChannelTables tables{scheme.rate, scheme.depend, connections.count, connections.to,
                             scheme.temperature};
  ExitBook exits = PrepareExits(tables, stimulus.profile, stimulus.intervalMs, settings.numPoints);
  OccupancyCounts occupancy;
  ChannelSweep sweep{*room.random, exits, occupancy, *room.recorder};
  sweep.numPoints = settings.numPoints;
  sweep.intervalMs = stimulus.intervalMs;
  sweep.lengthMs = stimulus.intervalMs * static_cast<float>(settings.numPoints);
  sweep.openState = settings.openState;
  sweep.total = settings.channels;
  if (reporter.breathe) {
    sweep.breathe = [&](double ofChannel) {
      const auto total = static_cast<double>(std::max<std::int64_t>(1, sweep.total));
      return reporter.breathe((static_cast<double>(sweep.done) + ofChannel) / total);
    };
  }
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    std::fill_n(room.rows[s].begin(), settings.numPoints + 1, 0.0F);
  }
  StartSweep(occupancy, room.rows, settings.numPoints, settings.channels,
             1.0F / static_cast<float>(settings.channels));
  SetOutcome(SimulateChannels(sweep, settings.channels, settings.start, ProgressHook(reporter)), result);
  EndSweep(occupancy);
  EndRecord(*room.recorder);
  result.used = occupancy.used;
  result.openStateExits = sweep.openStateExits;
  result.monitoredChannels = sweep.monitoredChannels;
}

}  // namespace

SimulationResult Simulate(const SchemeTables& scheme, const StimulusView& stimulus,
                          const SimulationSettings& settings, const SimulationRoom& room,
                          const RunReporter& reporter) {
  SimulationResult result;
  const Connections connections = ConnectionsOf(scheme.rate);
  result.fault = WhyRefused(connections, stimulus, settings);
  if (result.fault != SimulationFault::None) {
    result.outcome = Outcome::Refused;
    return result;
  }
  switch (settings.simulator) {
    case Simulator::Channels:
      RunChannels(scheme, connections, stimulus, settings, room, reporter, result);
      break;
    case Simulator::Adaptive:
      RunAdaptive(scheme, stimulus, settings, room, reporter, result);
      break;
    default:
      RunFixedStep(scheme, stimulus, settings, room, reporter, result);
      break;
  }
  return result;
}

}  // namespace zelvane
