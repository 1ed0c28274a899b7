#include "sim/q_matrix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "kinetics/rate_factor.h"
#include "model/model.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "numerics/eigenvalues.h"
#include "screen/popups.h"
#include "sim/q_matrix_panel.h"
#include "sim/result_store.h"
#include "sim/run_panel.h"
#include "stimulus/stimulus.h"

namespace zelvane {
namespace {

constexpr char TooManyIterations[] = "Too many iterations in hqr";
constexpr char SingularMatrix[] = "Singular matrix in routine ludcmp";
constexpr char NotFinite[] = "A rate of the Q matrix is not a finite number: it has no equilibrium.";

constexpr float MsPerSecond = 1000.0F;

/// Whether a rate above 0 leads into the state. One that is no number counts too: it must not pass unseen.
bool RateLeadsInto(std::size_t state) {
  return std::any_of(Model.RateMatrix.begin() + 1, Model.RateMatrix.end(),
                     [state](const auto& row) { return !(row[state] <= 0.0F); });
}

/// Brings the active form to `RateMatrix`. @return the states that take part, rising
std::vector<int> PrepareRates() {
  const bool grid = Model.ModelIs2D != 0;
  if (grid) {
    RatesFromGrid();
  } else {
    ActivateTableModel();
  }
  std::vector<int> states;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if ((!grid || Model.StateOn[s] != 0) && RateLeadsInto(s)) states.push_back(static_cast<int>(s));
  }
  return states;
}

/// Rate times stimulus factor. A rate of 0 needs no factor.
float EffectiveRate(int from, int to, const StimulusValues& stimulus) {
  const float rate = Model.RateMatrix[static_cast<std::size_t>(from)][static_cast<std::size_t>(to)];
  return rate == 0.0F ? 0.0F : rate * RateFactor(Model.Depend, Model.Temperature, from, to, stimulus);
}

bool AllFinite(const DenseMatrix<float>& matrix) {
  return std::all_of(matrix.element.begin(), matrix.element.end(), [](float x) { return std::isfinite(x); });
}

void ReadPanels() {
  if (Model.ModelIs2D == 0) {
    ReadTableRates();
    return;
  }
  ReadGridRates();
  ReadRunParameters();
}

void StoreEquilibrium(const QMatrixSolution& solution) {
  Result.EquilibriumOccupancy = {};
  const std::vector<double>& occupancy = solution.equilibrium.occupancy;
  for (std::size_t k = 0; k < occupancy.size(); ++k) {
    Result.EquilibriumOccupancy[static_cast<std::size_t>(solution.matrix.states[k])] =
        static_cast<float>(occupancy[k]);
  }
}

void TellOfTrouble(const QMatrixSolution& solution) {
  for (int k = 0; k < solution.withoutConvergence; ++k) ConsoleLine(TooManyIterations);
  if (solution.equilibrium.singular) ConsoleLine(SingularMatrix);
  if (!solution.finite) ConsoleLine(NotFinite);
}

}  // namespace

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

int StimulusPointAt(float timeMs) {
  const float quotient = timeMs / Model.ADInterval;
  if (!(quotient >= static_cast<float>(RestingPoint))) return RestingPoint;  // nan as well
  return quotient < static_cast<float>(MaxStimPoints) ? static_cast<int>(quotient) : MaxStimPoints - 1;
}

QMatrix CompileQMatrix(int point) {
  QMatrix matrix;
  matrix.states = PrepareRates();
  const StimulusValues stimulus = StimulusAt(point);
  const std::size_t n = matrix.states.size();
  matrix.rates = DenseMatrix<float>(n, n);
  for (std::size_t i = 0; i < n; ++i) {
    float sum = 0.0F;
    for (std::size_t j = 0; j < n; ++j) {
      matrix.rates(i, j) = EffectiveRate(matrix.states[i], matrix.states[j], stimulus);
      sum += matrix.rates(i, j);
    }
    matrix.rates(i, i) = 0.0F - sum;  // an empty row is 0, not -0
  }
  return matrix;
}

QMatrixSolution QMatrixAnalysis(bool report, int point) {
  point = std::clamp(point, RestingPoint, MaxStimPoints - 1);
  if (Model.FitActive == 0) {
    ReadPanels();
    ShowQMatrixTime(point);
  }
  QMatrixSolution solution = SolveQMatrix(CompileQMatrix(point), report);
  StoreEquilibrium(solution);
  TellOfTrouble(solution);
  if (report) ShowQMatrixReport(solution);
  return solution;
}

bool HasEquilibrium() {
  return std::any_of(Result.EquilibriumOccupancy.begin(), Result.EquilibriumOccupancy.end(),
                     [](float p) { return p > 0.0F; });
}

}  // namespace zelvane
