// Butterworth filters of even order, high-pass and band-pass.
//
//   Bw_HPF  Bw_BPF
//
// Each filter is a cascade of second-order sections. The bilinear transform makes them from the analogue
// poles; prewarping puts the -3 dB points exactly at the corners. The sections are state-variable filters.
// They stay accurate at corners of a millionth of the sampling rate, where the coefficients of the direct
// forms cancel. Sources: Butterworth (1930), Experimental Wireless 7, 536-541; Zavalishin (2018), The Art
// of VA Filter Design, chapters 4 and 5.
#pragma once

#include <span>

namespace zelvane {

inline constexpr int BwMaxOrder = 8;

/// High-pass filters `input` into `output`, which has the same length and may be the same array.
///
/// @param rate    samples a second, above 0
/// @param corner  Hz; the -3 dB point
/// @param order   2, 4, 6 or 8: the power with which the gain falls below the corner
///
/// The filter starts as if the first finite sample had lasted for ever, so a constant gives 0 from the start.
/// For a sample that is not finite, uses the sample before it. Copies the input to the output when the corner
/// is nan or not above 0, when the order is another number, or when the rate is not above 0. A corner at or
/// above half the rate gives 0.
void Bw_HPF(std::span<const double> input, double rate, double corner, int order, std::span<double> output);

/// Band-pass filters `input` into `output`, which has the same length and may be the same array. The gain is
/// -3 dB at `low` and at `high` Hz; outside the band it falls with the power `order`.
///
/// Start, samples that are not finite, `rate` and `order` are as in Bw_HPF. If `low` is nan or not above 0,
/// the filter is only a low-pass filter. If `high` is nan or not below half the rate, it is only a
/// high-pass filter. An empty band (`low` at or above `high`, or at or above half the rate) gives 0.
void Bw_BPF(std::span<const double> input, double rate, double low, double high, int order,
            std::span<double> output);

}  // namespace zelvane
