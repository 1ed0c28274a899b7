// Measures of one response. The functions use their arguments and no stores.
//
//   One after the other   BaselineOf  PeakOf  IntegralOf  RiseOf  DecayOf
//   The whole sequence    MeasureResponse
//   Levels                DecayLevel  LatencyLevel
//
// A trace has one sample per interval. Peaks and levels use the absolute deviation from the baseline, so
// inward and outward currents need no switch. Sums are 32-bit floats in the order of the samples (the mean
// of the baseline is a double), so equal samples give equal bits.
//
// The functions read no sample outside the trace. They cut a window at its ends, and leave out an
// interpolation that needs a sample outside. ResponseMeasures::measured lists the successful measures. Do
// not show the other fields: they keep an old value, or get a value without meaning.
#pragma once

#include <cstdint>
#include <span>

namespace zelvane {

/// The measures that the last analysis truly made. A field without its bit has the value of an earlier
/// response, or a number for a level that the response never crossed.
enum MeasuredBits : unsigned {
  MeasuredBaseline = 1U << 0U,
  MeasuredVariance = 1U << 1U,
  MeasuredPeak = 1U << 2U,  // PeakValue, PeakPos
  MeasuredAmplitude = 1U << 3U,
  MeasuredRise = 1U << 4U,  // RiseTime, RisePoints, RiseStartPos, RiseEndPos
  MeasuredSlope = 1U << 5U,
  MeasuredDecay = 1U << 6U,
  MeasuredWidth = 1U << 7U,
  MeasuredLatencyRise = 1U << 8U,
  MeasuredIntegral = 1U << 9U,      // Integral, Coastline
  MeasuredLatencyPeak = 1U << 10U,  // not for a trace that stays on its baseline
};

/// The measures of one response. A measure writes only its own fields.
struct ResponseMeasures {
  unsigned measured = 0;  // MeasuredBits

  float Baseline = 0.0F;     // trace units
  float BaselineVar = 0.0F;  // squared units
  float PeakValue = 0.0F;    // trace units, baseline not subtracted
  int PeakPos = 0;           // sample
  float RiseTime = 0.0F;     // ms
  int RisePoints = 0;        // samples between the rise levels
  int RiseStartPos = 0;      // sample
  int RiseEndPos = 0;        // sample
  float RiseSlope = 0.0F;    // trace units per ms
  float DecayTime = 0.0F;    // ms
  float FracWidth = 0.0F;    // ms
  float LatencyRise = 0.0F;  // ms
  float LatencyPeak = 0.0F;  // ms
  float Integral = 0.0F;     // trace units x ms
  float Coastline = 0.0F;    // trace units
};

/// The settings of the measures of a response.
struct MeasureSettings {
  float intervalMs = 0.0F;     // between two samples
  float baselineStart = 0.0F;  // ms
  int baselinePts = 0;
  float startAnalysis = 0.0F;  // ms
  int peakSearchPts = 0;       // positions to try after the first
  int peakAvePts = 1;
  int peakOption = 1;  // 0 first sample of the window, 1 middle, 2 one past its end
  float riseStartFrac = 0.1F;
  float riseEndFrac = 0.9F;
  float fracDecay = 0.62F;
  float latencyPos = 0.0F;  // ms
  float latencyFrac = 0.1F;
  std::int64_t integralPts = 0;
};

/// Measures mean and sample variance of samples start .. start + count - 1. Cuts the range at the end of
/// the trace. Changes nothing when the range begins outside the trace, or has only its last sample.
void BaselineOf(std::span<const float> trace, std::int64_t start, std::int64_t count,
                ResponseMeasures& measures);

/// Moves a window of `width` samples over `positions` + 1 positions from `start`. Selects the window with
/// the largest absolute sum of deviations from `baseline`, and the first of equal windows. Leaves out
/// samples after the end. Changes nothing when the width is below 1 or the start is outside the trace.
void PeakOf(std::span<const float> trace, std::int64_t positions, std::int64_t start, float baseline,
            std::int64_t width, const MeasureSettings& settings, ResponseMeasures& measures);

/// Measures the area between trace and baseline by the trapezoid rule over `count` intervals from `start`,
/// in units x ms. Also sets the coastline, the sum of the sizes of all steps from sample to sample. If
/// `start` is 0, the first half term is that of sample 0 and the sum begins at sample 2.
float IntegralOf(std::span<const float> trace, std::int64_t start, std::int64_t count, float baseline,
                 float intervalMs, ResponseMeasures& measures);

/// The reason for a rise that was not measured. Its old results then stay.
enum class RiseFault { None, FractionsInWrongOrder, StartAfterEnd, PeakBeforeStart };

/// Measures the interpolated time between the two rise levels, from the peak and the baseline in
/// `measures`, and the regression slope of the samples between them.
RiseFault RiseOf(std::span<const float> trace, const MeasureSettings& settings, ResponseMeasures& measures);

/// Does the same for sweeps that are averaged: without a foot the rise begins at the start of the analysis and not at the
/// sample before the peak.
RiseFault WaveRiseOf(std::span<const float> trace, const MeasureSettings& settings,
                     ResponseMeasures& measures);

/// Measures the time from the peak to the decay level, the width at this level, and the latency of the
/// rise. If the trace does not cross a level, the field gets the last position and the bit of the measure
/// stays unset.
void DecayOf(std::span<const float> trace, const MeasureSettings& settings, ResponseMeasures& measures);

/// Makes all measures of a response in order. Does nothing when `settings.intervalMs` is 0.
RiseFault MeasureResponse(std::span<const float> trace, const MeasureSettings& settings,
                          ResponseMeasures& measures);

/// Returns the level of the decay and width measures and of the rise latency, in trace units.
float DecayLevel(const MeasureSettings& settings, const ResponseMeasures& measures);
float LatencyLevel(const MeasureSettings& settings, const ResponseMeasures& measures);

}  // namespace zelvane
