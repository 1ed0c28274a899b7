// What a scheme does at a fixed stimulus, without simulating it: the rate matrix Q, its relaxation time
// constants and the occupancies at equilibrium.
//
//   CompileQMatrix  SolveQMatrix  EquilibriumOf  RelaxationTimesMs
//
// Source: Colquhoun & Hawkes (1995), "A Q-matrix cookbook", in Single-Channel Recording, 2nd ed., chapter 20.
#pragma once

#include <vector>

#include "kinetics/rate_factor.h"
#include "kinetics/scheme_tables.h"
#include "numerics/dense_matrix.h"

namespace zelvane {

/// Occupancies at equilibrium below this one count as 0.
inline constexpr double SmallestEquilibrium = 1e-5;

/// Eigenvalues (1/s) from this one on have no time constant.
inline constexpr float LargestDecayEigenvalue = 1e-6F;

/// The rate matrix of the states that take part.
struct QMatrix {
  std::vector<int> states;   // numbers, rising; row and column k of `rates` are state states[k]
  DenseMatrix<float> rates;  // 1/s, [from][to]; the diagonal holds minus the sum of its row
};

struct Equilibrium {
  std::vector<double> occupancy;  // of the states of the matrix; all 0 where there is none
  bool singular = false;          // the equations do not tell it: the states are not one connected scheme
};

struct RelaxationTime {
  int eigenvalue = 0;  // its number, from 1
  float ms = 0.0F;     // -1000 / eigenvalue; infinite for an eigenvalue of 0
};

struct QMatrixSolution {
  QMatrix matrix;
  std::vector<RelaxationTime> relaxation;  // in the order of the eigenvalues
  Equilibrium equilibrium;
  int withoutConvergence = 0;  // eigenvalues that the iteration did not settle
  bool finite = true;          // false: a rate is nan or infinite, and nothing has been solved
};

/// Returns the rate matrix of a scheme under `stimulus`: each rate times its factor. A rate of 0 stays 0
/// whatever its factor is. A state takes part when it is on and a rate above 0, or one that is no number, leads
/// into it.
QMatrix CompileQMatrix(const SchemeTables& scheme, const StimulusValues& stimulus);

/// Solves p Q = 0 with the occupancies p adding up to 1, in doubles: S is Q with a last column of ones,
/// A = S transpose(S) is inverted through its LU decomposition with partial pivoting, and p is the row of
/// ones times the inverse. What is below SmallestEquilibrium becomes 0, and the rest is divided by its sum.
///
/// A counts as singular when a pivot is no larger than the rounding of the decomposition. Where the scheme
/// falls into parts, the answer is then an equilibrium of one of them; where its rates merely span more than
/// about seven orders of magnitude it is still the equilibrium, with fewer digits. Every rate must be finite.
Equilibrium EquilibriumOf(const DenseMatrix<float>& rates);

/// Relaxation time constants of every eigenvalue below LargestDecayEigenvalue.
std::vector<RelaxationTime> RelaxationTimesMs(const std::vector<float>& eigenvalues);

/// Solves a matrix for its equilibrium and, with `relaxation`, for its time constants. Without states all
/// comes out empty.
QMatrixSolution SolveQMatrix(QMatrix matrix, bool relaxation);

}  // namespace zelvane
