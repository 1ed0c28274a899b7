#include "parameters/formula_fit.h"

#include <algorithm>
#include <cmath>

#include "parameters/limit_rules.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/index.h"
#include "trace/program_random.h"

namespace zelvane {
namespace {

constexpr double PenaltyOfLimits = 100.0;
constexpr double FixedTolerance = 0.0005;  // of its seed
constexpr double PenaltyOfFixed = 2000.0;
constexpr double NearSeed = 0.1;
constexpr double PenaltyNearSeed = 1000.0;
constexpr double LargestSum = 1e80;
constexpr double SumInstead = 1e40;

SimplexTable& Table() {
  return Vertices.simplex;
}

double Draw() {
  return UniformRandom(ProgramRandom);
}

const FitLimit& LimitOf(int row) {
  return Parameters.AnalysisFitLimits[Index(row)];
}

/// Returns a random value of a parameter, within its limits if these are in force.
double RandomValue(double seed, const FitLimit& limit) {
  const bool divides = Draw() < 0.5;
  const double factor = Draw();
  const double value = divides ? seed / factor : seed * factor;
  if (Parameters.AnalysisLimitsOn == 0) return value;
  return DrawnInside(value, seed, limit, ProgramRandom);
}

double WithLimits(double sum, int row, double value) {
  const FitLimit& limit = LimitOf(row);
  if (!(value > limit.hi || value < limit.lo)) return sum;
  return sum + PenaltyOfLimits * std::fabs(value - limit.hi) * sum;
}

double WithFixed(double sum, int row, double value) {
  if (Parameters.AnalysisFitFixed[Index(row)] == 0) return sum;
  const double seed = Parameters.AnalysisFitSeed[Index(row)];
  const double distance = std::fabs(value - seed);
  if (!(distance > seed * FixedTolerance)) return sum;
  sum += PenaltyOfFixed * distance * sum;
  return distance < NearSeed ? sum + PenaltyNearSeed : sum;
}

double SumOfSquares(std::size_t points) {
  double sum = 0.0;
  for (std::size_t i = 0; i < points; ++i) {
    const float difference = Vertices.FitCurve[i] - Vertices.FitData[i];
    sum += static_cast<double>(difference * difference);
  }
  return sum;
}

}  // namespace

void AnalysisEval(const FormulaFit& fit, int column) {
  std::array<double, MaxSimplexParams + 1> value{};
  for (int r = 1; r <= fit.params; ++r) value[Index(r)] = Table().At(r, column);
  const auto points = Index(std::clamp(Vertices.FormulaPoints, 0, MaxFormulaPoints));
  fit.formula(value, std::span(Vertices.FitX).first(points), std::span(Vertices.FitCurve).first(points));
  for (int r = 1; r <= fit.params; ++r) Table().At(r, column) = value[Index(r)];
  double sum = SumOfSquares(points);
  if (Parameters.AnalysisLimitsOn != 0) {
    for (int r = 1; r <= fit.params; ++r) sum = WithLimits(sum, r, value[Index(r)]);
  }
  if (Parameters.AnalysisFixOn != 0) {
    for (int r = 1; r <= fit.params; ++r) sum = WithFixed(sum, r, value[Index(r)]);
  }
  Table().At(0, column) = sum > LargestSum ? SumInstead : sum;
}

void AnalysisVertexBuild(const FormulaFit& fit) {
  SimplexTable& table = Table();
  table.NumParams = fit.params;
  table.NumVertices = fit.params + 1;
  table.VertexScale = fit.scale;
  for (int r = 1; r <= fit.params; ++r) {
    const double seed = fit.seed[Index(r)];
    table.At(r, 0) = Parameters.AnalysisLimitsOn != 0 ? Clipped(seed, LimitOf(r)) : seed;
  }
  AnalysisEval(fit, 0);
  for (int k = 1; k <= fit.params; ++k) {
    for (int r = 1; r <= fit.params; ++r) table.At(r, k) = RandomValue(table.At(r, 0), LimitOf(r));
    AnalysisEval(fit, k);
  }
  table.BestVertex = BestColumn(table);
}

int AnalysisSimplex(const FormulaFit& fit) {
  SimplexRules rules;
  rules.evaluate = [&fit](int column) { AnalysisEval(fit, column); };
  rules.iterations = fit.iterations;
  rules.tolerance = Parameters.FitTolerance;
  rules.beginPass = fit.stop;
  const SimplexEnd end = RunSimplex(Table(), rules);
  AnalysisEval(fit, Table().BestVertex);
  if (end == SimplexEnd::Stopped) return FitUserBreak;
  return end == SimplexEnd::Converged ? FitConverged : FitMaxIterations;
}

}  // namespace zelvane
