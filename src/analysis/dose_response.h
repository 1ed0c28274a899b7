// Dose-response curves: pairs of concentration and response, and the Hill equation through them.
//
//   The curve       HillCurve  HillAt
//   The pairs       CountDosePairs  KeepLastDoses  KeepFittedDoses  AddDose  ClearDoses
//   Seeds, limits   BeginDoseResponse  SeedFromPairs
//   The fit         FitDoses
//   A trace with a template   TakeTemplate  AnalyzeTemplate; its text is in dose_files.h
//
// response = Min + |Max - Min| / (1 + (EC50 / concentration)^Slope). Pairs and results are in dose_store.h, the panel is
// in dose_panel.h, simulated doses are in dose_runs.h.
#pragma once

#include <span>

#include "analysis/dose_files.h"
#include "platform/outcome.h"
#include "screen/listeners.h"

namespace zelvane {

/// The pairs, the parameters or the result of the fit have changed.
inline Listeners<> DosesChanged;

/// Returns the Hill curve (EC50, slope, maximum and minimum are `value`[1..4]) at one concentration above 0.
double HillAt(std::span<const double> value, double concentration);

/// Fills `curve` with the Hill curve at the concentrations `x`. At a concentration of exactly 0 it uses the quotient
/// EC50 / x of the pair before; without one the curve is the minimum. A negative EC50 is replaced by its magnitude.
void HillCurve(std::span<double> value, std::span<const float> x, std::span<float> curve);

/// Makes `Dose.DoseCount` the pairs up to the last response that is not 0.
void CountDosePairs();

/// Keeps the present pairs, or those of the last fit, as the last curve.
void KeepLastDoses();
void KeepFittedDoses();

/// Appends a pair. Returns false when the table is full.
bool AddDose(float concentration, float response);

/// Empties the table; the pairs become the last curve.
void ClearDoses();

/// Begins a new curve: limits and seeds for responses between 0 and 1, with the limits in force. Writes
/// `Dose.DoseFitLimits` and `Parameters.AnalysisFitLimits`.
void BeginDoseResponse();

/// Sets seeds and limits that suit the present pairs: from the first and the last of them.
void SeedFromPairs();

/// Fits the Hill curve to the pairs by `runs` runs of the simplex with 1000 iterations, each from the result of the run
/// before. `Parameters.FitMode` becomes FitDoseResponse.
/// @return Done; Refused, with a note, without pairs, or when a pair is not a number; Stopped by the user
Outcome FitDoses(int runs);

/// Replaces the pairs by the means of the stretches of the trace. An empty stretch has the response 0. The former pairs
/// become the last curve.
void TakeTemplate(std::span<const DoseStretch> stretches);

/// Fits the pairs of a template with the limits in force for this fit. FitMode and the switch of the limits then
/// return.
/// @return as FitDoses
Outcome AnalyzeTemplate();

}  // namespace zelvane
