// Settings and results of the measures of a response, and the table of results. Data only.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "analysis/measures.h"

namespace zelvane {

inline constexpr int MaxAnalysisRows = 1000;  // of the results table; the last row is never filled

/// Columns of the results table that hold values: AnalysisRow::value[FirstValueColumn..AnalysisColumns].
inline constexpr int AnalysisColumns = 21;
inline constexpr int FirstValueColumn = 4;

/// A row of the results table.
struct AnalysisRow {
  std::string fileName;  // without the folder
  int episode = 1;
  std::array<float, AnalysisColumns + 1> value{};    // columns 4 to 21
  std::array<bool, AnalysisColumns + 1> measured{};  // whether the column was measured
  bool filled = false;                               // the row has a response
};

/// Rows that could not be written to a measures file. The next save writes them first.
struct UnwrittenRows {
  std::string path;
  std::string text;  // the rows, after the header if the file needs it
  int count = 0;
};

struct AnalysisStore {
  float BaselineStart = 1.0F;  // ms
  int BaselinePts = 1;         // points
  float StartAnalysis = 1.0F;  // ms
  int PeakSearchPts = 1;       // positions to try
  int PeakAvePts = 1;          // width of the sliding window
  int PeakOption = 1;          // 0 first sample of the window, 1 middle, 2 one past the end
  float RiseStartFrac = 0.1F;
  float RiseEndFrac = 0.9F;
  float FracDecay = 0.62F;
  float LatencyPos = 1.0F;  // ms
  float LatencyFrac = 0.1F;

  int MeasureWhileMoving = 0;  // 1 = cursors and settings show live measures, which are no results

  int ViewedPoints = 10240;  // samples across the x axis of the graph in front

  int AutoSaveMeasures = 0;
  int VerifyMeasures = 0;
  std::array<int, 4> AnalysisDisplay{};  // display switches of the analysis panel, from index 1

  // -- The last response that was analysed --
  int Analysed = 0;  // 1 = a response was analysed since the start
  ResponseMeasures Measures;
  MeasureSettings MeasuredWith;  // the settings that gave the measures
  std::string MeasuredFile;      // path of its file: the recording, or the model
  int MeasuredEpisode = 1;
  int FittedMode = 0;  // FitMode of the exponential fit of this response; 0 = none ran

  // -- Results table and measures file --
  std::vector<AnalysisRow> Rows = std::vector<AnalysisRow>(MaxAnalysisRows + 1);  // from 1
  int TableRow = 1;                                                               // next row to fill
  std::string MeasuresFileName;
  int MeasuresFileOpen = 0;  // 1 = a measures file is in use and its header is written
  int MeasuresCount = 0;     // rows written to it
  UnwrittenRows Unwritten;
  int StopAnalysis = 0;  // stop switch of the automatic analysis

  // -- Views --
  int ShowFitResidual = 0;  // 1 = the residual of the fit stands below the response
  int AutoRescale = 1;      // the y axis follows the samples in view
  float YMinGain = 1.0F;    // multiply the y range at the time when AutoRescale was switched off
  float YMaxGain = 1.0F;
};

inline AnalysisStore Analysis;

}  // namespace zelvane
