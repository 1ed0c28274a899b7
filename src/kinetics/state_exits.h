// The exits of the states of a scheme at a point of the sweep.
//
// The exits of a state change only when one of their profiles changes. Between two such changes their
// rates, the probabilities of the next states and the exponential of a point are constant. The program
// calculates them when a channel first needs them, and keeps them for all later channels.
//
//   A scheme     ConnectionsOf
//   Its exits    ExitBook  PrepareExits  ForgetExits  ExitsAt  NextDrug
//   For ExitsAt  CompileExits  LearnExits
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "kinetics/scheme_tables.h"
#include "platform/index.h"

namespace zelvane {

inline constexpr float MinRate = 1e-7F;  // 1/s; an exit at or below it is never taken

/// The states that each state can leave to.
struct Connections {
  std::array<int, MaxStates + 1> count{};
  StateTable<int> to{};  // [from][k], k from 1, rising
};

/// Returns the connections of a scheme: the rates above 0 between different states.
Connections ConnectionsOf(const StateTable<float>& rate);

/// A scheme of single channels: the tables of the model, with indices from 1.
struct ChannelTables {
  StateTable<float> rate{};  // 1/s or 1/(M s), [from][to]
  DependenceTables depend;
  std::array<int, MaxStates + 1> connectionCount{};  // 0..MaxConnections
  StateTable<int> connection{};                      // [from][k], k from 1: where it leads, rising
  float temperature = 25.0F;                         // degrees Celsius
};

/// The kind of the exits of a state.
enum class ExitKind : std::uint8_t {
  Isolated,   // nothing leads out of the state: an error of the model
  Constant,   // the rates are constant: the dwell is exponential
  Dependent,  // some rate depends on the stimulus: the dwell is tried point by point
  Shut,       // no rate is above MinRate, or can become so
  Waiting,    // no rate is above MinRate, but a stimulus can open an exit
};

inline constexpr int NeverChanges = 1 << 30;  // a point after every sweep

/// The exits of one state during a constant stimulus. Fills one line of the cache.
struct alignas(64) StateExits {
  // The next state is the first whose bound is above a uniform value, else the last. One exit alone needs no
  // draw. Bounds are 32-bit quotients of the sums of rates.
  std::array<double, MaxConnections - 1> bound{};
  double scaleMs = 0.0;  // -1000 / total rate: times ln u it is a dwell in ms
  double leave = 0.0;    // chance to leave within a point, 1 - exp(-total rate x interval)
  // First later point at which a profile changes that some rate out of the state depends on, also the rate of an
  // exit that is closed now. Without an open exit only the voltage counts: NextDrug finds the drugs.
  int changeAt = NeverChanges;
  ExitKind kind = ExitKind::Isolated;
  std::uint8_t count = 0;
  std::array<std::int8_t, MaxConnections> next{};
};

/// The points at which a set of profiles changes.
struct StimulusSteps {
  unsigned profiles = 0;              // bit k = profile k
  std::vector<std::int32_t> stretch;  // of every point: the number of changes up to it
  int stretches = 1;
};

struct ExitBook {
  // -- Of a simulation --
  ChannelTables tables;
  std::array<std::span<const float>, MaxDrugs + 1> profile{};  // points 0..last
  float intervalMs = 0.0F;
  int last = 0;                                                 // later points hold the stimulus of this one
  std::array<std::vector<std::int32_t>, MaxDrugs + 1> changes;  // points that differ from the one before
  std::vector<StimulusSteps> steps;                  // one for each set of profiles that a state needs
  std::array<std::size_t, MaxStates + 1> stepsOf{};  // index into steps
  std::vector<std::int32_t> drugFrom;                // stretches of points with some drug above 0
  std::vector<std::int32_t> drugUntil;
  // -- Calculated so far --
  std::array<std::vector<std::int32_t>, MaxStates + 1> place{};  // of each stretch in `known`, -1 = not yet
  std::vector<StateExits> known;
  StateExits unkept;  // exits beyond the room of `known`
};

/// Prepares the exits of all states under a stimulus.
///
/// @param profile   volts, then molar; equal lengths, not empty; points beyond `numPoints` are not used
/// @param numPoints points of the sweep, at least 1
ExitBook PrepareExits(const ChannelTables& tables,
                      const std::array<std::span<const float>, MaxDrugs + 1>& profile, float intervalMs,
                      int numPoints);

/// Sets other rates. Keeps dependences and connections.
void ForgetExits(ExitBook& book, const StateTable<float>& rate);

/// Calculates the exits of `state` for a constant part of its stimulus that begins at or before `point`.
StateExits CompileExits(const ExitBook& book, int state, int point);

/// Calculates the exits and keeps them if there is room.
const StateExits& LearnExits(ExitBook& book, int state, int point);

/// Returns the exits of `state` at `point` (from 0). They are valid until `changeAt`.
///
/// The rate of each exit is a float: the rate of the model times the stimulus factor. A rate that is
/// negative or not a number becomes 0. Exits at or below MinRate are left out, with their dependences. The
/// total rate is then the sum of the other exits. But if one of two exits is left out, the total rate stays
/// the sum of both.
inline const StateExits& ExitsAt(ExitBook& book, int state, int point) {
  const auto s = Index(state);
  const StimulusSteps& steps = book.steps[book.stepsOf[s]];
  const auto p = Index(point < book.last ? point : book.last);
  const auto stretch = Index(steps.profiles == 0 ? 0 : steps.stretch[p]);
  const std::vector<std::int32_t>& place = book.place[s];
  if (stretch < place.size() && place[stretch] >= 0) return book.known[Index(place[stretch])];
  return LearnExits(book, state, point);
}

/// Returns the first point at or after `point` at which a drug is above 0; NeverChanges without such a point.
int NextDrug(const ExitBook& book, int point);

}  // namespace zelvane
