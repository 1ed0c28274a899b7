// The limits of a kinetic scheme, and the tables that describe it.
#pragma once

#include <array>

namespace zelvane {

inline constexpr int MaxStates = 20;      // states are numbered 1..MaxStates
inline constexpr int MaxDrugs = 6;        // drugs are numbered 1..MaxDrugs
inline constexpr int MaxConnections = 5;  // most exits of a state in Monte Carlo

/// Returns whether a number is that of a state.
constexpr bool IsState(int number) {
  return number >= 1 && number <= MaxStates;
}

/// A table over ordered pairs of states: [from][to], from 1. Row and column 0 are unused.
template <typename T>
using StateTable = std::array<std::array<T, MaxStates + 1>, MaxStates + 1>;

/// What a rate depends on, for every ordered pair of states.
struct DependenceTables {
  std::array<StateTable<int>, MaxDrugs + 1> Drug{};  // [drug][from][to], not 0 = rate x concentration
  StateTable<int> Volt{};         // 1 = depends on voltage; a file may have 2, which has no effect
  StateTable<float> Steepness{};  // elementary charges
  StateTable<float> Range{};      // only saved with the model
};

/// A scheme for the engines: a view of tables with indices from 1.
struct SchemeTables {
  const StateTable<float>& rate;  // 1/s or 1/(M s), [from][to]
  const DependenceTables& depend;
  const std::array<int, MaxStates + 1>& on;  // not 0 = the state is available for occupancy
  float temperature = 25.0F;                 // degrees Celsius
};

}  // namespace zelvane
