// Eigenvalues of a real matrix without symmetry, for example a rate matrix.
//
//   In one go   RealEigenvalues
//   Its steps   BalanceMatrix  ReduceToHessenberg  HessenbergEigenvalues
//
// All steps work in 32-bit floats and in place.
#pragma once

#include <vector>

#include "numerics/dense_matrix.h"

namespace zelvane {

inline constexpr int MaxQrIterations = 30;  // for one eigenvalue, or a pair

struct Eigenvalues {
  std::vector<float> real;     // real parts, in the order of the final diagonal
  int withoutConvergence = 0;  // eigenvalues that are only estimates after MaxQrIterations
};

/// Returns the real parts of the eigenvalues of a square matrix: calls BalanceMatrix, ReduceToHessenberg
/// and HessenbergEigenvalues. Destroys the matrix. Every element must be finite. An empty matrix gives an
/// empty list.
Eigenvalues RealEigenvalues(DenseMatrix<float>& matrix);

/// Scales rows and columns until the norms of each row and its column are similar. Scales by powers of 2,
/// without rounding, and only when the sum of the two norms falls below 0.95 of the old sum. Keeps the
/// eigenvalues.
///
/// Source: Parlett & Reinsch (1969), Numer. Math. 13, 293-304.
void BalanceMatrix(DenseMatrix<float>& matrix);

/// Converts a matrix to upper Hessenberg form by elimination with exchanges. Keeps the eigenvalues. Sets
/// the elements below the subdiagonal to 0.
///
/// Source: Martin & Wilkinson (1968), Numer. Math. 12, 349-368.
void ReduceToHessenberg(DenseMatrix<float>& matrix);

/// Returns the real parts of the eigenvalues of an upper Hessenberg matrix. Uses the QR iteration with a
/// double shift, and with an exceptional shift at iterations 10 and 20. After MaxQrIterations takes an
/// eigenvalue from the diagonal and continues with the others.
///
/// Source: Martin, Peters & Wilkinson (1970), Numer. Math. 14, 219-231.
Eigenvalues HessenbergEigenvalues(DenseMatrix<float>& matrix);

}  // namespace zelvane
