// QMatrixPanel: the rate matrix of the scheme, its relaxation time constants and its equilibrium.
#pragma once

#include "run/q_matrix_analysis.h"

namespace zelvane {

void AddQMatrixPanel();  // with a button on MainPanel

/// Does the work of the panel's buttons: reads the rates of the active form (for the grid also the run
/// settings) from their panels, analyses the scheme at point `point` of the stimulus (1 to the last point of
/// the profiles), and shows time, matrix, time constants and equilibrium.
QMatrixSolution AnalyzeOnPanel(int point);

}  // namespace zelvane
