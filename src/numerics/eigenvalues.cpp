// Balancing (Parlett & Reinsch 1969), elimination to Hessenberg form (Martin & Wilkinson 1968) and the
// shifted QR iteration (Martin, Peters & Wilkinson 1970); Wilkinson & Reinsch (1971), Handbook for Automatic
// Computation II, chapters II/11, II/13 and II/14.
#include "numerics/eigenvalues.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tuple>
#include <utility>

namespace zelvane {
namespace {

constexpr float Radix = 2.0F;
constexpr float WorthScaling = 0.95F;

// The exceptional shift of Martin, Peters & Wilkinson: sum and product of its two roots.
constexpr float ExceptionalSum = 0.75F;
constexpr float ExceptionalProduct = -0.4375F;

/// Returns the power of the radix by which to scale column `i`, and row `i` by its inverse; 1 when scaling
/// gains too little.
float ScaleOf(const DenseMatrix<float>& a, std::size_t i) {
  float column = 0.0F;
  float row = 0.0F;
  for (std::size_t j = 0; j < a.rows; ++j) {
    if (j == i) continue;
    column += std::abs(a(j, i));
    row += std::abs(a(i, j));
  }
  if (column == 0.0F || row == 0.0F) return 1.0F;
  const float before = column + row;
  float scale = 1.0F;
  for (; column < row / Radix; column *= Radix * Radix) scale *= Radix;
  for (; column > row * Radix; column /= Radix * Radix) scale /= Radix;
  return (column + row) / scale < WorthScaling * before ? scale : 1.0F;
}

/// The reflection of a double QR step: three elements of a column, folded into the first.
struct Reflection {
  float p = 0.0F;
  float q = 0.0F;
  float r = 0.0F;
};

/// The part of the matrix that an iteration works on, and its shifts.
struct QrSweep {
  std::size_t low = 0;   // first row
  std::size_t high = 0;  // last row
  float x = 0.0F;        // the corner, or the exceptional shift that replaces it
  float y = 0.0F;
  float w = 0.0F;
};

/// Divides by the sum of the magnitudes and returns this sum. Changes nothing when it is 0.
float Normalise(Reflection& v) {
  const float sum = std::abs(v.p) + std::abs(v.q) + std::abs(v.r);
  if (sum == 0.0F) return 0.0F;
  v.p /= sum;
  v.q /= sum;
  v.r /= sum;
  return sum;
}

float NormOf(const DenseMatrix<float>& a) {
  float norm = 0.0F;
  for (std::size_t i = 0; i < a.rows; ++i) {
    for (std::size_t j = i == 0 ? 0 : i - 1; j < a.rows; ++j) norm += std::abs(a(i, j));
  }
  return norm;
}

/// Returns the first row of the block that ends with row `high`. The subdiagonal element before the block is
/// negligible and becomes 0.
std::size_t BlockStart(DenseMatrix<float>& a, std::size_t high, float norm) {
  for (std::size_t l = high; l > 0; --l) {
    float size = std::abs(a(l - 1, l - 1)) + std::abs(a(l, l));
    if (size == 0.0F) size = norm;
    const float sum = std::abs(a(l, l - 1)) + size;
    if (sum != size) continue;
    a(l, l - 1) = 0.0F;
    return l;
  }
  return 0;
}

/// Returns the real parts of the two eigenvalues of rows `high` - 1 and `high`, plus `shift`.
std::pair<float, float> PairOf(const DenseMatrix<float>& a, std::size_t high, float shift) {
  const float x = a(high, high);
  const float w = a(high, high - 1) * a(high - 1, high);
  const float p = 0.5F * (a(high - 1, high - 1) - x);
  const float q = p * p + w;
  const float base = x + shift;
  if (q < 0.0F) return {base + p, base + p};  // a conjugate pair
  const float z = p + std::copysign(std::sqrt(q), p);
  return {base + z, z != 0.0F ? base - w / z : base + z};
}

/// Subtracts the corner from the diagonal and uses an exceptional shift instead.
void ShiftExceptionally(DenseMatrix<float>& a, QrSweep& sweep, float& shift) {
  shift += sweep.x;
  for (std::size_t i = 0; i <= sweep.high; ++i) a(i, i) -= sweep.x;
  const float size = std::abs(a(sweep.high, sweep.high - 1)) + std::abs(a(sweep.high - 1, sweep.high - 2));
  sweep.x = sweep.y = ExceptionalSum * size;
  sweep.w = ExceptionalProduct * size * size;
}

/// Returns the first column of the double step that begins at row `m`.
Reflection FirstColumn(const DenseMatrix<float>& a, const QrSweep& sweep, std::size_t m) {
  const float z = a(m, m);
  const float r = sweep.x - z;
  const float s = sweep.y - z;
  Reflection v{(r * s - sweep.w) / a(m + 1, m) + a(m, m + 1), a(m + 1, m + 1) - z - r - s, a(m + 2, m + 1)};
  Normalise(v);
  return v;
}

/// Returns the row at which the double step begins: the search ends where two subdiagonal elements are small
/// together.
std::size_t StartOfStep(const DenseMatrix<float>& a, const QrSweep& sweep, Reflection& v) {
  for (std::size_t m = sweep.high - 2;; --m) {
    v = FirstColumn(a, sweep, m);
    if (m == sweep.low) return m;
    const float u = std::abs(a(m, m - 1)) * (std::abs(v.q) + std::abs(v.r));
    const float size =
        std::abs(v.p) * (std::abs(a(m - 1, m - 1)) + std::abs(a(m, m)) + std::abs(a(m + 1, m + 1)));
    const float sum = u + size;
    if (sum == size) return m;
  }
}

/// Applies the reflection at row `k` from the left to columns k..high and from the right to rows low..k + 3.
void Reflect(DenseMatrix<float>& a, const QrSweep& sweep, std::size_t k, Reflection v, float s) {
  const bool three = k + 1 != sweep.high;
  v.p += s;
  const float x = v.p / s;
  const float y = v.q / s;
  const float z = v.r / s;
  const float q = v.q / v.p;
  const float r = v.r / v.p;
  for (std::size_t j = k; j <= sweep.high; ++j) {
    float p = a(k, j) + q * a(k + 1, j);
    if (three) {
      p += r * a(k + 2, j);
      a(k + 2, j) -= p * z;
    }
    a(k + 1, j) -= p * y;
    a(k, j) -= p * x;
  }
  const std::size_t last = std::min(sweep.high, k + 3);
  for (std::size_t i = sweep.low; i <= last; ++i) {
    float p = x * a(i, k) + y * a(i, k + 1);
    if (three) {
      p += z * a(i, k + 2);
      a(i, k + 2) -= p * r;
    }
    a(i, k + 1) -= p * q;
    a(i, k) -= p;
  }
}

/// Does one double QR step on the rows of the sweep.
void DoubleStep(DenseMatrix<float>& a, const QrSweep& sweep) {
  Reflection v;
  const std::size_t m = StartOfStep(a, sweep, v);
  for (std::size_t i = m + 2; i <= sweep.high; ++i) {
    a(i, i - 2) = 0.0F;
    if (i != m + 2) a(i, i - 3) = 0.0F;
  }
  for (std::size_t k = m; k < sweep.high; ++k) {
    float size = 0.0F;
    if (k != m) {
      v = {a(k, k - 1), a(k + 1, k - 1), k + 1 != sweep.high ? a(k + 2, k - 1) : 0.0F};
      size = Normalise(v);
    }
    const float s = std::copysign(std::sqrt(v.p * v.p + v.q * v.q + v.r * v.r), v.p);
    if (s == 0.0F) continue;
    if (k != m) {
      a(k, k - 1) = -s * size;
    } else if (sweep.low != m) {
      a(k, k - 1) = -a(k, k - 1);
    }
    Reflect(a, sweep, k, v, s);
  }
}

/// Returns the sweep over rows `low`..`high` with the shifts of the last two rows.
QrSweep SweepOver(const DenseMatrix<float>& a, std::size_t low, std::size_t high) {
  return {low, high, a(high, high), a(high - 1, high - 1), a(high, high - 1) * a(high - 1, high)};
}

}  // namespace

void BalanceMatrix(DenseMatrix<float>& a) {
  for (bool settled = false; !settled;) {
    settled = true;
    for (std::size_t i = 0; i < a.rows; ++i) {
      const float scale = ScaleOf(a, i);
      if (scale == 1.0F) continue;
      settled = false;
      for (std::size_t j = 0; j < a.rows; ++j) a(i, j) /= scale;
      for (std::size_t j = 0; j < a.rows; ++j) a(j, i) *= scale;
    }
  }
}

void ReduceToHessenberg(DenseMatrix<float>& a) {
  for (std::size_t m = 1; m + 1 < a.rows; ++m) {
    std::size_t pivot = m;
    for (std::size_t j = m + 1; j < a.rows; ++j) {
      if (std::abs(a(j, m - 1)) > std::abs(a(pivot, m - 1))) pivot = j;
    }
    if (a(pivot, m - 1) == 0.0F) continue;
    if (pivot != m) {
      for (std::size_t j = m - 1; j < a.rows; ++j) std::swap(a(pivot, j), a(m, j));
      for (std::size_t j = 0; j < a.rows; ++j) std::swap(a(j, pivot), a(j, m));
    }
    for (std::size_t i = m + 1; i < a.rows; ++i) {
      if (a(i, m - 1) == 0.0F) continue;
      const float factor = a(i, m - 1) / a(m, m - 1);
      a(i, m - 1) = 0.0F;
      for (std::size_t j = m; j < a.rows; ++j) a(i, j) -= factor * a(m, j);
      for (std::size_t j = 0; j < a.rows; ++j) a(j, m) += factor * a(j, i);
    }
  }
}

Eigenvalues HessenbergEigenvalues(DenseMatrix<float>& a) {
  Eigenvalues found;
  found.real.assign(a.rows, 0.0F);
  const float norm = NormOf(a);
  float shift = 0.0F;
  int iterations = 0;
  for (std::size_t left = a.rows; left > 0;) {
    const std::size_t high = left - 1;
    const std::size_t low = BlockStart(a, high, norm);
    const bool tired = iterations == MaxQrIterations && low + 1 < high;
    if (low == high || tired) {
      found.real[high] = a(high, high) + shift;
      if (tired) ++found.withoutConvergence;
      left -= 1;
    } else if (low + 1 == high) {
      std::tie(found.real[high - 1], found.real[high]) = PairOf(a, high, shift);
      left -= 2;
    } else {
      QrSweep sweep = SweepOver(a, low, high);
      if (iterations == 10 || iterations == 20) ShiftExceptionally(a, sweep, shift);
      ++iterations;
      DoubleStep(a, sweep);
      continue;
    }
    iterations = 0;
  }
  return found;
}

Eigenvalues RealEigenvalues(DenseMatrix<float>& matrix) {
  BalanceMatrix(matrix);
  ReduceToHessenberg(matrix);
  return HessenbergEigenvalues(matrix);
}

}  // namespace zelvane
