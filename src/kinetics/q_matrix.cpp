#include "kinetics/q_matrix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "numerics/eigenvalues.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr float MsPerSecond = 1000.0F;

/// Returns whether a rate above 0 leads into the state. A rate that is not a number counts too, so that it is
/// noticed.
bool RateLeadsInto(const StateTable<float>& rate, std::size_t state) {
  return std::any_of(rate.begin() + 1, rate.end(),
                     [state](const auto& row) { return !(row[state] <= 0.0F); });
}

/// Returns rate times stimulus factor. A rate of 0 needs no factor.
float EffectiveRate(const SchemeTables& scheme, int from, int to, const StimulusValues& stimulus) {
  const float rate = scheme.rate[Index(from)][Index(to)];
  return rate == 0.0F ? 0.0F : rate * RateFactor(scheme.depend, scheme.temperature, from, to, stimulus);
}

bool AllFinite(const DenseMatrix<float>& matrix) {
  return std::all_of(matrix.element.begin(), matrix.element.end(), [](float x) { return std::isfinite(x); });
}

}  // namespace

QMatrix CompileQMatrix(const SchemeTables& scheme, const StimulusValues& stimulus) {
  QMatrix matrix;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (scheme.on[s] != 0 && RateLeadsInto(scheme.rate, s)) matrix.states.push_back(static_cast<int>(s));
  }
  const std::size_t n = matrix.states.size();
  matrix.rates = DenseMatrix<float>(n, n);
  for (std::size_t i = 0; i < n; ++i) {
    float sum = 0.0F;
    for (std::size_t j = 0; j < n; ++j) {
      matrix.rates(i, j) = EffectiveRate(scheme, matrix.states[i], matrix.states[j], stimulus);
      sum += matrix.rates(i, j);
    }
    matrix.rates(i, i) = 0.0F - sum;  // an empty row is 0, not -0
  }
  return matrix;
}

std::vector<RelaxationTime> RelaxationTimesMs(const std::vector<float>& eigenvalues) {
  std::vector<RelaxationTime> times;
  for (std::size_t i = 0; i < eigenvalues.size(); ++i) {
    const float w = eigenvalues[i];
    if (!(w < LargestDecayEigenvalue)) continue;
    const float ms = w == 0.0F ? std::numeric_limits<float>::infinity() : -MsPerSecond / w;
    times.push_back({static_cast<int>(i) + 1, ms});
  }
  return times;
}

QMatrixSolution SolveQMatrix(QMatrix matrix, bool relaxation) {
  QMatrixSolution solution;
  solution.matrix = std::move(matrix);
  solution.finite = AllFinite(solution.matrix.rates);
  if (!solution.finite) return solution;
  if (relaxation) {
    DenseMatrix<float> rates = solution.matrix.rates;
    const Eigenvalues eigenvalues = RealEigenvalues(rates);
    solution.withoutConvergence = eigenvalues.withoutConvergence;
    solution.relaxation = RelaxationTimesMs(eigenvalues.real);
  }
  solution.equilibrium = EquilibriumOf(solution.matrix.rates);
  return solution;
}

}  // namespace zelvane
