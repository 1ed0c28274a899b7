// The Q matrix of the program's scheme. The engine is in kinetics/q_matrix.h.
//
//   QMatrixAnalysis  ActiveQMatrix  StimulusPointAt  HasEquilibrium
#pragma once

#include "kinetics/q_matrix.h"

namespace zelvane {

/// The point whose stimulus is the resting one, unless the stimulus begins with the sweep.
inline constexpr int RestingPoint = 1;

/// The point of the stimulus at `timeMs`: trunc(timeMs / `Model.ADInterval`) in floats, from 1 to the last
/// one.
int StimulusPointAt(float timeMs);

/// The rate matrix of the active form at point `point` of the stimulus: each rate times its stimulus factor.
/// A rate of 0 stays 0 whatever its factor is. A state of the grid takes part when it is on and a rate above
/// 0 leads into it, one of the table when a rate above 0 leads into it.
///
/// Reads:   the active form of `Model`, `Stimulus.Profile`.
/// Writes:  `Model.RateMatrix`; with the table also `Model.TableStateOn` and `Model.Depend`.
QMatrix ActiveQMatrix(int point);

/// Works out the equilibrium of the scheme at point `point` of the stimulus, held to the profiles. With
/// `report` the panel is shown and told the matrix, the time constants and the equilibrium.
///
/// Unless `Model.FitActive` the rates of the active form are read from its panel first, for the grid the run
/// settings as well, and the panel tells the time.
///
/// Writes:  `Result.EquilibriumOccupancy`, 0 for states that do not take part and for all where there is no
///          equilibrium: without states, or with a rate that is not finite; and what ActiveQMatrix writes.
/// Tells:   on the console, "Too many iterations in hqr" and "Singular matrix in routine ludcmp".
/// @return  the solution, without its time constants unless `report`
QMatrixSolution QMatrixAnalysis(bool report, int point);

/// Whether the last analysis left an equilibrium in `Result.EquilibriumOccupancy`.
bool HasEquilibrium();

}  // namespace zelvane
