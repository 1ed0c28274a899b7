#include "kinetics/simulate.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <optional>
#include <utility>

#include "kinetics/monte_carlo.h"
#include "platform/index.h"

namespace zelvane {
namespace {

SimulationResult Refuse(SimulationFault fault) {
  SimulationResult result;
  result.outcome = Outcome::Refused;
  result.fault = fault;
  return result;
}

/// Returns whether the rows of the states that are on hold the points of the sweep and one behind them, and
/// the times as many steps.
[[maybe_unused]] bool HasRoom(const SchemeTables& scheme, const SimulationSettings& settings,
                              const SimulationRoom& room) {
  const std::size_t values = Index(settings.numPoints) + 2;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (scheme.on[s] != 0 && room.rows[s].size() < values) return false;
  }
  return settings.simulator != Simulator::Adaptive || room.savedTimeMs.size() >= values;
}

/// Marks points below `end` of the states that are on as written.
void MarkUsed(const CompiledScheme& scheme, int end, SimulationResult& result) {
  for (std::size_t lane = 0; lane < Index(scheme.lanes); ++lane) {
    if (scheme.on[lane]) result.used[Index(scheme.state[lane])] = end;
  }
}

/// Returns the compiled form of a scheme: that of the memory, or one of its own in `ofSweep`.
const CompiledScheme& Compiled(const SchemeTables& scheme, const SimulationRoom& room,
                               std::optional<CompiledScheme>& ofSweep) {
  if (room.scheme != nullptr) return PreparedScheme(*room.scheme, scheme);
  return ofSweep.emplace(CompileScheme(scheme));
}

/// Returns the book of the memory for a stimulus that begins at `offset`.
StretchBook* BookOf(const SimulationRoom& room, int offset) {
  if (room.scheme == nullptr) return nullptr;
  StretchBook& book = room.scheme->book;
  if (book.offset != offset) ClearBook(book, offset);
  return &book;
}

SimulationResult RunFixedStep(const SchemeTables& scheme, const StimulusView& stimulus,
                              const SimulationSettings& settings, const SimulationRoom& room,
                              const RunReporter& reporter) {
  SimulationResult result;
  std::optional<CompiledScheme> ofSweep;
  const CompiledScheme& compiled = Compiled(scheme, room, ofSweep);
  const FixedStepRun run{compiled,           stimulus,         settings.start, settings.numPoints,
                         settings.maxStepMs, reporter.breathe, BookOf(room, 0)};
  result.fixedStep = IntegrateFixedStep(run, room.rows, ProgressHook(reporter));
  MarkUsed(compiled, settings.numPoints + 2, result);
  if (result.fixedStep.stopped) {
    result.outcome = Outcome::Stopped;
  } else if (result.fixedStep.reductions == MaxReductions) {
    result.outcome = Outcome::Failed;
    result.fault = SimulationFault::OutOfRange;
  }
  return result;
}

SimulationResult RunAdaptive(const SchemeTables& scheme, const StimulusView& stimulus,
                             const SimulationSettings& settings, const SimulationRoom& room,
                             const RunReporter& reporter) {
  SimulationResult result;
  std::optional<CompiledScheme> ofSweep;
  const CompiledScheme& compiled = Compiled(scheme, room, ofSweep);
  result.offset = FirstActivePoint(scheme, settings.start, stimulus, settings.numPoints);
  StimulusView moved = stimulus;
  moved.offset = result.offset;
  const AdaptiveRun run{compiled,
                        moved,
                        settings.start,
                        settings.numPoints,
                        settings.precision,
                        reporter.breathe,
                        BookOf(room, moved.offset)};
  result.adaptive = IntegrateAdaptive(run, room.savedTimeMs, room.rows, ProgressHook(reporter));
  MarkUsed(compiled, settings.numPoints + 1, result);
  if (result.adaptive.finished) return result;
  result.outcome = result.adaptive.stopped ? Outcome::Stopped : Outcome::Failed;
  if (!result.adaptive.stopped) result.fault = SimulationFault::NotFinished;
  return result;
}

/// Prepares the exits, or only sets the rates of a later sweep. Returns false when a state has too many
/// exits.
bool PrepareChannels(const SchemeTables& scheme, const StimulusView& stimulus, int numPoints,
                     ChannelMemory& memory) {
  if (memory.prepared) {
    const bool sameRates = std::memcmp(&memory.exits.tables.rate, &scheme.rate, sizeof scheme.rate) == 0;
    if (!sameRates) ForgetExits(memory.exits, scheme.rate);
    return true;
  }
  const Connections connections = ConnectionsOf(scheme.rate);
  const auto counts = std::span(connections.count).subspan(1);
  if (*std::max_element(counts.begin(), counts.end()) > MaxConnections) return false;
  const ChannelTables tables{scheme.rate, scheme.depend, connections.count, connections.to,
                             scheme.temperature};
  memory.exits = PrepareExits(tables, stimulus.profile, stimulus.intervalMs, numPoints);
  memory.prepared = true;
  return true;
}

void SetOutcome(ChannelOutcome ended, SimulationResult& result) {
  if (ended == ChannelOutcome::Stopped) result.outcome = Outcome::Stopped;
  if (ended != ChannelOutcome::Isolated && ended != ChannelOutcome::Stalled) return;
  result.outcome = Outcome::Failed;
  result.fault =
      ended == ChannelOutcome::Isolated ? SimulationFault::IsolatedState : SimulationFault::RateTooFast;
}

SimulationResult RunChannels(const SchemeTables& scheme, const StimulusView& stimulus,
                             const SimulationSettings& settings, const SimulationRoom& room,
                             const RunReporter& reporter) {
  assert(room.random != nullptr && room.recorder != nullptr && settings.channels >= 0);
  assert(settings.channelsOfWork == 0 || settings.channelsOfWork >= settings.channels);
  if (settings.channels > MaxChannelsOfRun) return Refuse(SimulationFault::TooManyChannels);
  ChannelMemory ofSweep;
  ChannelMemory& memory = room.memory != nullptr ? *room.memory : ofSweep;
  if (!PrepareChannels(scheme, stimulus, settings.numPoints, memory)) {
    return Refuse(SimulationFault::TooManyExits);
  }
  ChannelSweep sweep{*room.random, memory.exits, memory.occupancy, *room.recorder};
  sweep.numPoints = settings.numPoints;
  sweep.intervalMs = stimulus.intervalMs;
  sweep.lengthMs = stimulus.intervalMs * static_cast<float>(settings.numPoints);
  sweep.openState = settings.openState;
  sweep.done = settings.channelsDone;
  sweep.total = settings.channelsOfWork > 0 ? settings.channelsOfWork : settings.channels;
  sweep.work = memory.work;
  sweep.passed = std::move(memory.passed);
  if (reporter.breathe) {
    sweep.breathe = [&](double ofChannel) {
      return reporter.breathe((static_cast<double>(sweep.done) + ofChannel) /
                              static_cast<double>(sweep.total));
    };
  }
  const float unit =
      settings.channelUnit > 0.0F ? settings.channelUnit : 1.0F / static_cast<float>(settings.channels);
  StartSweep(memory.occupancy, room.rows, settings.numPoints, settings.channels, unit);
  SimulationResult result;
  SetOutcome(SimulateChannels(sweep, settings.channels, settings.start, ProgressHook(reporter)), result);
  EndSweep(memory.occupancy);
  EndRecord(*room.recorder);
  memory.work = sweep.work;
  memory.passed = std::move(sweep.passed);
  result.used = memory.occupancy.used;
  result.openStateExits = sweep.openStateExits;
  result.monitoredChannels = sweep.monitoredChannels;
  result.channelsDone = sweep.done;
  return result;
}

}  // namespace

bool HasLength(int numPoints, float intervalMs) {
  return numPoints >= 1 && intervalMs > 0.0F && std::isfinite(intervalMs * static_cast<float>(numPoints));
}

SimulationResult Simulate(const SchemeTables& scheme, const StimulusView& stimulus,
                          const SimulationSettings& settings, const SimulationRoom& room,
                          const RunReporter& reporter) {
  if (!HasLength(settings.numPoints, stimulus.intervalMs)) return Refuse(SimulationFault::NoLength);
  assert(stimulus.offset == 0 && !stimulus.profile[0].empty());
  assert(HasRoom(scheme, settings, room));
  switch (settings.simulator) {
    case Simulator::Channels:
      return RunChannels(scheme, stimulus, settings, room, reporter);
    case Simulator::Adaptive:
      return RunAdaptive(scheme, stimulus, settings, room, reporter);
    default:
      return RunFixedStep(scheme, stimulus, settings, room, reporter);
  }
}

}  // namespace zelvane
