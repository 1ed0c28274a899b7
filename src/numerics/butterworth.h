// Butterworth filters of even order, high-pass and band-pass.
//
//   Bw_HPF  Bw_BPF
//
// Each is a cascade of second-order sections made from the analogue poles by the bilinear transform, its
// corners warped beforehand so that they lie at -3 dB where they were asked for. The sections are
// state-variable filters, which keep their accuracy at corners of a millionth of the sampling rate, where the
// coefficients of the direct forms cancel. Sources: Butterworth (1930), Experimental Wireless 7, 536-541;
// Zavalishin (2018), The Art of VA Filter Design, chapters 4 and 5.
#pragma once

#include <span>

namespace zelvane {

inline constexpr int BwMaxOrder = 8;

/// High-pass filters `input` into `output`, which has the same length and may be the same array.
///
/// @param rate    samples a second, above 0
/// @param corner  Hz; -3 dB lies here
/// @param order   2, 4, 6 or 8: the power with which the gain falls below the corner
///
/// The filter starts as though the first finite sample had stood for ever, so a constant gives 0 from the
/// start. A sample that is not finite counts as the one before it. A corner at or below 0, or nan, sets no
/// limit: output = input, as with an order that is none of these or a rate that is not above 0. A corner at
/// or above half the rate lets nothing pass: 0.
void Bw_HPF(std::span<const double> input, double rate, double corner, int order, std::span<double> output);

/// Band-pass filters `input` into `output`, which has the same length and may be the same array: -3 dB at
/// `low` and at `high` Hz, and beyond each the gain falls with the power `order`.
///
/// Start, samples that are not finite, `rate` and `order` as in Bw_HPF. A `low` at or below 0, or nan, sets
/// no limit there (a low-pass filter is left), nor does a `high` at or above half the rate, or nan (a
/// high-pass filter is left). A band that is empty (`low` at or above `high`, or at or above half the rate)
/// gives 0.
void Bw_BPF(std::span<const double> input, double rate, double low, double high, int order,
            std::span<double> output);

}  // namespace zelvane
