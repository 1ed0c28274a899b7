// The fit of a formula to points, by the simplex.
//
//   AnalysisVertexBuild  AnalysisSimplex  AnalysisEval
//
// The points are `Vertices.FitX` and `Vertices.FitData`, FormulaPoints of them. A subject gives its formula, its seeds
// and the steps of its parameters.
#pragma once

#include <array>
#include <functional>
#include <span>

#include "numerics/simplex.h"

namespace zelvane {

/// A formula with `params` parameters. Arrays are indexed from 1.
struct FormulaFit {
  int params = 0;
  /// Fills `curve` for the abscissae `x`, of the same length, with the parameters 1, 2, ... of `value`. May replace a
  /// parameter that the formula cannot take; the vertex then has the replacement.
  std::function<void(std::span<double> value, std::span<const float> x, std::span<float> curve)> formula;
  std::array<double, MaxSimplexParams + 1> seed{};
  std::array<float, MaxSimplexParams + 1> scale{};  // of the nudges
  int iterations = 300;
  std::function<bool()> stop{};  // asked at each pass of the simplex; may be empty
};

/// Builds the starting simplex: vertex 0 has the seeds, the others have each of them times or divided by a random
/// number; all within `Parameters.AnalysisFitLimits` if these are in force. Evaluates each vertex and sets BestVertex.
/// Draws from ProgramRandom, for each parameter: the branch, the factor, then one for a limit.
void AnalysisVertexBuild(const FormulaFit& fit);

/// Stores the sum of the squared differences of a column in its row 0: 32-bit squares, added in double. Adds a penalty
/// for each parameter outside its limits, and for each fixed one away from its seed, if these are in force. More than
/// 1e80 becomes 1e40. `Vertices.FitCurve` keeps the curve.
void AnalysisEval(const FormulaFit& fit, int column);

/// Runs the simplex with `Parameters.FitTolerance`. The best column is evaluated once more, so that FitCurve is its
/// curve.
/// @return FitConverged, FitMaxIterations or, after a stop, FitUserBreak
int AnalysisSimplex(const FormulaFit& fit);

}  // namespace zelvane
