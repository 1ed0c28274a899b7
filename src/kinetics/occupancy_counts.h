// Occupancies of a sweep of many equal channels, counted dwell by dwell.
//
// Every channel adds the same unit, at most once per point. So an occupancy is the unit added n times to 0
// in 32-bit floats, and depends only on n. A dwell over points first..end - 1 is marked only at its two
// ends, and the counts of all points are summed once at the end of the sweep. With few channels this sum
// over all points and states would take longer. Then the unit is added directly to the points.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kinetics/fixed_step.h"
#include "kinetics/scheme_tables.h"
#include "platform/index.h"

namespace zelvane {

struct OccupancyCounts {
  bool counting = false;
  int numPoints = 0;  // points 0..numPoints are written
  float unit = 0.0F;
  OccupancyRows rows{};
  std::array<int, MaxStates + 1> used{};  // points of the sweep at and beyond this one hold 0
  std::array<std::vector<std::int32_t>, MaxStates + 1> change;  // channels that enter minus those that leave
  std::vector<float> sum;                                       // n times the unit
};

/// Prepares a sweep of `channels` channels. Each channel adds `unit` to `rows`. The rows must have points
/// 0..numPoints with the value 0.
void StartSweep(OccupancyCounts& counts, const OccupancyRows& rows, int numPoints, int channels, float unit);

/// Makes room for the changes of a state. Its first dwell needs this.
void MakeRoom(OccupancyCounts& counts, std::size_t state);

/// Adds the unit to `state` at points first..end - 1. Leaves out points after the sweep. `first` >= 0.
inline void AddDwell(OccupancyCounts& counts, int state, int first, int end) {
  const int stop = std::min(end, counts.numPoints + 1);
  if (stop <= first) return;
  const auto s = Index(state);
  counts.used[s] = std::max(counts.used[s], stop);
  if (!counts.counting) {
    for (float& point : counts.rows[s].subspan(Index(first), Index(stop - first))) {
      point += counts.unit;
    }
    return;
  }
  if (counts.change[s].empty()) MakeRoom(counts, s);
  ++counts.change[s][Index(first)];
  --counts.change[s][Index(stop)];
}

/// Ends a complete or an interrupted sweep. The rows then hold the occupancies of the channels so far, up
/// to `used`.
void EndSweep(OccupancyCounts& counts);

}  // namespace zelvane
