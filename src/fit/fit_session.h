// A session of a waveform fit: what a press of a start button does.
//
//   Sessions          StartRateFit  StartStimFit  OneStep  OneStimStep
//   Without the user  RunRateFit  CompareOnce
//   During            StopFit
//   After             TakeBackFit  KeepFit
//   Fitted values     FittedValuesNow  PutFittedValues  RateIn  RowsOfCurves
//
// A session reads the panels, asks what the situation calls for, prepares the waveforms, runs the simplex as often as
// the restarts demand, reports, and offers to save. Until its last question is answered it changes nothing but the
// settings that it has read. `Model.FitActive` is 1 from then until its end.
#pragma once

#include "fit/session_store.h"
#include "platform/outcome.h"

namespace zelvane {

/// Fits the free rates of the scheme to the loaded waveforms. The best vertex goes into the model, also after a stop.
///
/// @return Done after a convergence or the last iteration (`Vertices.FitResultCode`); Stopped by the user; Refused
///         without waveforms, without free rates or after a "no"; Failed when the log cannot be written
Outcome StartRateFit();

/// Fits the exponential Drug1 stimulus, with the rates held.
/// @return as StartRateFit
Outcome StartStimFit();

/// Runs the model once for each waveform and compares. Offers to export the curves.
/// @return Done, Refused or Stopped
Outcome OneStep();

/// Does the same under the exponential stimulus. Asks nothing about intervals and offers no export.
Outcome OneStimStep();

/// Does what StartRateFit does, with the answers of a caller. Offers no files.
Outcome RunRateFit(const FitAnswers& answers);

/// Runs the model once for each waveform, with the present rates and settings, for the curves. Asks nothing.
void CompareOnce();

/// Ends the session that runs.
void StopFit();

/// Brings back the rates, or the stimulus, of the time before the last session. A second call brings back its result.
/// @return Refused without a session
Outcome TakeBackFit();

/// Saves the model under a name that the user chooses.
/// @return as SaveParameters
Outcome KeepFit();

/// Returns the rates and the stimulus of the model.
FittedValues FittedValuesNow();

/// Puts them into the model and shows them.
void PutFittedValues(const FittedValues& values);

/// Returns the rows of an export of the curves: the largest `NumFitPts` of the loaded waveforms.
int RowsOfCurves();

/// Returns the rate with this code (fit_rows.h).
double RateIn(const FittedValues& values, int code);

}  // namespace zelvane
