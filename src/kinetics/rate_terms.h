// The right-hand side of the master equation over the lanes of a compiled scheme.
#pragma once

#include <cstddef>

#include "kinetics/compiled_scheme.h"
#include "kinetics/lanes.h"
#include "platform/index.h"

namespace zelvane {

/// Calculates dydt of all lanes: (y x rate) x factor, term after term, each a 32-bit float. W is the number
/// of vectors. Gathered selects the layout of the terms.
///
/// The sum starts with the first term instead of 0.0. This can only change the sign of a zero sum. Adding 0
/// of either sign to an occupancy gives the same occupancy, because an occupancy is never -0 (see
/// StartLanes).
template <int W, bool Gathered>
ZELVANE_INLINE void Derivatives(const CompiledScheme& scheme, const TermTable<float>& factor,
                                const Lanes (&y)[W], Lanes (&dydt)[W]) {
  const auto flow = [&](const Lanes& from, std::size_t row, std::size_t w) ZELVANE_INLINE_LAMBDA {
    const std::size_t lane = w * LanesPerVector;
    return (from * LoadLanes<Lanes>(&scheme.rate.row[row][lane])) * LoadLanes<Lanes>(&factor.row[row][lane]);
  };
  const auto rows = Index(scheme.rows);
  if constexpr (Gathered) {
    const auto picked = [&](std::size_t row, std::size_t w) ZELVANE_INLINE_LAMBDA {
      return Pick(y, LoadLanes<LaneIndex>(&scheme.source.row[row][w * LanesPerVector]));
    };
    for (std::size_t w = 0; w < W; ++w) dydt[w] = flow(picked(0, w), 0, w);
    for (std::size_t row = 1; row < rows; ++row) {
      for (std::size_t w = 0; w < W; ++w) dydt[w] = dydt[w] + flow(picked(row, w), row, w);
    }
  } else {
    alignas(32) float occupancy[W * LanesPerVector];
    for (std::size_t w = 0; w < W; ++w) {
      StoreLanes(occupancy + w * LanesPerVector, y[w]);
      dydt[w] = Spread(0.0F);
    }
    for (std::size_t row = 0; row < rows; row += 2) {
      const Lanes other = Spread(occupancy[row / 2]);
      for (std::size_t w = 0; w < W; ++w) {
        dydt[w] = (dydt[w] + flow(other, row, w)) + flow(y[w], row + 1, w);
      }
    }
  }
}

/// Load W vectors from the lanes of a state vector, and store them.
template <int W>
ZELVANE_INLINE void Load(const float* from, Lanes (&y)[W]) {
  for (std::size_t w = 0; w < W; ++w) y[w] = LoadLanes<Lanes>(from + w * LanesPerVector);
}
template <int W>
ZELVANE_INLINE void Store(float* to, const Lanes (&y)[W]) {
  for (std::size_t w = 0; w < W; ++w) StoreLanes(to + w * LanesPerVector, y[w]);
}

/// Copies the occupancies `start` (index: state) into lanes. Adds 0, which changes -0 to 0.
inline void StartLanes(const CompiledScheme& scheme, const std::array<float, MaxStates + 1>& start,
                       float* y) {
  for (std::size_t lane = 0; lane < MaxLanes; ++lane) {
    y[lane] = lane < Index(scheme.lanes) ? start[Index(scheme.state[lane])] + 0.0F : 0.0F;
  }
}

}  // namespace zelvane
