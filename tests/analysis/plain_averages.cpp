#include "analysis/plain_averages.h"

#include <algorithm>

#include "analysis/averages_store.h"
#include "platform/index.h"

namespace zelvane {

PlainSums::PlainSums() : sum(MaxAveragePoints), count(MaxAveragePoints), norm(MaxAveragePoints) {}

void PlainAdd(PlainSums& sums, std::span<const float> trace, int points, std::int64_t shift, float taken,
              float baseline, float peak) {
  for (std::int64_t k = 0; k < MaxAveragePoints; ++k) {
    const std::int64_t i = shift + k;
    if (k >= points || i < 0 || i >= points) continue;
    sums.sum[Index(k)] += trace[Index(i)] - taken;
    sums.count[Index(k)] += 1.0F;
    if (peak - baseline != 0.0F)
      sums.norm[Index(k)] += 100.0F * (trace[Index(i)] - baseline) / (peak - baseline);
  }
}

int PlainAlign(std::span<const float> trace, float peak, const PlainSums& sums, const AlignSearch& search) {
  const int u = std::max(search.point - search.range / 2, 1);
  const int v = std::max(search.anchor - search.width / 2, 1);
  int best = u;
  double smallest = 0.0;
  double d = 0.0;
  for (int c = u; c <= u + search.range - 1; ++c) {
    double e = 0.0;
    for (int j = v; j <= v + search.width - 1; ++j) {
      if (sums.count[Index(j)] != 0.0F && peak != 0.0F) {
        d = 100.0 * (static_cast<double>(trace[Index(c + j - v)]) / static_cast<double>(peak)) -
            static_cast<double>(sums.norm[Index(j)]) / static_cast<double>(sums.count[Index(j)]);
      }
      e += d * d;
    }
    if (c > u && !(e < smallest)) continue;
    smallest = e;
    best = c;
  }
  return best + search.width / 2;
}

}  // namespace zelvane
