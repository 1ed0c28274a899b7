#include "numerics/spline.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zelvane {
namespace {

/// Returns the second derivatives at the knots. The slope at an end is that of the line to its neighbour, so the
/// right side of the equation of this end is 0.
std::vector<double> SecondDerivatives(std::span<const double> x, std::span<const double> y) {
  const std::size_t n = x.size();
  std::vector<double> second(n);
  std::vector<double> right(n);
  second[0] = -0.5;
  for (std::size_t i = 1; i + 1 < n; ++i) {
    const double share = (x[i] - x[i - 1]) / (x[i + 1] - x[i - 1]);
    const double pivot = share * second[i - 1] + 2.0;
    const double bend = (y[i + 1] - y[i]) / (x[i + 1] - x[i]) - (y[i] - y[i - 1]) / (x[i] - x[i - 1]);
    second[i] = (share - 1.0) / pivot;
    right[i] = (6.0 * bend / (x[i + 1] - x[i - 1]) - share * right[i - 1]) / pivot;
  }
  second[n - 1] = -0.5 * right[n - 2] / (0.5 * second[n - 2] + 1.0);
  for (std::size_t i = n - 1; i-- > 0;) second[i] = second[i] * second[i + 1] + right[i];
  return second;
}

}  // namespace

void SplineToSamples(std::span<const double> times, std::span<const double> values, double interval,
                     std::span<float> samples) {
  const std::size_t n = times.size();
  if (n == 1) {
    std::fill(samples.begin(), samples.end(), static_cast<float>(values[0]));
    return;
  }
  const std::vector<double> second = SecondDerivatives(times, values);
  std::size_t piece = 0;  // between knots piece and piece + 1
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double t = std::min(static_cast<double>(i) * interval, times[n - 1]);
    while (piece + 2 < n && t > times[piece + 1]) ++piece;
    const double width = times[piece + 1] - times[piece];
    const double a = (times[piece + 1] - t) / width;
    const double b = (t - times[piece]) / width;
    const double bend = (a * a * a - a) * second[piece] + (b * b * b - b) * second[piece + 1];
    samples[i] = static_cast<float>(a * values[piece] + b * values[piece + 1] + bend * (width * width) / 6.0);
  }
}

}  // namespace zelvane
