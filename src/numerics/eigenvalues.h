// Eigenvalues of a real matrix without symmetry, as a rate matrix is.
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
  std::vector<float> real;     // real parts, by their place on the diagonal of the last form of the matrix
  int withoutConvergence = 0;  // eigenvalues that MaxQrIterations did not settle: they are estimates
};

/// Real parts of the eigenvalues of a square matrix, which is destroyed: BalanceMatrix, ReduceToHessenberg,
/// HessenbergEigenvalues. Every element must be finite. An empty matrix has none.
Eigenvalues RealEigenvalues(DenseMatrix<float>& matrix);

/// Scales rows and columns by powers of 2, which rounds nothing, until the norms of each row and its column
/// are alike: a scaling is taken when it brings the sum of the two below 0.95 of what it was. Eigenvalues
/// stay.
///
/// Source: Parlett & Reinsch (1969), Numer. Math. 13, 293-304.
void BalanceMatrix(DenseMatrix<float>& matrix);

/// Brings a matrix to upper Hessenberg form by elimination with exchanges. Eigenvalues stay. What lies below
/// the subdiagonal becomes 0.
///
/// Source: Martin & Wilkinson (1968), Numer. Math. 12, 349-368.
void ReduceToHessenberg(DenseMatrix<float>& matrix);

/// Real parts of the eigenvalues of an upper Hessenberg matrix by the QR iteration with a double shift, and
/// with an exceptional one at iterations 10 and 20. An eigenvalue that is not found after MaxQrIterations is
/// taken from the diagonal as it stands, and the search goes on with the others.
///
/// Source: Martin, Peters & Wilkinson (1970), Numer. Math. 14, 219-231.
Eigenvalues HessenbergEigenvalues(DenseMatrix<float>& matrix);

}  // namespace zelvane
