// The analysis of the response in the trace. These operations work on the stores; users know them by name.
//
//   One measure          MeasureBaseline  PeakSearch  MeasureIntegral  MeasureRise  MeasureDecay
//   The whole sequence   AnalyzeTrace  ReanalyzeTrace  MeasureTrace
//   A new trace          ForgetMeasures  ConnectMeasures
//   A series             series.h
//   The fit              exponential_fit.h
//   Settings             StoredMeasureSettings
//   What was measured    RecordedTrace  DataFilePath  DataFileName  DataEpisode
//
// The calculations are in measures.h, the episodes in episodes.h, the table in results_table.h, its files in
// results_files.h, the panel in analysis_panel.h. The functions use the first `Model.NumPoints` samples of
// `Trace.SimTrace`, unless their comment says otherwise.
#pragma once

#include <span>
#include <string>

#include "analysis/measures.h"
#include "platform/outcome.h"

namespace zelvane {

/// Returns the samples of the trace with the response.
std::span<const float> RecordedTrace();

/// Returns the path of the file of the response: the recording, or the model.
std::string DataFilePath();

/// Returns the same name without the folder.
std::string DataFileName();

/// Returns the episode; 1 for a simulation.
int DataEpisode();

/// Measures mean and variance of `count` samples from `start`. Writes `Baseline` and `BaselineVar` and
/// shows them.
void MeasureBaseline(int start, int count);

/// Finds the peak of any trace array, at most its first `Model.NumPoints` samples. Writes:  `PeakValue`,
/// `PeakPos`, `LatencyPeak`, and shows them.
void PeakSearch(std::span<const float> trace, int positions, int start, float baseline, int width);

/// Measures the area above `baseline`, and `Coastline`.
float MeasureIntegral(std::span<const float> trace, int start, int count, float baseline);

/// Measures rise time, rise points and slope with the last peak and baseline. When the fractions are in the
/// wrong order, or the peak is before the start of the analysis, shows a message and keeps the old results.
void MeasureRise();

/// Measures decay time, width and rise latency with the last peak and baseline.
void MeasureDecay();

/// Measures the response with the settings of the panel, fits it if `Parameters.FitMode` selects a fit, and shows
/// the result on the plot. Returns Refused, without a message, when `Model.ADInterval` is 0.
Outcome ReanalyzeTrace();

/// Does the same and then stores the result: in a new row of the table and, when
/// `Analysis.AutoSaveMeasures` is on, in the measures file.
/// @return as ReanalyzeTrace
Outcome AnalyzeTrace();

/// Makes all measures and the exponential fit with the settings of the stores, without panel and plot, and
/// notes the file and the episode that they belong to. Shows a message for a measure that failed. Returns
/// Refused, without a message, when `Model.ADInterval` is 0.
Outcome MeasureTrace();

/// Takes the measures from the panel and the plot, because the trace is new or will soon change. The results
/// keep their values.
void ForgetMeasures();

/// Connects the measures to the trace: a change of the trace empties them.
void ConnectMeasures();

/// Returns the settings of the stores: `Analysis`, `AnalysisFit` (AnalysisFitPts x AnalysisParse),
/// `Model.ADInterval`.
MeasureSettings StoredMeasureSettings();

}  // namespace zelvane
