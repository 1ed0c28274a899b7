// The behaviour of a scheme at a fixed stimulus, without a simulation: the rate matrix Q, its relaxation
// time constants and the occupancies at equilibrium.
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

/// An occupancy at equilibrium below this value becomes 0.
inline constexpr double SmallestEquilibrium = 1e-5;

/// An eigenvalue (1/s) at or above this value has no time constant.
inline constexpr float LargestDecayEigenvalue = 1e-6F;

/// The rate matrix of the states that take part.
struct QMatrix {
  std::vector<int> states;   // numbers, increasing; row and column k of `rates` are state states[k]
  DenseMatrix<float> rates;  // 1/s, [from][to]; the diagonal holds minus the sum of its row
};

struct Equilibrium {
  std::vector<double> occupancy;  // of the states of the matrix; all 0 without an equilibrium
  bool singular = false;          // the equations are singular: the states are not one connected scheme
};

struct RelaxationTime {
  int eigenvalue = 0;  // its number, from 1
  float ms = 0.0F;     // -1000 / eigenvalue; infinite for an eigenvalue of 0
};

struct QMatrixSolution {
  QMatrix matrix;
  std::vector<RelaxationTime> relaxation;  // in the order of the eigenvalues
  Equilibrium equilibrium;
  int withoutConvergence = 0;  // eigenvalues without convergence
  bool finite = true;          // false: a rate is nan or infinite, and the matrix was not solved
};

/// Returns the rate matrix of a scheme under `stimulus`: each rate times its factor. A rate of 0 stays 0
/// for any factor. A state takes part when it is on and a rate that is above 0 or not a number leads into
/// it.
QMatrix CompileQMatrix(const SchemeTables& scheme, const StimulusValues& stimulus);

/// Solves p Q = 0 in doubles, where the occupancies p have the sum 1. S is Q with a last column of ones.
/// Inverts A = S transpose(S) by LU decomposition with partial pivoting; p is the row of ones times the
/// inverse. Sets values below SmallestEquilibrium to 0 and divides the rest by its sum.
///
/// A is singular when a pivot is not larger than the rounding of the decomposition. There are two cases. If
/// the scheme has separate parts, the result is an equilibrium of one of them. If its rates only span more
/// than about seven orders of magnitude, the result is the equilibrium with fewer digits. Every rate must
/// be finite.
Equilibrium EquilibriumOf(const DenseMatrix<float>& rates);

/// Returns the relaxation time constants of all eigenvalues below LargestDecayEigenvalue.
std::vector<RelaxationTime> RelaxationTimesMs(const std::vector<float>& eigenvalues);

/// Calculates the equilibrium of a matrix and, with `relaxation`, its time constants. Without states the
/// result is empty.
QMatrixSolution SolveQMatrix(QMatrix matrix, bool relaxation);

}  // namespace zelvane
