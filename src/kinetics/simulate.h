// One sweep of a scheme, by any of the three simulators.
//
//   Simulate
//
// Reads and writes only the arguments: several threads may simulate at once, each with its own room, stream
// and reporter.
#pragma once

#include <array>
#include <span>

#include "kinetics/adaptive_step.h"
#include "kinetics/compiled_scheme.h"
#include "kinetics/dwell_recorder.h"
#include "kinetics/fixed_step.h"
#include "kinetics/scheme_tables.h"
#include "numerics/random.h"
#include "platform/outcome.h"
#include "platform/run_reporter.h"

namespace zelvane {

enum class Simulator { FixedStep, Channels, Adaptive };

/// The settings of a sweep.
struct SimulationSettings {
  Simulator simulator = Simulator::FixedStep;
  int numPoints = 0;                         // of the sweep, at least 1
  std::array<float, MaxStates + 1> start{};  // occupancies at time 0
  float maxStepMs = 0.005F;                  // fixed step
  float precision = 0.0005F;                 // adaptive
  int channels = 1;                          // single channels of the sweep
  int openState = 0;                         // state whose exits are counted
};

/// The memory for a sweep. The rows of the states have room for numPoints + 2 values.
struct SimulationRoom {
  OccupancyRows rows{};               // points from 1 (fixed step), steps from 1 (adaptive), points from 0
  std::span<float> savedTimeMs{};     // adaptive: as long as the rows
  RandomStream* random = nullptr;     // single channels: stream of their random values
  DwellRecorder* recorder = nullptr;  // single channels: gets their dwells appended
};

/// The reason for an incomplete or a changed sweep.
enum class SimulationFault {
  None,
  NoLength,         // no points, or no time between them
  NoChannels,       // no single channel
  TooManyExits,     // single channels: a state has more than MaxConnections exits
  TooManyChannels,  // more than MaxChannelsOfRun
  OutOfRange,       // fixed step: occupancies left their range even with the smallest step
  NotFinished,      // adaptive: the steps were used up before the end
  IsolatedState,    // a channel came to a state without exits
  RateTooFast,      // the time of a channel does not advance any more
};

struct SimulationResult {
  Outcome outcome = Outcome::Done;
  SimulationFault fault = SimulationFault::None;
  FixedStepResult fixedStep{};
  AdaptiveResult adaptive{};
  int offset = 0;                         // adaptive: point at which integration started
  std::array<int, MaxStates + 1> used{};  // single channels: this point and all after it are 0
  int openStateExits = 0;
  int monitoredChannels = 0;  // channels that reached a monitored state
};

/// Simulates one sweep of `scheme` under `stimulus`, whose offset is 0, into `room`.
///
/// The integrators are IntegrateFixedStep and IntegrateAdaptive; for single channels see SimulateChannel.
/// Their occupancies add up to 1; rows are set to 0 first. `reporter` handles progress and stops. The
/// function shows no messages; the result has the reason. NoLength to TooManyChannels refuse the sweep and do
/// not change `room`.
SimulationResult Simulate(const SchemeTables& scheme, const StimulusView& stimulus,
                          const SimulationSettings& settings, const SimulationRoom& room,
                          const RunReporter& reporter = {});

}  // namespace zelvane
