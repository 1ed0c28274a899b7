// The cubic spline through values at increasing times.
#pragma once

#include <span>

namespace zelvane {

/// Interpolates `values` at `times` with a cubic spline. Writes the spline at 0, interval, 2 x interval ...
/// to `samples`.
///
/// @param times     strictly increasing, any unit of time, as many as `values`, at least one
/// @param interval  between samples, the unit of `times`, above 0
///
/// The first derivative at an end is that of the line to the neighbouring knot. Before the first knot the spline
/// continues its first piece. After the last knot it has the value of this knot. A single knot gives a constant.
/// Calculates in double. Source: Press, Teukolsky, Vetterling & Flannery (1992), Numerical Recipes in C, 2nd ed.,
/// section 3.3.
void SplineToSamples(std::span<const double> times, std::span<const double> values, double interval,
                     std::span<float> samples);

}  // namespace zelvane
