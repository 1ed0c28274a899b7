// The objective of a fit of waveforms: from a vertex of the simplex to its sum of squares.
//
//   Preparing    PrepareObjective
//   Evaluating   RateVertexEval  StimVertexEval  RateVertexRun  StimVertexRun
//   Pieces       WaveAlign  WaveRunPoints  ApplyConstraints
//
// An evaluation runs the model for each loaded waveform under its stimulus, aligns the simulation with the
// recording and sums the squared differences. `FitSession` (session_store.h) has what it prepares.
#pragma once

#include <span>

#include "fit/fit_store.h"
#include "fit/session_store.h"

namespace zelvane {

/// Prepares the evaluations of a session: the data side of the alignment, and the memory of the runs. The
/// settings, waveforms and stimuli must not change until the session ends.
///
/// Reads:   `Fit`, `Model.ADInterval`.
/// Writes:  `FitSession`.
void PrepareObjective();

/// Returns the points of the simulation of a waveform: trunc(1.1 x SimFitStart / interval + 1.1 x NumFitPts +
/// NumAlignPts), not below 0.
int WaveRunPoints(const FitWindow& window);

/// Puts the parameters of a column of `Vertices` into the rates of the active form and applies both tables
/// of constraints. A parameter below 0 enters with its sign changed. Tells each malformed loop and each
/// constraint without a finite result once a session.
void ApplyConstraints(int column);

/// Runs the model for each loaded waveform with the rates of a column and fills `FitSim`. A wish to stop ends
/// it early (`FitSession.stopped`).
void RateVertexRun(int column);

/// Does the same with the stimulus of a column: Drug1 is built from the exponential parameters.
void StimVertexRun(int column);

/// Runs a column and stores its sum of squares, with the penalties of its limits, in row 0 of the column: infinity
/// after a stop. A lower sum than that of `BestVertex` makes its column the best. Adds a line to the log box.
void RateVertexEval(int column);
void StimVertexEval(int column);

/// Returns the sample of the simulation at which it fits the recording best: the offset with the lowest sum of
/// squared differences over the alignment window, in 32-bit floats; the first of equal ones.
///
/// @param hundredfold  100 x recording over the alignment window
/// @param simulated    the simulated trace; samples behind its end are 0
/// @param room         prepared rooms, see PrepareObjective
int WaveAlign(const FitWindow& window, std::span<const float> simulated, float peak, AlignedData& room);

}  // namespace zelvane
