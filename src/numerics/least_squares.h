// Standard errors of the parameters of a least-squares fit.
#pragma once

#include <optional>
#include <span>
#include <vector>

namespace zelvane {

/// Returns the standard errors of the parameters at the minimum of a sum of squares: the square roots of the diagonal of
/// s^2 (J^T J)^-1, with s^2 the sum of squares divided by points less parameters (linearised covariance; Seber & Wild,
/// Nonlinear Regression, 1989, section 5.1).
///
/// @param jacobian  derivatives of the curve, point after point, `parameters` of them for each
/// @return empty with no more points than parameters, and when the points do not determine all parameters
std::optional<std::vector<double>> StandardErrors(std::span<const double> jacobian, int parameters,
                                                  double sumOfSquares);

}  // namespace zelvane
