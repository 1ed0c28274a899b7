// Occupancies at equilibrium from the rate matrix.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <utility>

#include "kinetics/q_matrix.h"

namespace zelvane {
namespace {

/// Returns S transpose(S), where S is Q with a last column of ones.
DenseMatrix<double> NormalMatrix(const DenseMatrix<float>& rates) {
  const std::size_t n = rates.rows;
  DenseMatrix<double> s(n, n + 1);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) s(i, j) = static_cast<double>(rates(i, j));
    s(i, n) = 1.0;
  }
  DenseMatrix<double> a(n, n);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      double sum = 0.0;
      for (std::size_t k = 0; k <= n; ++k) sum += s(i, k) * s(j, k);
      a(i, j) = a(j, i) = sum;
    }
  }
  return a;
}

/// A matrix as the product of a lower triangle with ones on its diagonal and an upper triangle, both in one
/// array, with the order of its rows.
struct LuDecomposition {
  DenseMatrix<double> lu;
  std::vector<std::size_t> row;
  bool singular = false;
};

/// Decomposes with partial pivoting. A matrix with a pivot not larger than the rounding is singular. The
/// rounding replaces a pivot of 0, so that the solution shows the direction which the equations leave open.
LuDecomposition Decompose(DenseMatrix<double> a) {
  const std::size_t n = a.rows;
  LuDecomposition d;
  d.row.resize(n);
  std::iota(d.row.begin(), d.row.end(), std::size_t{0});
  double largest = 0.0;
  for (const double element : a.element) largest = std::max(largest, std::abs(element));
  const double rounding = static_cast<double>(n) * std::numeric_limits<double>::epsilon() * largest;
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t pivot = k;
    for (std::size_t i = k + 1; i < n; ++i) {
      if (std::abs(a(i, k)) > std::abs(a(pivot, k))) pivot = i;
    }
    if (pivot != k) {
      for (std::size_t j = 0; j < n; ++j) std::swap(a(pivot, j), a(k, j));
      std::swap(d.row[pivot], d.row[k]);
    }
    if (std::abs(a(k, k)) <= rounding) d.singular = true;
    if (a(k, k) == 0.0) a(k, k) = rounding;
    for (std::size_t i = k + 1; i < n; ++i) {
      const double factor = a(i, k) /= a(k, k);
      for (std::size_t j = k + 1; j < n; ++j) a(i, j) -= factor * a(k, j);
    }
  }
  d.lu = std::move(a);
  return d;
}

/// Returns column `unit` of the inverse.
std::vector<double> SolveUnit(const LuDecomposition& d, std::size_t unit) {
  const std::size_t n = d.lu.rows;
  std::vector<double> x(n);
  for (std::size_t i = 0; i < n; ++i) {
    double sum = d.row[i] == unit ? 1.0 : 0.0;
    for (std::size_t j = 0; j < i; ++j) sum -= d.lu(i, j) * x[j];
    x[i] = sum;
  }
  for (std::size_t i = n; i-- > 0;) {
    double sum = x[i];
    for (std::size_t j = i + 1; j < n; ++j) sum -= d.lu(i, j) * x[j];
    x[i] = sum / d.lu(i, i);
  }
  return x;
}

/// Divides by the sum. Sets all values to 0 and returns false when the sum does not allow it.
bool DivideBySum(std::vector<double>& p, bool signsCount) {
  const double sum = std::accumulate(p.begin(), p.end(), 0.0);
  const bool possible = std::isfinite(sum) && (signsCount ? sum > 0.0 : sum != 0.0);
  for (double& value : p) value = possible ? value / sum : 0.0;
  return possible;
}

}  // namespace

Equilibrium EquilibriumOf(const DenseMatrix<float>& rates) {
  Equilibrium equilibrium;
  if (rates.rows == 0) return equilibrium;
  const LuDecomposition d = Decompose(NormalMatrix(rates));
  equilibrium.singular = d.singular;
  std::vector<double>& p = equilibrium.occupancy;
  for (std::size_t j = 0; j < rates.rows; ++j) {
    const std::vector<double> column = SolveUnit(d, j);
    p.push_back(std::accumulate(column.begin(), column.end(), 0.0));
  }
  if (d.singular) DivideBySum(p, false);  // its scale and sign are those of a pivot that was only rounding
  for (double& value : p) {
    if (!(value >= SmallestEquilibrium)) value = 0.0;
  }
  DivideBySum(p, true);
  return equilibrium;
}

}  // namespace zelvane
