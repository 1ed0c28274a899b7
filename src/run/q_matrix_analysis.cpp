#include "run/q_matrix_analysis.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "model/model.h"
#include "model/model_store.h"
#include "run/result_store.h"
#include "screen/popups.h"
#include "stimulus/stimulus.h"

namespace zelvane {
namespace {

constexpr char TooManyIterations[] = "Too many iterations in hqr";
constexpr char SingularMatrix[] = "Singular matrix in routine ludcmp";
constexpr char NotFinite[] = "A rate of the Q matrix is not a finite number: it has no equilibrium.";

/// Copies the active form to `Model.RateMatrix` and returns it in the form of the engine.
SchemeTables TablesForQ() {
  // In the table every state is on: TableStateOn would leave out a state when the only rate into it is not a
  // number.
  static constexpr std::array<int, MaxStates + 1> AllOn = [] {
    std::array<int, MaxStates + 1> on{};
    on.fill(1);
    return on;
  }();
  const bool grid = Model.ModelIs2D != 0;
  if (grid) {
    RatesFromGrid();
  } else {
    ActivateTableModel();
  }
  return {Model.RateMatrix, Model.Depend, grid ? Model.StateOn : AllOn, Model.Temperature};
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

int StimulusPointAt(float timeMs) {
  const float quotient = timeMs / Model.ADInterval;
  if (!(quotient >= static_cast<float>(RestingPoint))) return RestingPoint;  // also for NaN
  return quotient < static_cast<float>(MaxStimPoints) ? static_cast<int>(quotient) : MaxStimPoints - 1;
}

QMatrix ActiveQMatrix(int point) {
  return CompileQMatrix(TablesForQ(), StimulusAt(point));
}

QMatrixSolution QMatrixAnalysis(bool timeConstants, int point) {
  point = std::clamp(point, RestingPoint, MaxStimPoints - 1);
  QMatrixSolution solution = SolveQMatrix(ActiveQMatrix(point), timeConstants);
  StoreEquilibrium(solution);
  TellOfTrouble(solution);
  return solution;
}

bool HasEquilibrium() {
  return std::any_of(Result.EquilibriumOccupancy.begin(), Result.EquilibriumOccupancy.end(),
                     [](float p) { return p > 0.0F; });
}

}  // namespace zelvane
