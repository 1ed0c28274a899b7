#include "analysis/shown_counts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "model/model_store.h"
#include "numerics/rounding.h"

namespace zelvane {
namespace {

/// Largest relative error of a quotient of two 32-bit floats for decimals such as 2 ms and 0.001 ms. The
/// quotient can miss the whole number that the user means by so much.
constexpr double FloatQuotientError = 1.5e-7;
constexpr double LargestCorrection = 0.25;  // samples

constexpr std::int64_t SpareSamples = 10;  // kept free after a stretch that was cut

}  // namespace

double CountToMs(double count) {
  return static_cast<double>(static_cast<float>(count) * Model.ADInterval);
}

double MsToCount(double ms) {
  if (Model.ADInterval == 0.0F) return std::nan("");
  const double count = ms / static_cast<double>(Model.ADInterval);
  return std::trunc(count + std::clamp(count * FloatQuotientError, -LargestCorrection, LargestCorrection));
}

void CutStretch(float startMs, int& count) {
  const float interval = Model.ADInterval;
  const float end = startMs + static_cast<float>(count) * interval;
  if (!(end > static_cast<float>(Model.NumPoints) * interval)) return;
  const std::int64_t room =
      static_cast<std::int64_t>(Model.NumPoints) - WholeSamples(startMs / interval) - SpareSamples;
  count = static_cast<int>(std::max<std::int64_t>(room, 0));
}

}  // namespace zelvane
