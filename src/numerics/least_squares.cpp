#include "numerics/least_squares.h"

#include <cmath>
#include <utility>

#include "platform/index.h"

namespace zelvane {
namespace {

using Matrix = std::vector<std::vector<double>>;

constexpr double SmallestPivot = 1e-12;  // of a matrix with a diagonal of ones

/// Returns the lengths of the columns of the Jacobian.
std::vector<double> Lengths(std::span<const double> jacobian, std::size_t n) {
  std::vector<double> lengths(n, 0.0);
  for (std::size_t i = 0; i < jacobian.size(); ++i) lengths[i % n] += jacobian[i] * jacobian[i];
  for (double& length : lengths) length = std::sqrt(length);
  return lengths;
}

/// Returns J^T J of the columns divided by their lengths. Parameters then have comparable sizes.
Matrix Products(std::span<const double> jacobian, const std::vector<double>& lengths) {
  const std::size_t n = lengths.size();
  Matrix products(n, std::vector<double>(n, 0.0));
  for (std::size_t row = 0; row < jacobian.size(); row += n) {
    for (std::size_t a = 0; a < n; ++a) {
      for (std::size_t b = 0; b < n; ++b)
        products[a][b] += jacobian[row + a] / lengths[a] * (jacobian[row + b] / lengths[b]);
    }
  }
  return products;
}

/// Inverts a positive definite matrix in place by Gauss-Jordan elimination. Returns false when it is singular.
bool Invert(Matrix& matrix) {
  const std::size_t n = matrix.size();
  for (std::size_t p = 0; p < n; ++p) {
    const double pivot = matrix[p][p];
    if (!(pivot > SmallestPivot)) return false;
    matrix[p][p] = 1.0;
    for (double& value : matrix[p]) value /= pivot;
    for (std::size_t r = 0; r < n; ++r) {
      if (r == p) continue;
      const double factor = std::exchange(matrix[r][p], 0.0);
      for (std::size_t c = 0; c < n; ++c) matrix[r][c] -= factor * matrix[p][c];
    }
  }
  return true;
}

}  // namespace

std::optional<std::vector<double>> StandardErrors(std::span<const double> jacobian, int parameters,
                                                  double sumOfSquares) {
  const std::size_t n = Index(parameters);
  const std::size_t points = jacobian.size() / n;
  if (points <= n) return std::nullopt;
  const std::vector<double> lengths = Lengths(jacobian, n);
  for (const double length : lengths) {
    if (!(length > 0.0) || !std::isfinite(length)) return std::nullopt;
  }
  Matrix covariance = Products(jacobian, lengths);
  if (!Invert(covariance)) return std::nullopt;
  const double variance = sumOfSquares / static_cast<double>(points - n);
  std::vector<double> errors;
  for (std::size_t p = 0; p < n; ++p) errors.push_back(std::sqrt(variance * covariance[p][p]) / lengths[p]);
  return errors;
}

}  // namespace zelvane
