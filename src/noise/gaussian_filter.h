// The one low-pass filter of the program, on the trace and the profiles. Its engine is in
// numerics/gaussian_kernel.h.
#pragma once

#include <span>

namespace zelvane {

/// Low-pass filters `trace` in place with a Gaussian kernel, without phase shift.
///
/// @param trace  one sample per `Model.ADInterval`, any unit
/// @param fc     -3 dB corner, kHz
///
/// The first and last samples, which the kernel does not cover, keep their values. A corner at or below 0, or
/// nan, leaves the trace unchanged.
///
/// Reads:   `Model.ADInterval`, `Model.FitActive`, `Noise.RecordPoints`.
/// Tells:   "! Warning" at a corner above half the sampling rate (the trace is filtered), and for a kernel of
///          more than 1000 coefficients a side or one too long for the record (the trace is as it was). Silent
///          during a fit.
void GaussianFilter(std::span<float> trace, float fc);

}  // namespace zelvane
