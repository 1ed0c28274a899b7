// Averaging in its plainest form: every place of the arrays, every candidate of an alignment in full.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "analysis/averages.h"

namespace zelvane {

/// The sums of PlainAdd, MaxAveragePoints places each.
struct PlainSums {
  PlainSums();

  std::vector<float> sum, count, norm;
};

/// Adds a sweep of `points` samples, moved left by `shift`. `taken` is subtracted first.
void PlainAdd(PlainSums& sums, std::span<const float> trace, int points, std::int64_t shift, float taken,
              float baseline, float peak);

/// Does the same as AlignToAverage.
int PlainAlign(std::span<const float> trace, float peak, const PlainSums& sums, const AlignSearch& search);

}  // namespace zelvane
