// The fit of exponentials to a response: a decay with one or two components, or a rise.
//
//   The fit        FitResponse
//   Its steps      ExpFitPrepare  AnalysisFitResult
//   Engine         ExponentialFormula  FitSamples
//
// The fit begins at the peak, or for a rise at the foot of the rise, and seeds itself from the measures that were just
// made. Settings and results are in analysis_fit_store.h, the points in `Vertices`.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "numerics/exponential_sum.h"
#include "parameters/formula_fit.h"
#include "screen/listeners.h"

namespace zelvane {

/// The record was too short, and `AnalysisFit.AnalysisFitPts` is smaller now.
inline Listeners<> FitPointsReduced;

/// Returns whether `fitMode` is an exponential fit of a response.
constexpr bool IsExponentialFit(int fitMode) {
  return fitMode >= 1 && fitMode <= 3;
}

/// Returns the number of parameters of an exponential fit.
constexpr int ExponentialParams(int fitMode) {
  return fitMode == 2 ? 5 : 3;
}

/// Returns the samples of `points` points from `first`: the first `leading` ones follow each other, the others are
/// `parse` samples apart.
std::vector<int> FitSamples(int first, int points, int leading, int parse);

/// Returns the formula of an exponential fit for the times of its points. Parameters are amplitude, time constant (and
/// again for a second component) and offset. A negative time constant is replaced by its magnitude. Sums are in
/// double.
std::function<void(std::span<double>, std::span<const float>, std::span<float>)> ExponentialFormula(
    int fitMode, DecayTimes times);

/// Prepares the points and the seeds of the fit of `Parameters.FitMode` from the trace and its measures, and builds the
/// first simplex. Shortens a fit that goes beyond the record, with a message.
///
/// Writes:  `Vertices.FitX`, `FitData`, `FormulaPoints`, the simplex; the fitted fields, as seeds.
/// @return why there can be no fit, or an empty text
std::string ExpFitPrepare(FormulaFit& fit);

/// Stores the mean of all vertices as the result of a run of the simplex: amplitudes, time constants, offset, goodness
/// of fit, `Vertices.FitCurve`. The mean is also column 0 of the table.
void AnalysisFitResult(const FormulaFit& fit);

/// Fits the response in the trace, if `Parameters.FitMode` is an exponential fit. In other modes, and when no fit is
/// possible, the fitted fields become 0; a note tells why. Notes also tell of a fit that did not converge.
///
/// Needs the measures of the response. After two seconds the user can stop the fit, which keeps its best values.
void FitResponse();

/// Makes the fitted fields 0 and drops the curve.
void ClearFit();

}  // namespace zelvane
