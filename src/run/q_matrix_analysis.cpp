#include "run/q_matrix_analysis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "formats/number_text.h"
#include "model/model.h"
#include "model/model_store.h"
#include "run/result_store.h"
#include "screen/popups.h"
#include "stimulus/profile_builder.h"
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

int StimulusPointAt(double timeMs) {
  constexpr auto largest = static_cast<double>(std::numeric_limits<float>::max());
  const auto time = static_cast<float>(std::clamp(timeMs, -largest, largest));
  const std::int64_t point = TimeIndex(time, Model.ADInterval);
  return static_cast<int>(std::clamp<std::int64_t>(point, RestingPoint, MaxStimPoints - 1));
}

double TimeOfStimulusPoint(int point) {
  auto time = static_cast<float>(point * static_cast<double>(Model.ADInterval));
  while (TimeIndex(time, Model.ADInterval) < point)
    time = std::nextafter(time, std::numeric_limits<float>::infinity());
  return AsTyped(time);
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
