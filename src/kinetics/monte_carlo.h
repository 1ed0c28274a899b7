// The Monte Carlo simulator: one channel at a time, from time 0 to the end of the sweep.
//
// The method is the exact one for constant rates: the dwell in a state is exponential with the total rate of
// its exits, and the next state is drawn in proportion to their rates (Gillespie 1977, J Phys Chem 81:2340;
// Clay & DeFelice 1983, Biophys J 42:151). Where a rate depends on the stimulus the dwell is tried point by
// point, so that a channel can leave on points only.
//
//   A sweep     ChannelSweep  SimulateChannels
//   Its rules   MaxChannelsOfRun  ChannelsStartingIn  PollIsDue
//   A channel   SimulateChannel  WholePoints
//   Its parts   state_exits.h  occupancy_counts.h  dwell_recorder.h
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "kinetics/dwell_recorder.h"
#include "kinetics/occupancy_counts.h"
#include "kinetics/state_exits.h"
#include "numerics/random.h"
#include "platform/run_reporter.h"

namespace zelvane {

/// The result of one sweep of one channel.
enum class ChannelOutcome {
  Unmonitored,  // the channel was never in a monitored state
  Monitored,    // it reached one
  Isolated,     // it came to a state without connections: an error of the model
  Stalled,      // its dwells are too short to advance a 32-bit time
  Stopped,      // the user has stopped the run
};

/// Most channels of a sweep. An occupancy is a 32-bit sum of one unit per channel, and further channels would
/// not change it any more.
inline constexpr int MaxChannelsOfRun = 1 << 24;

/// Returns the channels that start in a state of the given occupancy: the product, rounded half up; 0 for a
/// product below 0.
int ChannelsStartingIn(int channels, float occupancy);

/// Returns whether to check for a stop before channel `ofState` (from 0) of a state, with `done` of `total`
/// channels simulated. Never with 20 channels or fewer; below 1000 at every 20th part of the total; from 1000
/// on at every 50th channel of a state.
bool PollIsDue(int channels, std::int64_t done, std::int64_t total, int ofState);

inline constexpr int PaceDwells = 16384;  // dwells of a channel during which its time must advance

// Between two calls of ChannelSweep::breathe, counted over all channels: up to some milliseconds. A point at
// which a number is drawn is 1, a dwell DwellWork.
inline constexpr int BreathWork = 1 << 19;
inline constexpr int DwellWork = 32;

/// The data that the channels of a sweep share.
struct ChannelSweep {
  RandomStream& random;
  ExitBook& exits;
  OccupancyCounts& occupancy;
  DwellRecorder& recorder;
  int numPoints = 0;
  float intervalMs = 0.0F;
  float lengthMs = 0.0F;        // interval x points, finite
  int openState = 0;            // state whose exits are counted
  int openStateExits = 0;       // counted so far
  int monitoredChannels = 0;    // channels that reached a monitored state so far
  std::int64_t done = 0;        // channels simulated so far
  std::int64_t total = 0;       // channels to simulate, of all sweeps that count as one work
  BreathHook breathe{};         // may be empty; gets the finished part of the channel
  int work = 0;                 // since the last breath
  std::vector<float> passed{};  // n intervals, each addition rounded to a float; at least 0 intervals
};

/// Simulates one channel that starts in `startState`. Its dwells go to the recorder, which also begins a new
/// segment, and to the occupancies.
///
/// Each dwell begins with the choice of the next state: where two or more exits can be taken, one uniform
/// value u chooses the first exit whose sum of rates up to it, over the total rate, is above u. Then:
///
/// - Constant rates: a second u gives d = -1000 / total x ln u ms, formed in double and rounded to a float.
///   The dwell covers WholePoints of it. The rest is not part of the points, so each dwell can shift the
///   points against the time by up to one point. When a profile changes before the end of the dwell, and the
///   rate of a closed exit depends on it, the dwell ends with the first changed point, and the channel chooses
///   its next state again.
/// - Rates that depend on the stimulus: one u for each point. The channel leaves at the first u that is at
///   most 1 - exp(-total x interval / 1000). When a profile has changed on which some rate out of the state
///   depends, the channel stays for this point without a draw and chooses its next state again.
/// - No exit above MinRate: the channel stays to the end. If a stimulus can open an exit, it stays up to and
///   including the first point at which a drug is above 0, or the voltage has changed on which some rate out of
///   the state depends. There is no draw.
///
/// A dwell of constant rates that continues after the end is recorded in full; occupancies end at the last
/// point. An exit of the open state counts for every dwell with a chosen next state, even when the stimulus
/// then shortens this dwell.
///
/// The time is a 32-bit sum. When rounding loses more than three quarters of the length of PaceDwells
/// dwells, the channel would hardly advance, and the run ends.
ChannelOutcome SimulateChannel(ChannelSweep& sweep, int startState);

/// Simulates the channels of a sweep one after the other, sorted by the state that they start in. Calls
/// `hook` when PollIsDue. Returns Monitored or Unmonitored when all are done, else the outcome of the
/// interrupted channel.
///
/// @param start  proportion of the channels in each state at time 0
ChannelOutcome SimulateChannels(ChannelSweep& sweep, int channels,
                                const std::array<float, MaxStates + 1>& start, const RunHook& hook);

/// Returns the whole points in `d` ms: the integer part of d / interval, a float, written with six decimals.
/// Writing rounds, so a quotient less than half a millionth below a whole number counts as that number. At
/// most NeverChanges.
int WholePoints(float d, float intervalMs);

}  // namespace zelvane
