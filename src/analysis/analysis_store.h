// Settings of the measures of a response. Data only.
#pragma once

#include <array>

namespace zelvane {

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

  int ViewedPoints = 10240;  // samples across the x axis of the graph in front

  int AutoSaveMeasures = 0;
  int VerifyMeasures = 0;
  std::array<int, 4> AnalysisDisplay{};  // display switches of the analysis panel, from index 1
};

inline AnalysisStore Analysis;

}  // namespace zelvane
