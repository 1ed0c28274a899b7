// Occupancies of a sweep of many equal channels, as they are counted up dwell by dwell.
//
// Every channel adds the same unit, each at most once to a point, so an occupancy is one of few numbers: the
// unit added n times to 0 in 32-bit floats, which depends on n alone. A dwell over points first..end - 1 thus
// needs no more than to be noted at its two ends; the counts at all points are summed once, when the sweep is
// over. With few channels that sum over all points and states would cost more than adding, so there the unit
// is added to the points at once.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kinetics/fixed_step.h"
#include "kinetics/scheme_tables.h"

namespace zelvane {

struct OccupancyCounts {
  bool counting = false;
  int numPoints = 0;  // points 0..numPoints are written
  float unit = 0.0F;
  OccupancyRows rows{};
  std::array<int, MaxStates + 1> used{};  // points of the sweep at and beyond this one hold 0
  std::array<std::vector<std::int32_t>, MaxStates + 1> change;  // channels that come less those that leave
  std::vector<float> sum;                                       // n times the unit
};

/// Prepares a sweep of `channels` channels which adds `unit` for each to `rows`. These hold 0 at points
/// 0..numPoints and have room for them.
void StartSweep(OccupancyCounts& counts, const OccupancyRows& rows, int numPoints, int channels, float unit);

/// Room for the changes of a state, as its first dwell needs it.
void MakeRoom(OccupancyCounts& counts, std::size_t state);

/// Adds the unit to `state` at points first..end - 1, those beyond the sweep left out. `first` >= 0.
inline void AddDwell(OccupancyCounts& counts, int state, int first, int end) {
  const int stop = std::min(end, counts.numPoints + 1);
  if (stop <= first) return;
  const auto s = static_cast<std::size_t>(state);
  counts.used[s] = std::max(counts.used[s], stop);
  if (!counts.counting) {
    for (float& point :
         counts.rows[s].subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(stop - first))) {
      point += counts.unit;
    }
    return;
  }
  if (counts.change[s].empty()) MakeRoom(counts, s);
  ++counts.change[s][static_cast<std::size_t>(first)];
  --counts.change[s][static_cast<std::size_t>(stop)];
}

/// Ends a sweep, whole or broken off: the rows then hold the occupancies of the channels so far. `used` tells
/// up to where.
void EndSweep(OccupancyCounts& counts);

}  // namespace zelvane
