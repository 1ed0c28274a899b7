// Constraints between rates: rate constraints and loops of microscopic reversibility. Data only.
#pragma once

#include <array>

namespace zelvane {

inline constexpr int MaxRateConstraints = 60;
inline constexpr int MaxLoopConstraints = 40;
inline constexpr int MaxLoopStates = 8;

/// One rate that is calculated from another rate.
struct RateConstraint {
  int Enabled = 0;  // not 0 = the row is applied
  int TargetFrom = 1;
  int TargetTo = 1;
  int SourceFrom = 1;
  int SourceTo = 1;
  int Operation = 2;   // 0 source + c, 1 c - source, 2 source x c, 3 c / source
  float Value = 1.0F;  // the constant c
};

/// A cycle of states. One of its rates is set so that the products of both directions are equal.
struct LoopConstraint {
  int Enabled = 0;                             // not 0 = the row is applied
  std::array<int, MaxLoopStates + 1> State{};  // from index 1; the list ends at the first 0
  int RateFrom = 1;
  int RateTo = 1;
};

/// Rows are numbered from 1.
struct ConstraintsStore {
  std::array<RateConstraint, MaxRateConstraints + 1> Rate{};
  std::array<LoopConstraint, MaxLoopConstraints + 1> Loop{};
};

inline ConstraintsStore Constraints;

}  // namespace zelvane
