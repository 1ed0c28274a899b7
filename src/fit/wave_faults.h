// What a user must know about the waveforms before they are fitted.
//
//   TellWaveFaults  WaveIntervalsDiffer
#pragma once

namespace zelvane {

/// Goes through all loaded waveforms and tells, by one note for each kind of fault, which of them have no fit points,
/// a recording or stimulus that ends before the fit, a baseline outside the record, or an interval of their own.
void TellWaveFaults();

/// Returns whether recording and stimulus of any loaded waveform have intervals that differ by more than
/// LargestIntervalDifference.
bool WaveIntervalsDiffer();

/// Intervals (ms) that differ by less count as equal.
inline constexpr double LargestIntervalDifference = 0.0001;

}  // namespace zelvane
