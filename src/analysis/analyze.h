// The analysis of the response in the trace: operations that users know by name, over the stores.
//
//   One measure          MeasureBaseline  PeakSearch  MeasureIntegral  MeasureRise  MeasureDecay
//   The whole sequence   AnalyzeTrace  ReanalyzeTrace  MeasureTrace
//   A series             BeginSeries  EndSeries
//   Settings             StoredMeasureSettings
//   What was measured    RecordedTrace  DataFilePath  DataFileName  DataEpisode
//
// The arithmetic is in measures.h, the walk through a file in episodes.h, the table in results_table.h, its
// files in results_files.h, the panel in analysis_panel.h. All work on the first `Model.NumPoints` samples of
// `Trace.SimTrace` unless said.
#pragma once

#include <span>
#include <string>

#include "analysis/measures.h"
#include "platform/outcome.h"

namespace zelvane {

/// The samples of the trace that hold the response.
std::span<const float> RecordedTrace();

/// Path of the file that the response came from: the recording, or the model that was run.
std::string DataFilePath();

/// The same without its folder.
std::string DataFileName();

/// Its episode; 1 for a simulation.
int DataEpisode();

/// Mean and variance of `count` samples from `start`, into `Baseline` and `BaselineVar`, and shows them.
void MeasureBaseline(int start, int count);

/// Finds the peak of any trace array, at most its first `Model.NumPoints` samples. Writes:  `PeakValue`,
/// `PeakPos`, `LatencyPeak`, and shows them.
void PeakSearch(std::span<const float> trace, int positions, int start, float baseline, int width);

/// Area above `baseline`; sets `Coastline`.
float MeasureIntegral(std::span<const float> trace, int start, int count, float baseline);

/// Rise time and its companions from the latest peak and baseline. Tells of fractions in the wrong order and
/// of a peak before the start of the analysis; the results then stay.
void MeasureRise();

/// Decay time, width and rise latency from the latest peak and baseline.
void MeasureDecay();

/// Measures the response with the settings of the panel, fits it where `Fit.FitMode` says so, and shows the
/// result on the plot. Refused, without a message, when `Model.ADInterval` is 0.
Outcome ReanalyzeTrace();

/// A cursor or a field of its place was moved: a response that has been measured is measured again and shown,
/// without a word where a measure fails and without a row.
void MeasureAgain();

/// The same, and then keeps it: in the measures file when `Analysis.AutoSaveMeasures` is on, and in a new row
/// of the table.
/// @return as ReanalyzeTrace
Outcome AnalyzeTrace();

/// A series of responses begins: until EndSeries each reason why a rise cannot be measured is told once,
/// since the same settings raise it at every response.
void BeginSeries();
void EndSeries();

/// All measures and the exponential fit with the settings of the stores, without panel and plot. Tells what
/// stopped a measure. Refused, without a message, when `Model.ADInterval` is 0.
Outcome MeasureTrace();

/// The trace is a new one, or is about to be: nothing is measured on it yet.
void ForgetMeasures();

/// Lets the measures follow the trace: a change forgets them.
void ConnectMeasures();

/// Returns whether `fitMode` is one of the exponential fits of a response.
constexpr bool IsExponentialFit(int fitMode) {
  return fitMode >= 1 && fitMode <= 3;
}

/// Settings of the stores: `Analysis`, `Fit` (AnalysisFitPts x AnalysisParse), `Model.ADInterval`.
MeasureSettings StoredMeasureSettings();

}  // namespace zelvane
