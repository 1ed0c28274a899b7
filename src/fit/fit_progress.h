// Progress of a session of a waveform fit: its numbers, its curve, its stop.
//
//   BeginFitProgress  StopInPass  StopOfEvaluation  ShowFitProgress  EvaluationsPerSecond  FitSeconds
#pragma once

#include <string>

namespace zelvane {

/// Clears the numbers and the curve, and forgets an earlier wish to stop.
void BeginFitProgress();

/// Handles waiting user events and returns whether the user wants to stop.
bool StopInPass();

/// Lets a window repaint, at most about 40 times a second, during a long simulation. Returns whether the user wants to
/// stop; the last run of the best vertex takes no stop in its first two seconds.
bool StopOfEvaluation();

/// Stores the normalised residual of the best vertex, adds a point to the curve and announces FitProgressed. Unless
/// `now`, does this about 20 times a second only.
void ShowFitProgress(bool now);

/// Return the evaluations per second and the length (s) of the session so far.
double EvaluationsPerSecond();
double FitSeconds();

/// Returns the line of the log box for the evaluation of a column.
std::string EvaluationText(int column);

}  // namespace zelvane
