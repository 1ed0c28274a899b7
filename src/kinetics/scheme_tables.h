// The shape of a kinetic scheme: how many states and drugs there can be, and the tables that describe one.
#pragma once

#include <array>

namespace zelvane {

inline constexpr int MaxStates = 20;      // states are numbered 1..MaxStates
inline constexpr int MaxDrugs = 6;        // drugs are numbered 1..MaxDrugs
inline constexpr int MaxConnections = 5;  // exits of a state that Monte Carlo takes

/// Tables over ordered pairs of states are indexed [from][to] from 1; row and column 0 carry nothing.
template <typename T>
using StateTable = std::array<std::array<T, MaxStates + 1>, MaxStates + 1>;

/// What a rate depends on, for every ordered pair of states.
struct DependenceTables {
  std::array<StateTable<int>, MaxDrugs + 1> Drug{};  // [drug][from][to], not 0 = times that concentration
  StateTable<int> Volt{};         // 1 = depends on voltage; 2 can stand in a file, selects nothing
  StateTable<float> Steepness{};  // elementary charges
  StateTable<float> Range{};      // saved with the model, enters no rate
};

/// A scheme as the engines take it: a view of tables indexed from 1.
struct SchemeTables {
  const StateTable<float>& rate;  // 1/s or 1/(M s), [from][to]
  const DependenceTables& depend;
  const std::array<int, MaxStates + 1>& on;  // not 0 = the state is available for occupancy
  float temperature = 25.0F;                 // degrees Celsius
};

}  // namespace zelvane
