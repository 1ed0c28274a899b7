// The comparison of a recording with its simulation: baselines, peaks, and the samples that are compared.
//
//   Arithmetic         WaveBaseline  PeakOfWave  ForComparedSamples
//   The set            CompareSteps  SampleAtTime  RecordingOf  BaselineOfRecording
//                      PeakOfRecording
//   Before a session   ValidPairs  FitDataBuild  NormalizeWaves  FirstPeakIsLargest
//
// The arithmetic uses its arguments and no stores. A sample after the end of a record is 0 and is never read.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "fit/fit_store.h"
#include "platform/outcome.h"

namespace zelvane {

/// Returns the mean of `count` samples from `start`, summed in double. Samples after the end of the record do not
/// count. Without samples returns 0.
float WaveBaseline(std::span<const float> record, std::int64_t start, std::int64_t count);

/// The peak of a record: the mean of the window that is farthest from the baseline, and its sample.
struct WavePeak {
  float value = 0.0F;  // the baseline is not subtracted; 0 without a window
  int sample = 0;
};

/// Searches the peak with windows of `width` samples at `start` and the next `span` samples, as PeakOf does.
/// @param option  sample that is the place of a window: 0 the first, 1 the middle one, 2 the one after the last
WavePeak PeakOfWave(std::span<const float> record, std::int64_t start, std::int64_t span, float baseline,
                    int width, int option = 1);

/// How densely a fit compares: the first `dense` samples one by one, then every `parse`-th.
struct ComparisonSteps {
  int dense = 0;
  int parse = 1;  // below 1 counts as 1
};

/// Calls `visit(c, offset)` for each sample to compare among `samples` samples: `c` counts from 0, `offset` is the
/// distance from the first sample. Visits at most MaxWaveformPoints samples. Returns their number.
template <typename Visit>
int ForComparedSamples(std::int64_t samples, ComparisonSteps steps, Visit&& visit) {
  int c = 0;
  std::int64_t step = 1;
  for (std::int64_t offset = 0; offset < samples && c < MaxWaveformPoints; offset += step) {
    if (c == steps.dense) step = std::max(steps.parse, 1);
    visit(static_cast<std::size_t>(c), static_cast<int>(offset));
    ++c;
  }
  return c;
}

/// Returns the steps of the settings: `Fit.FitDualSpeed` and `Fit.FitParse`.
ComparisonSteps CompareSteps();

/// Returns the sample at a time (ms) by TimeIndex with `Model.ADInterval`; for a time before the record 0.
std::int64_t SampleAtTime(float timeMs);

/// Returns the samples of a waveform that are from its file.
std::span<const float> RecordingOf(const FitWaveform& wave);

/// Returns the baseline of a recording: the mean over its baseline window.
float BaselineOfRecording(int w);

/// Returns the peak of a recording among `span` samples from `DataFitStart`, with windows of `FitPeakAve` samples.
WavePeak PeakOfRecording(int w, std::int64_t span, float baseline);

/// Checks that each of the 15 lines has both a recording and a stimulus, or neither. Shows a message for each line
/// with one of them and turns both its switches off; `WaveLoaded` stays. A note names a waveform in the fit whose
/// stimulus is empty.
void ValidPairs();

/// Fills `FitX`, `FitData` and `FittedCount` of each loaded waveform from its recording; after its end with 0 minus
/// the baseline. A note tells of a recording that has samples without a number among them.
void FitDataBuild();

/// Normalises the loaded recordings in place to the peak of waveform 1: (x - baseline) / (peak - baseline 1). Acts
/// while `Fit.FitNormalized` is 1 and the recordings are not normalised yet. Without a recording shows a message
/// and turns the switch off. Without a peak shows a message and divides by 1.
/// @return Done, or Refused without a recording
Outcome NormalizeWaves();

/// Checks before one step that no peak is above that of waveform 1. Peaks are compared with their signs. Shows a
/// message for the first larger one and returns false.
bool FirstPeakIsLargest();

}  // namespace zelvane
