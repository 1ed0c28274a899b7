// A kinetic scheme that is prepared for integration, and the stimulus for the integrators.
//
// The right-hand side of the master equation of state c is a sum in fixed order: for every state v the
// inflow y[v] x rate x factor, then minus the outflow to v. Each flow is one 32-bit float. Most rates of a
// scheme are 0. They add 0.0, which changes no bit, so a list of the other terms is made once per run.
// Neighbouring states are in neighbouring lanes, and their k-th terms are added at the same time. The order
// within a state does not change.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kinetics/scheme_tables.h"

namespace zelvane {

inline constexpr int MaxLanes = 24;     // MaxStates, rounded up to whole vectors of 8
inline constexpr int MaxTermRows = 40;  // an inflow and an outflow for each of 20 states
inline constexpr int MaxRates = MaxStates * (MaxStates - 1);
inline constexpr std::size_t MaxTerms = std::size_t{2} * MaxRates;

/// Rows of terms over lanes, in the layout of the vectors.
template <typename T>
struct alignas(64) TermTable {
  std::array<std::array<T, MaxLanes>, MaxTermRows> row{};
};

/// One dependence on the stimulus. Rates with the same dependence share it.
struct FactorKind {
  unsigned drugs = 0;    // bit d = multiplied by the concentration of drug d
  int exponential = -1;  // index into CompiledScheme::coefficient, -1 = no voltage dependence
};

/// A term whose rate depends on the stimulus.
struct FactorSlot {
  int row = 0;
  int lane = 0;
  int kind = 0;
};

// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): one per run; the order is for readers
struct CompiledScheme {
  // -- Lanes: the states that are on, and states that are off but feed one that is on, in rising order --
  int lanes = 0;
  int vectors = 1;                    // vectors of 8 lanes that hold them
  std::array<int, MaxLanes> state{};  // state of each lane
  std::array<bool, MaxLanes> on{};    // occupancies of the lane are stored and tested
  // -- Terms --
  // Gathered: row k holds the k-th term of every lane, from lane `source`. Otherwise every pair of lanes
  // has its terms: row 2v is the inflow from lane v, row 2v + 1 is the outflow to it.
  bool gathered = true;
  int rows = 1;
  TermTable<int> source;
  TermTable<float> rate;  // outflows are negative
  // -- Stimulus --
  unsigned profiles = 0;  // bit p = some factor uses profile p (0 voltage, 1..6 drugs)
  int kinds = 0;
  int slots = 0;
  int coefficients = 0;
  std::array<FactorKind, MaxRates> kind{};
  std::array<FactorSlot, MaxTerms> slot{};
  std::array<double, MaxRates> coefficient{};  // 1/V, each once
};

/// The place of a rate among the terms of a compiled scheme. An outflow holds the negative rate.
struct TermPlace {
  int row = 0;
  int lane = 0;
  int from = 0;
  int to = 0;
  bool inflow = true;
};

/// Compiles the rates other than 0 between the states of `tables`. The diagonal is not used.
/// @param place   at least MaxTerms, or empty: gets the place of each term
/// @param places  their number
CompiledScheme CompileScheme(const SchemeTables& tables, std::span<TermPlace> place, int& places);
CompiledScheme CompileScheme(const SchemeTables& tables);

/// The seven stimulus profiles for an integrator. They are constant during each point.
struct StimulusView {
  std::array<std::span<const float>, MaxDrugs + 1> profile{};  // volts, then molar; equal lengths, not empty
  float intervalMs = 0.01F;                                    // between points, above 0
  int offset = 0;                                              // point at time 0 of the integrator
};

/// Returns the point of the profiles at `t` seconds: trunc(t / (0.001 x interval)) + offset, with the
/// quotient in double. Limits it to the profiles.
int PointIndex(const StimulusView& stimulus, float t);

/// The factors of all terms over a range of points in which the used profiles do not change.
struct StimulusStretch {
  int first = 0;  // points first..end - 1
  int end = 0;
  float endTime =
      0.0F;  // s, the earliest whose point is not below `end`; infinity at the end of the profiles
  std::int64_t lastUse = 0;
  TermTable<float> factor;
};

/// The stretches of a stimulus with their factors, for later sweeps. A scheme with other kinds of factors, or another
/// stimulus, needs an empty book.
struct StretchBook {
  struct Entry {
    int first = 0;
    int end = 0;
    float endTime = 0.0F;
    std::size_t values = 0;  // first of its factors, one a kind
  };
  std::vector<Entry> entries;  // in the order of the points
  std::vector<float> values;
  int offset = 0;  // of the stimulus; the end times count from there
};

/// Empties a book for a stimulus that begins at point `offset`.
inline void ClearBook(StretchBook& book, int offset) {
  book.entries.clear();
  book.values.clear();
  book.offset = offset;
}

/// Most factors in a book; a stimulus with more is calculated anew in part.
inline constexpr std::size_t MaxBookValues = 4'000'000;

/// The last used ranges of points, as many as a step has stages.
struct StimulusCursor {
  std::array<StimulusStretch, 6> stretch;
  std::int64_t uses = 0;
  float volts = 0.0F;  // voltage of the exponentials
  std::array<double, MaxRates> exponential{};
  StretchBook* book = nullptr;  // looked up before a stretch is calculated
  std::size_t page = 0;         // entry of the book that was used last
};

/// Prepares an empty cursor, with a book if there is one.
void StartCursor(StimulusCursor& cursor, const CompiledScheme& scheme, StretchBook* book = nullptr);

/// Returns the range with point `index`. It stays valid during at most five calls for other ranges.
const StimulusStretch& StretchAt(StimulusCursor& cursor, const CompiledScheme& scheme,
                                 const StimulusView& stimulus, int index);

}  // namespace zelvane
