// The downhill simplex of Nelder & Mead (Computer Journal 7, 308, 1965) on a table of vertices.
//
//   RunSimplex  TryVertex  NudgeVertex  FormSums  BestColumn  FractionalSpread
//
// Allocates no memory, and reads and writes only its arguments.
#pragma once

#include <array>
#include <functional>

#include "platform/index.h"

namespace zelvane {

inline constexpr int MaxSimplexParams = 72;
inline constexpr int MaxSimplexColumns = 100;

/// With n parameters, columns 0..n are the vertices. Row 0 is the sum of squares of a column, rows 1..n are its
/// parameters. Column n + 1 has the sum of each row over the vertices, column n + 2 the vertex on trial.
struct SimplexTable {
  std::array<std::array<double, MaxSimplexColumns>, MaxSimplexParams + 1> VertexTable{};
  int NumParams = 0;
  int NumVertices = 0;
  int BestVertex = 0;                                     // column with the lowest sum of squares
  int NumEvals = 0;                                       // accepted steps
  double FitResidual = 0.0;                               // last fractional spread of the sums of squares
  std::array<float, MaxSimplexParams + 1> VertexScale{};  // step of each parameter, from index 1

  double& At(int row, int column) { return VertexTable[Index(row)][Index(column)]; }
  double At(int row, int column) const { return VertexTable[Index(row)][Index(column)]; }
};

/// The fit that a simplex minimises, and how it treats it.
struct SimplexRules {
  /// Calculates the sum of squares of a column and stores it in row 0. May set BestVertex.
  std::function<void(int column)> evaluate;
  bool positive = false;  // a parameter below 0 becomes a tenth of its magnitude
  /// Nudges count as steps, and their restored values are 32-bit floats, as in a fit of rates.
  bool ofRates = false;
  int iterations = 10;      // accepted steps before the end
  double tolerance = 1e-5;  // spread at which the simplex has converged
  // -- May be empty --
  std::function<bool()> beginPass{};    // before the ranking; true stops
  std::function<bool()> stopAsked{};    // after a reflection and after a contraction; true stops
  std::function<void()> passCounted{};  // after the steps of a pass
};

enum class SimplexEnd { Converged, Iterations, Stopped };

/// Moves the simplex from its vertices, whose sums of squares are known, until it converges, uses up its
/// iterations or is stopped. A thousand passes without an accepted step count as all iterations used. NumEvals starts at 1. Afterwards BestVertex is the column with the lowest sum of
/// squares. The table must have 1 to MaxSimplexParams parameters.
SimplexEnd RunSimplex(SimplexTable& table, const SimplexRules& rules);

/// Fills column n + 1 with the sum of each row over the vertices.
void FormSums(SimplexTable& table);

/// Evaluates a point on the line from the vertex `worst` through the mean of the others: factor -1 reflects
/// it, 2 goes further, 0.5 halves the way. Replaces `worst` by a better point. Returns its sum of squares.
double TryVertex(SimplexTable& table, const SimplexRules& rules, int worst, double factor);

/// Moves one parameter of a vertex up or down by VertexScale x factor^2 / NumEvals if this does not raise its
/// sum of squares.
void NudgeVertex(SimplexTable& table, const SimplexRules& rules, int column, int row, double factor);

/// Returns the fractional spread of two sums of squares, 2 |worst - low| / |low + worst + 1|.
double FractionalSpread(double low, double worst);

/// Returns the first column with the lowest sum of squares.
int BestColumn(const SimplexTable& table);

}  // namespace zelvane
