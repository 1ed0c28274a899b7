#include "kinetics/monte_carlo.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "platform/index.h"

namespace zelvane {
namespace {

constexpr int PollingFrom = 21;       // fewer channels end before a user can press stop
constexpr int ManyChannels = 1000;    // with so many or more, stops are checked at fixed steps
constexpr int ManyChannelsStep = 50;  // channels of a state
constexpr int PollsPerRun = 20;       // with fewer than ManyChannels

/// The position of a channel.
struct Channel {
  int state = 0;
  float t = 0.0F;  // ms into the sweep
  int point = 0;
};

/// The next dwell of a channel in its present state.
struct ChannelDwell {
  float d = 0.0F;  // ms
  int points = 0;
  int next = 0;        // chosen state; the present one without a choice
  bool moves = false;  // moves to `next`
  bool ends = false;   // ends the sweep
};

int ChooseNext(RandomStream& random, const StateExits& exits) {
  const std::size_t last = exits.count - std::size_t{1};
  if (last == 0) return exits.next[0];
  const double u = UniformRandom(random);
  std::size_t k = 0;
  while (k < last && !(u < exits.bound[k])) ++k;
  return exits.next[k];
}

/// Returns the float sum of `points` intervals.
float Passed(ChannelSweep& sweep, int points) {
  while (sweep.passed.size() <= Index(points)) {
    sweep.passed.push_back(sweep.passed.back() + sweep.intervalMs);
  }
  return sweep.passed[Index(points)];
}

/// Returns the points of a dwell from `channel.point` through the next change of the stimulus.
int PointsToChange(const StateExits& exits, const Channel& channel) {
  return exits.changeAt - channel.point + 1;
}

ChannelDwell DwellAtConstantRates(ChannelSweep& sweep, const StateExits& exits, const Channel& channel) {
  ChannelDwell dwell;
  dwell.next = ChooseNext(sweep.random, exits);
  dwell.d = static_cast<float>(exits.scaleMs * std::log(UniformRandom(sweep.random)));
  dwell.points = std::min(WholePoints(dwell.d, sweep.intervalMs), sweep.numPoints + 1);
  dwell.moves = true;
  dwell.ends = channel.t + dwell.d > sweep.lengthMs;
  const int toChange = PointsToChange(exits, channel);
  if (dwell.points < toChange || channel.t + Passed(sweep, toChange) > sweep.lengthMs) return dwell;
  dwell.points = toChange;  // a closed exit may open; the rest of an exponential dwell is drawn again
  dwell.d = Passed(sweep, toChange);
  dwell.moves = dwell.ends = false;
  return dwell;
}

ChannelDwell DwellPointByPoint(ChannelSweep& sweep, const StateExits& exits, const Channel& channel) {
  ChannelDwell dwell;
  dwell.next = ChooseNext(sweep.random, exits);
  const int unchanged = exits.changeAt - channel.point;
  const double leave = exits.leave;
  int m = 0;
  while (!dwell.moves && m < unchanged) {
    ++m;
    if (UniformRandom(sweep.random) <= leave) {
      dwell.moves = true;
    } else if (channel.t + Passed(sweep, m) > sweep.lengthMs) {
      dwell.moves = dwell.ends = true;
    }
  }
  dwell.points = dwell.moves ? m : m + 1;
  dwell.d = Passed(sweep, dwell.points);
  return dwell;
}

ChannelDwell DwellToTheEnd(const ChannelSweep& sweep, const StateExits& exits, const Channel& channel) {
  ChannelDwell dwell;
  dwell.next = channel.state;
  dwell.points = std::max(0, sweep.numPoints - channel.point);
  dwell.ends = dwell.points < PointsToChange(exits, channel);
  if (dwell.ends) {
    dwell.d = std::max(0.0F, sweep.lengthMs - channel.t);
  } else {
    dwell.points = PointsToChange(exits, channel);
    dwell.d = sweep.intervalMs * static_cast<float>(dwell.points);
  }
  return dwell;
}

ChannelDwell DwellUntilADrug(const ChannelSweep& sweep, const StateExits& exits, const Channel& channel) {
  ChannelDwell dwell;
  const int toDrug = NextDrug(sweep.exits, channel.point) - channel.point + 1;
  const int toStimulus = std::min(toDrug, PointsToChange(exits, channel));
  const int toEnd = std::max(1, sweep.numPoints - channel.point + 1);
  dwell.points = std::min(toStimulus, toEnd);
  dwell.d = sweep.intervalMs * static_cast<float>(dwell.points);
  dwell.next = channel.state;
  dwell.ends = toEnd <= toStimulus;
  return dwell;
}

ChannelDwell TakeDwell(ChannelSweep& sweep, const StateExits& exits, const Channel& channel) {
  switch (exits.kind) {
    case ExitKind::Constant:
      return DwellAtConstantRates(sweep, exits, channel);
    case ExitKind::Dependent:
      return DwellPointByPoint(sweep, exits, channel);
    case ExitKind::Waiting:
      return DwellUntilADrug(sweep, exits, channel);
    default:
      return DwellToTheEnd(sweep, exits, channel);
  }
}

/// The length of the last dwells of a channel, and their start.
struct Pace {
  int dwells = 0;
  double lived = 0.0;  // ms
  float since = 0.0F;  // ms into the sweep
};

constexpr double SlowestClock = 0.25;  // slowest advance of the time, as a share of the length of dwells

/// Adds a dwell of `d` ms that ended at time t. Returns false when the time hardly advances.
bool KeepsPace(Pace& pace, float d, float t) {
  pace.lived += static_cast<double>(d);
  if (++pace.dwells < PaceDwells) return true;
  const bool moves = static_cast<double>(t - pace.since) > SlowestClock * pace.lived;
  pace = {0, 0.0, t};
  return moves;
}

/// Counts the work of a dwell and takes a breath when it is due. Returns true when the user has stopped the
/// run.
bool StoppedInBreath(ChannelSweep& sweep, const StateExits& exits, int points, float t) {
  sweep.work += exits.kind == ExitKind::Dependent ? DwellWork + points : DwellWork;
  if (sweep.work < BreathWork) return false;
  sweep.work = 0;
  return sweep.breathe && sweep.breathe(std::min(1.0, static_cast<double>(t / sweep.lengthMs)));
}

}  // namespace

int ChannelsStartingIn(int channels, float occupancy) {
  const float share = static_cast<float>(channels) * occupancy;
  if (!(share > 0.0F)) return 0;  // also for NaN
  const float whole = std::trunc(share);
  if (whole >= static_cast<float>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
  return static_cast<int>(whole) + (share - whole >= 0.5F ? 1 : 0);
}

bool PollIsDue(int channels, std::int64_t done, std::int64_t total, int ofState) {
  if (channels < PollingFrom) return false;
  if (channels >= ManyChannels) return ofState % ManyChannelsStep == 0;
  return done % (total / PollsPerRun) == 0;
}

int WholePoints(float d, float intervalMs) {
  // Floats near a whole number differ from it by less than 4.8 or more than 5.3 tenths of a millionth; from 8
  // on, no float is so close below a whole number. So this sum in double decides like the text.
  constexpr double HalfAMillionth = 5e-7;
  const double quotient = static_cast<double>(d / intervalMs);
  if (!(quotient < NeverChanges)) return std::isnan(quotient) ? 0 : NeverChanges;
  return static_cast<int>(quotient + HalfAMillionth);
}

ChannelOutcome SimulateChannel(ChannelSweep& sweep, int startState) {
  StartSweepRecord(sweep.recorder);
  Channel channel{startState, 0.0F, 0};
  Pace pace;
  for (bool done = false; !done;) {
    const StateExits& exits = ExitsAt(sweep.exits, channel.state, channel.point);
    if (exits.kind == ExitKind::Isolated) return ChannelOutcome::Isolated;
    const ChannelDwell dwell = TakeDwell(sweep, exits, channel);
    if (channel.state == sweep.openState && dwell.next != channel.state) ++sweep.openStateExits;
    AddDwell(sweep.occupancy, channel.state, channel.point, channel.point + dwell.points);
    RecordDwell(sweep.recorder, channel.state, channel.t, dwell.d);
    channel.t += dwell.d;
    channel.point += dwell.points;
    if (dwell.moves) channel.state = dwell.next;
    done = dwell.ends;
    if (!KeepsPace(pace, dwell.d, channel.t)) return ChannelOutcome::Stalled;
    if (StoppedInBreath(sweep, exits, dwell.points, channel.t)) return ChannelOutcome::Stopped;
  }
  return sweep.recorder.opened ? ChannelOutcome::Monitored : ChannelOutcome::Unmonitored;
}

ChannelOutcome SimulateChannels(ChannelSweep& sweep, int channels,
                                const std::array<float, MaxStates + 1>& start, const RunHook& hook) {
  ChannelOutcome all = ChannelOutcome::Unmonitored;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    const int starting = ChannelsStartingIn(channels, start[s]);
    for (int k = 0; k < starting; ++k) {
      const bool asks = hook && PollIsDue(channels, sweep.done, sweep.total, k);
      if (asks && hook(std::min(1.0, static_cast<double>(sweep.done) / static_cast<double>(sweep.total)))) {
        return ChannelOutcome::Stopped;
      }
      const ChannelOutcome ended = SimulateChannel(sweep, static_cast<int>(s));
      if (ended != ChannelOutcome::Unmonitored && ended != ChannelOutcome::Monitored) return ended;
      if (ended == ChannelOutcome::Monitored) {
        ++sweep.monitoredChannels;
        all = ended;
      }
      ++sweep.done;
    }
  }
  return all;
}

}  // namespace zelvane
