// The average of sweeps: settings, measures of the present sweep, and the sums. Data only.
#pragma once

#include <span>
#include <vector>

namespace zelvane {

inline constexpr int MaxAveragePoints = 2'000'001;
inline constexpr int MaxFaintSweeps = 200;

/// Codes of AveragesStore::AlignMode: what lays a sweep on the average.
inline constexpr int AlignByFit = 1;     // least squares of the rise against the average so far
inline constexpr int AlignAtCursor = 2;  // free cursor 7
inline constexpr int AlignAtRise = 3;    // steepest rise
inline constexpr int AlignAtPeak = 4;
inline constexpr int AlignNot = 5;  // added as it lies

/// A sweep of the average for the eye: some of its samples, as aligned.
struct FaintSweep {
  double start = 0.0;  // place of the first sample
  double step = 1.0;
  std::vector<float> samples;
};

struct AveragesStore {
  // -- Sums of the sweeps as aligned: MaxAveragePoints places each, set once by AllocateStores --
  std::span<float> WaveSum;
  std::span<float> WaveCount;        // sweeps that reached the place
  std::span<float> WaveNormSum;      // percent of the peak of each sweep
  int AverageUsed = 0;               // this place and all after it are 0
  std::vector<double> SweepMean;     // running mean at each place in use
  std::vector<double> SweepSquares;  // running sum of squared deviations from it
  std::vector<FaintSweep> Faint;     // the first sweeps

  // -- Settings --
  float WaveBaselineStart = 1.0F;  // ms
  int WaveBaselinePts = 50;        // points
  float WaveStartAnalysis = 1.0F;  // ms
  int WavePeakSearchPts = 1;       // positions to try
  int WavePeakAve = 1;             // width of the sliding window
  float WaveRiseStartFrac = 0.2F;
  float WaveRiseEndFrac = 0.8F;
  float WaveLatencyPos = 1.0F;  // ms, cursor 9
  float WaveLatencyFrac = 0.1F;
  int AlignMode = AlignByFit;
  int AlignRange = 2;   // times the rise points over which sweeps are compared
  int SlopePoints = 6;  // window of the search for the steepest rise
  int WaveBaselineCorrect = 0;
  int ShowAverage = 0;
  float ManualRise = 0.0F;    // ms, last typed time of cursor 7
  double AlignCursor = 70.0;  // sample at cursor 7

  // -- The present sweep --
  float WaveBaseline = 0.0F;
  float WavePeak = 0.0F;
  int WavePeakPos = 0;
  int WaveRiseStartPos = 0;
  int WaveRiseEndPos = 0;
  float WaveRiseTime = 0.0F;  // ms
  int WaveRisePoints = 1;
  int SteepestPos = 0;
  int WaveMeasured = 0;  // 1 = the measures belong to the present trace

  // -- The average --
  int AverageCount = 0;  // sweeps so far
  int AlignAnchor = 0;   // alignment point of the first
};

inline AveragesStore Averages;

}  // namespace zelvane
