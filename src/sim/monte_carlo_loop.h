// The loop over runs, intervals and channels of a Monte Carlo simulation.
//
//   The loop       RunMonteCarlo
//   Its rules      ChannelsOfRun  ChannelsStartingIn  ReseedPoint  RunProgressText  PollIsDue
//   The simulator  SimulateChannel
#pragma once

#include <cstdint>
#include <string>

namespace zelvane {

/// What one sweep of one channel came to.
enum class ChannelOutcome {
  Unmonitored,  // the channel was never in a monitored state
  Monitored,    // it reached one
  Failed,       // it cannot go on; the user has been told, and the whole run ends
};

/// Simulates one channel from time 0 to the end of the sweep, starting in `startState`, and adds
/// `Result.ChannelUnit` to `Result.Occupancy` wherever it dwells, keeping `Result.OccupancyUsed` in step.
using ChannelSimulator = ChannelOutcome (*)(int startState);

/// The simulator of single channels. This version has none: a Monte Carlo run then tells the user and ends.
inline ChannelSimulator SimulateChannel = nullptr;

/// Runs `Model.NumRuns` runs, each followed by `Model.NumIntervals` sweeps without drug-dependent rates (the
/// last run by none). With `Model.MultiSubunit` each of `Model.NumChannels` subunits takes the place of a
/// run, and their sum is the trace.
///
/// Reads:   the run settings of `Model`, `Model.RateMatrix` and `Model.StartOccupancy` as prepared.
/// Writes:  `Result.Occupancy`, `Result.EffectiveChannels`, `Result.ChannelUnit`, `Result.RunText`, the
/// trace,
///          `Model.StartOccupancy` with `ReseedSimulation`; `Trace.TraceValid` 1 once a channel has reached a
///          monitored state.
/// Tells:   "Simulation Interrupted by User" under "!" when stopped; arrays then stay as they are.
void RunMonteCarlo();

/// Channels of a run: |numChannels + deviation| through two decimals of text.
int ChannelsOfRun(int numChannels, float deviation);

/// Channels that start in a state of the given occupancy: the product, rounded half up. None below 0.
int ChannelsStartingIn(int channels, float occupancy);

/// The point whose occupancies start the next sweep: 100 points before the end, or the last of a shorter run.
int ReseedPoint(int numPoints);

/// "Run 1 of 3 with 0.20s interval (sec 0)".
std::string RunProgressText(int run, int numRuns, float lengthSeconds, int sweep);

/// Whether the user is asked for a stop before channel `ofState` (from 0) of a state, with `done` of `total`
/// channels simulated. Never with 20 channels or fewer, at every 20th part of the total below 1000 unless a
/// fit runs, at every 50th channel of a state from 1000 on.
bool PollIsDue(int channels, std::int64_t done, std::int64_t total, int ofState, bool fitActive);

}  // namespace zelvane
