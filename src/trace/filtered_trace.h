// The high-pass and band-pass copy of the trace, for variance and spectrum.
//
//   TraceFilterUpdate  HoldLowPassToNyquist
#pragma once

namespace zelvane {

/// Fills `Noise.FilteredTrace`: filters the trace with an eighth-order Butterworth high-pass filter with
/// the corner `Noise.HighPassFc`. With `Noise.LowPassOn`, also filters it with an eighth-order band-pass
/// filter from `Noise.HighPassFc` to `Noise.LowPassFc` (Hz).
///
/// A sample that is not finite becomes nan. Its neighbours are filtered as if it had the value of the
/// sample before it. Samples after the record are 0. Does nothing while `Trace.TraceValid` is 0.
///
/// Reads:   `Trace.SimTrace`, `Model.NumPoints`, `Model.ADInterval`, the corners.
/// Writes:  `Noise.FilteredTrace`.
void TraceFilterUpdate();

/// Limits `Noise.LowPassFc` to the Nyquist frequency, 1000 / (2 x ADInterval) Hz. If the corner is higher,
/// shows a message and sets it to this frequency minus 1 Hz.
void HoldLowPassToNyquist();

}  // namespace zelvane
