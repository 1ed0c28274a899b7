// The Q matrix of the program's scheme. The engine is in kinetics/q_matrix.h.
//
//   QMatrixAnalysis  ActiveQMatrix  StimulusPointAt  TimeOfStimulusPoint  HasEquilibrium
#pragma once

#include "kinetics/q_matrix.h"

namespace zelvane {

/// The point with the resting stimulus, unless the stimulus begins with the sweep.
inline constexpr int RestingPoint = 1;

/// Returns the point of the stimulus at `timeMs`, which is rounded to a 32-bit float first: its TimeIndex, from 1
/// to the last point.
int StimulusPointAt(double timeMs);

/// Returns the time (ms) of a point for people: point x `Model.ADInterval` as a short decimal. Where rounding would
/// give the point before, returns the next 32-bit float, so that StimulusPointAt gives the point again, also for
/// the text of nine digits.
double TimeOfStimulusPoint(int point);

/// Returns the rate matrix of the active form at point `point` of the stimulus: each rate times its
/// stimulus factor. A rate of 0 stays 0 for any factor. A state of the grid takes part when it is on and a
/// rate above 0 leads into it. A state of the table takes part when a rate above 0 leads into it.
///
/// Reads:   the active form of `Model`, `Stimulus.Profile`.
/// Writes:  `Model.RateMatrix`; with the table also `Model.TableStateOn` and `Model.Depend`.
QMatrix ActiveQMatrix(int point);

/// Calculates the equilibrium of the scheme at point `point` of the stimulus, limited to the profiles. The
/// panel's command is AnalyzeOnPanel (q_matrix_panel.h).
///
/// Writes:  `Result.EquilibriumOccupancy`, and the fields of ActiveQMatrix. The occupancy is 0 for states
///          that do not take part. All are 0 without an equilibrium: without states, or with a rate that is
///          not finite.
/// Tells:   on the console, "Too many iterations in hqr" and "Singular matrix in routine ludcmp".
/// @return  the solution, without its time constants unless `timeConstants`
QMatrixSolution QMatrixAnalysis(bool timeConstants, int point);

/// Returns whether the last analysis wrote an equilibrium to `Result.EquilibriumOccupancy`.
bool HasEquilibrium();

}  // namespace zelvane
