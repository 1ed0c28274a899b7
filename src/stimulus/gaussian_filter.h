// The low-pass filter of the program, for the trace and the profiles. The calculation is in
// numerics/gaussian_kernel.h.
#pragma once

#include <span>

#include "platform/run_reporter.h"

namespace zelvane {

/// Low-pass filters `trace` in place with a Gaussian kernel, without phase shift.
///
/// @param trace  one sample per `Model.ADInterval`, any unit
/// @param fc     -3 dB corner, kHz
///
/// The kernel does not cover the first and last samples; they keep their values. A corner that is 0,
/// negative or nan leaves the trace unchanged.
///
/// Reads:   `Model.ADInterval`, `Model.RecordPoints`.
/// Tells:   "! Warning" at a corner above half the sampling rate (the trace is filtered). Also "! Warning" for
///          a kernel of more than 1000 coefficients on a side, or one too long for the record (the trace stays
///          unchanged).
void GaussianFilter(std::span<float> trace, float fc, const RunReporter& reporter);

}  // namespace zelvane
