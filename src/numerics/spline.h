// The cubic spline through values at rising times.
#pragma once

#include <span>

namespace zelvane {

/// Interpolates `values` at `times` with a cubic spline and writes it at 0, interval, 2 x interval ... to
/// `samples`.
///
/// @param times     strictly rising, any unit of time, as many as `values`, at least one
/// @param interval  between samples, the unit of `times`, above 0
///
/// The first derivatives at the ends are (second - first) / interval and (last - last but one) / interval. A
/// time before the first knot continues the first piece, one behind the last knot takes its value, and a
/// single knot gives a constant. Worked out in double. Source: Press, Teukolsky, Vetterling & Flannery
/// (1992), Numerical Recipes in C, 2nd ed., section 3.3.
void SplineToSamples(std::span<const double> times, std::span<const double> values, double interval,
                     std::span<float> samples);

}  // namespace zelvane
