// QMatrixPanel: the rate matrix of the scheme, its relaxation time constants and its equilibrium.
#pragma once

namespace zelvane {

struct QMatrixSolution;

void AddQMatrixPanel();  // with a button on MainPanel

/// Shows the time of a point of the stimulus, and the point itself.
void ShowQMatrixTime(int point);

/// Shows the panel with a solution in its two text boxes. Does nothing without the panel.
void ShowQMatrixReport(const QMatrixSolution& solution);

}  // namespace zelvane
