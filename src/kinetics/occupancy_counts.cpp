#include "kinetics/occupancy_counts.h"

#include "platform/index.h"

namespace zelvane {
namespace {

/// From this number of channels on counting is quicker than adding: a count takes as long as about thirty
/// additions.
constexpr int CountingFrom = 32;

/// Returns n times the unit, each addition rounded to a float.
float Sum(OccupancyCounts& counts, std::int32_t n) {
  while (counts.sum.size() <= Index(n)) {
    counts.sum.push_back(counts.sum.back() + counts.unit);
  }
  return counts.sum[Index(n)];
}

void SumUp(OccupancyCounts& counts, std::size_t state) {
  std::vector<std::int32_t>& change = counts.change[state];
  const auto end = Index(counts.used[state]);
  std::int32_t channels = 0;
  for (std::size_t p = 0; p < end; ++p) {
    channels += change[p];
    counts.rows[state][p] = Sum(counts, channels);
  }
  std::fill_n(change.begin(), end + 1, 0);
}

}  // namespace

void StartSweep(OccupancyCounts& counts, const OccupancyRows& rows, int numPoints, int channels, float unit) {
  if (counts.numPoints != numPoints) {
    for (auto& change : counts.change) change.clear();
  }
  if (counts.sum.empty() || counts.unit != unit) counts.sum.assign(1, 0.0F);
  counts.counting = channels >= CountingFrom;
  counts.numPoints = numPoints;
  counts.unit = unit;
  counts.rows = rows;
  counts.used.fill(0);
}

void MakeRoom(OccupancyCounts& counts, std::size_t state) {
  counts.change[state].assign(Index(counts.numPoints) + 2, 0);
}

void EndSweep(OccupancyCounts& counts) {
  if (!counts.counting) return;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (counts.used[s] > 0) SumUp(counts, s);
  }
  counts.counting = false;  // later dwells are added to finished rows
}

}  // namespace zelvane
