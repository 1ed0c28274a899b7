// One sweep of a scheme, by any of the three simulators.
//
//   Simulate  HasLength
//
// Reads and writes only the arguments: several threads may simulate at once, each with its own room, stream
// and reporter.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "kinetics/adaptive_step.h"
#include "kinetics/compiled_scheme.h"
#include "kinetics/dwell_recorder.h"
#include "kinetics/fixed_step.h"
#include "kinetics/occupancy_counts.h"
#include "kinetics/scheme_memory.h"
#include "kinetics/scheme_tables.h"
#include "kinetics/state_exits.h"
#include "numerics/random.h"
#include "platform/outcome.h"
#include "platform/run_reporter.h"

namespace zelvane {

enum class Simulator { FixedStep, Channels, Adaptive };

/// The settings of a sweep.
struct SimulationSettings {
  Simulator simulator = Simulator::FixedStep;
  int numPoints = 0;                         // points of the sweep, at least 1
  std::array<float, MaxStates + 1> start{};  // occupancies at time 0
  float maxStepMs = 0.005F;                  // fixed step
  float precision = 0.0005F;                 // adaptive
  // -- Single channels --
  int channels = 1;                 // channels of the sweep; 0 keeps the rows unchanged
  float channelUnit = 0.0F;         // occupancy of one channel; 0 = 1 / channels
  int openState = 0;                // state whose exits are counted
  std::int64_t channelsDone = 0;    // channels of earlier sweeps that count as one work with this one
  std::int64_t channelsOfWork = 0;  // channels of all these sweeps; 0 = channels
};

/// The preparations of a sweep of single channels, for later sweeps with the same stimulus, dependences and
/// number of points. Their rates may differ; connections and dependences are those of the first sweep.
struct ChannelMemory {
  bool prepared = false;
  ExitBook exits;
  OccupancyCounts occupancy;
  std::vector<float> passed{0.0F};  // time of n points
  int work = 0;                     // since the last breath
};

/// The memory for a sweep. The rows of the states have room for numPoints + 2 values, all 0.
struct SimulationRoom {
  OccupancyRows rows{};            // points from 1 (fixed step), steps from 1 (adaptive), points from 0
  std::span<float> savedTimeMs{};  // adaptive: as long as the rows
  // -- Single channels --
  RandomStream* random = nullptr;     // stream of their random values
  DwellRecorder* recorder = nullptr;  // gets their dwells appended
  ChannelMemory* memory = nullptr;    // shared with earlier and later sweeps, if there are any
  // -- Integrators --
  SchemeMemory* scheme = nullptr;  // shared with other sweeps under the same stimulus, if there are any
};

/// The reason for an incomplete or a changed sweep.
enum class SimulationFault {
  None,
  NoLength,         // no points, or no time between them
  TooManyExits,     // single channels: a state has more than MaxConnections exits
  TooManyChannels,  // more than MaxChannelsOfRun
  OutOfRange,       // fixed step: occupancies left their range even with the smallest step
  NotFinished,      // adaptive: no steps before the end were left, or none was possible
  IsolatedState,    // a channel came to a state without exits
  RateTooFast,      // the time of a channel does not advance any more
};

struct SimulationResult {
  Outcome outcome = Outcome::Done;
  SimulationFault fault = SimulationFault::None;
  FixedStepResult fixedStep{};
  AdaptiveResult adaptive{};
  int offset = 0;                         // adaptive: point at which integration started
  std::array<int, MaxStates + 1> used{};  // of each row: this point and all after it are still 0
  // -- Single channels --
  int openStateExits = 0;         // exits in this sweep
  int monitoredChannels = 0;      // that reached a monitored state
  std::int64_t channelsDone = 0;  // channels of this and earlier sweeps
};

/// Returns whether a sweep has points and time between them, and a finite length.
bool HasLength(int numPoints, float intervalMs);

/// Simulates one sweep of `scheme` under `stimulus`, whose offset is 0, into `room`.
///
/// The integrators are IntegrateFixedStep and IntegrateAdaptive; for single channels see SimulateChannels.
/// `reporter` handles progress and stops. The function shows no messages; the result has the reason. NoLength
/// to TooManyChannels refuse the sweep and do not change `room`. A stopped or failed sweep keeps the
/// simulated part.
SimulationResult Simulate(const SchemeTables& scheme, const StimulusView& stimulus,
                          const SimulationSettings& settings, const SimulationRoom& room,
                          const RunReporter& reporter = {});

}  // namespace zelvane
