// Counts of samples that panels show in ms.
#pragma once

namespace zelvane {

/// Returns the length of a number of samples in ms.
double CountToMs(double count);

/// Returns the whole samples of a length in ms, truncated, after the rounding of its decimals. Without an interval
/// returns NaN.
double MsToCount(double ms);

/// Cuts a stretch of `count` samples that would end after the record, so that ten samples stay free behind it.
void CutStretch(float startMs, int& count);

}  // namespace zelvane
