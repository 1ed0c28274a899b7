// The high-pass and band-pass copy of the trace, on which variance and spectrum work.
//
//   TraceFilterUpdate  HoldLowPassToNyquist
#pragma once

namespace zelvane {

/// Brings `Noise.FilteredTrace` up to date: the trace through an eighth-order Butterworth high-pass filter
/// with its corner at `Noise.HighPassFc`, then, with `Noise.LowPassOn`, through an eighth-order band-pass
/// filter from there to `Noise.LowPassFc` (Hz).
///
/// A sample of the trace that is not finite gives nan, and its neighbours are filtered as though the sample
/// before it stood there. Does nothing while `Trace.TraceValid` is 0. Samples behind the record are 0. Reads:
/// `Trace.SimTrace`, `Model.NumPoints`, `Model.ADInterval`, the corners. Writes: `Noise.FilteredTrace`.
void TraceFilterUpdate();

/// Holds `Noise.LowPassFc` to what the sampling can carry: above the Nyquist frequency, 1000 / (2 x
/// ADInterval) Hz, the user is told and it becomes that frequency less 1 Hz.
void HoldLowPassToNyquist();

}  // namespace zelvane
