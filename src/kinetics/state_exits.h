// The ways out of the states of a scheme, as a channel meets them at a point of the sweep.
//
// What a channel in a given state can do depends on the point only through the stimulus, and through those
// profiles alone that its exits look at. While they stand still everything about its exits does too: rates,
// the chances of the next states, the exponential of a point. All of it is worked out when a channel first
// needs it and kept for all channels after it.
//
//   ConnectionsOf  ExitBook  PrepareExits  ForgetExits  ExitsAt  NextDrug
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "kinetics/scheme_tables.h"

namespace zelvane {

inline constexpr float MinRate = 1e-7F;  // 1/s; an exit at or below it is never taken

/// The states that each state can leave to.
struct Connections {
  std::array<int, MaxStates + 1> count{};
  StateTable<int> to{};  // [from][k], k from 1, rising
};

/// Returns the connections of a scheme: the rates above 0 between different states.
Connections ConnectionsOf(const StateTable<float>& rate);

/// What a scheme of single channels is made of: the tables of the model, indexed from 1.
struct ChannelTables {
  StateTable<float> rate{};  // 1/s or 1/(M s), [from][to]
  DependenceTables depend;
  std::array<int, MaxStates + 1> connectionCount{};  // 0..MaxConnections
  StateTable<int> connection{};                      // [from][k], k from 1: where it leads, rising
  float temperature = 25.0F;                         // degrees Celsius
};

/// What keeps a channel in its state.
enum class ExitKind : std::uint8_t {
  Isolated,   // nothing leads out of the state: an error of the model
  Constant,   // the rates are constant: the dwell is exponential
  Dependent,  // some rate depends on the stimulus: the dwell is tried point by point
  Shut,       // no rate is above MinRate, and none can become so
  Waiting,    // none is above MinRate, but a stimulus can open a way out
};

inline constexpr int NeverChanges = 1 << 30;  // a point behind every sweep

/// The exits of one state while the stimulus stands still. One line of the cache.
struct alignas(64) StateExits {
  // The next state is the first whose bound is above a uniform value, else the last; with one exit nothing is
  // drawn. Bounds are 32-bit quotients of the sums of rates.
  std::array<double, MaxConnections - 1> bound{};
  double scaleMs = 0.0;         // -1000 / total rate: times ln u it is a dwell in ms
  double leave = 0.0;           // chance to leave within a point, 1 - exp(-total rate x interval)
  int changeAt = NeverChanges;  // first later point at which a profile that the exits look at is another
  ExitKind kind = ExitKind::Isolated;
  std::uint8_t count = 0;
  std::array<std::int8_t, MaxConnections> next{};
};

/// Where the profiles of one set of profiles change.
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
  // -- Worked out so far --
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

/// Takes other rates. What the rates depend on and the connections stay as they are.
void ForgetExits(ExitBook& book, const StateTable<float>& rate);

/// Works out the exits of `state` in a stretch of its stimulus that begins at or before `point`.
StateExits CompileExits(const ExitBook& book, int state, int point);

/// Works out the exits and keeps them while there is room.
const StateExits& LearnExits(ExitBook& book, int state, int point);

/// The exits of `state` at `point`, from 0. They hold until `changeAt`.
///
/// The rate of each exit is a float: the model's rate times the stimulus factor. One that is negative or no
/// number counts as 0. Exits at or below MinRate are left out, and so is what they depend on; the total rate
/// is then that of the rest, but with two exits of which one is left out it stays the sum of both.
inline const StateExits& ExitsAt(ExitBook& book, int state, int point) {
  const auto s = static_cast<std::size_t>(state);
  const StimulusSteps& steps = book.steps[book.stepsOf[s]];
  const auto p = static_cast<std::size_t>(point < book.last ? point : book.last);
  const auto stretch = static_cast<std::size_t>(steps.profiles == 0 ? 0 : steps.stretch[p]);
  const std::vector<std::int32_t>& place = book.place[s];
  if (stretch < place.size() && place[stretch] >= 0)
    return book.known[static_cast<std::size_t>(place[stretch])];
  return LearnExits(book, state, point);
}

/// First point at or behind `point` at which some drug is above 0, NeverChanges when there is none.
int NextDrug(const ExitBook& book, int point);

}  // namespace zelvane
