// A kinetic scheme made ready for integration, and the stimulus as the integrators look at it.
//
// The right-hand side of the master equation of state c is a sum in fixed order: for every state v the inflow
// y[v] x rate x factor, then minus the outflow to v. Each flow is one 32-bit float. Most rates of a scheme
// are 0 and add 0.0, which changes no bit, so the terms that count are listed once per run. Neighbouring
// states go in neighbouring lanes and their k-th terms are added together: the order within a state stays as
// it is.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "kinetics/scheme_tables.h"

namespace zelvane {

inline constexpr int MaxLanes = 24;     // MaxStates, filled up to whole vectors of 8
inline constexpr int MaxTermRows = 40;  // an inflow and an outflow for each of 20 states
inline constexpr int MaxRates = MaxStates * (MaxStates - 1);
inline constexpr std::size_t MaxTerms = std::size_t{2} * MaxRates;

/// Rows of terms over lanes, in the layout that vectors are loaded from.
template <typename T>
struct alignas(64) TermTable {
  std::array<std::array<T, MaxLanes>, MaxTermRows> row{};
};

/// One way to depend on the stimulus, shared by all rates that have it.
struct FactorKind {
  unsigned drugs = 0;    // bit d = times the concentration of drug d
  int exponential = -1;  // index into CompiledScheme::coefficient, -1 = no voltage dependence
};

/// A term whose rate depends on the stimulus.
struct FactorSlot {
  int row = 0;
  int lane = 0;
  int kind = 0;
};

// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): there is one a run; its order is for readers
struct CompiledScheme {
  // -- Lanes: the states that are on, and states that are off but feed one that is on, in rising order --
  int lanes = 0;
  int vectors = 1;                    // vectors of 8 lanes that hold them
  std::array<int, MaxLanes> state{};  // of each lane
  std::array<bool, MaxLanes> on{};    // occupancies of the lane are stored and tested
  // -- Terms --
  // Gathered: row k holds the k-th term of every lane, taken from lane `source`. Else every pair of lanes has
  // its terms: row 2v the inflow from lane v, row 2v + 1 the outflow to it.
  bool gathered = true;
  int rows = 1;
  TermTable<int> source;
  TermTable<float> rate;  // outflows are negative
  // -- Stimulus --
  unsigned profiles = 0;  // bit p = profile p enters some factor (0 voltage, 1..6 drugs)
  int kinds = 0;
  int slots = 0;
  int coefficients = 0;
  std::array<FactorKind, MaxRates> kind{};
  std::array<FactorSlot, MaxTerms> slot{};
  std::array<double, MaxRates> coefficient{};  // 1/V, each once
};

/// Compiles the rates other than 0 between the states of `tables`. The diagonal is not used.
CompiledScheme CompileScheme(const SchemeTables& tables);

/// The seven stimulus profiles as an integrator sees them: piecewise constant over a point.
struct StimulusView {
  std::array<std::span<const float>, MaxDrugs + 1> profile{};  // volts, then molar; equal lengths, not empty
  float intervalMs = 0.01F;                                    // between points, above 0
  int offset = 0;  // point that the integrator's time 0 stands for
};

/// Point of the profiles at `t` seconds: trunc(t / (0.001 x interval)) + offset, the quotient formed in
/// double, held inside the profiles.
int PointIndex(const StimulusView& stimulus, float t);

/// Factors of all terms over a stretch of points in which no profile that matters changes.
struct StimulusStretch {
  int first = 0;  // points first..end - 1
  int end = 0;
  float endTime =
      0.0F;  // s, the earliest whose point is not below `end`; infinity at the end of the profiles
  std::int64_t lastUse = 0;
  TermTable<float> factor;
};

/// The stretches looked at last: as many as a step has stages.
struct StimulusCursor {
  std::array<StimulusStretch, 6> stretch;
  std::int64_t uses = 0;
  float volts = 0.0F;  // voltage that the exponentials stand for
  std::array<double, MaxRates> exponential{};
};

/// Prepares a cursor: no stretch is known yet.
void StartCursor(StimulusCursor& cursor, const CompiledScheme& scheme);

/// The stretch that holds point `index`. It stays as it is while at most five others are asked for.
const StimulusStretch& StretchAt(StimulusCursor& cursor, const CompiledScheme& scheme,
                                 const StimulusView& stimulus, int index);

}  // namespace zelvane
