// Measures of one response: engines over a trace, without stores.
//
//   One after the other   BaselineOf  PeakOf  IntegralOf  RiseOf  DecayOf
//   The whole sequence    MeasureResponse
//
// A trace holds one sample an interval. Peaks and levels are found on the absolute deviation from the
// baseline, so inward and outward currents need no switch. Sums are 32-bit floats in rising order of the
// samples (the mean of the baseline a double), so that results repeat to the bit.
//
// Nothing outside the trace is read: a window is cut at its ends, and an interpolation that would need a
// sample beyond them is left out. What could be measured is told by ResponseMeasures::measured; the other
// fields keep or take what the arithmetic gives and are not to be shown.
#pragma once

#include <cstdint>
#include <span>

namespace zelvane {

/// Which measures the last analysis truly made. A field without its bit still holds what an earlier response
/// left there, or a number that rests on a level the response never crossed.
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
  MeasuredLatencyPeak = 1U << 10U,  // a trace that stays on its baseline has none
};

/// What was measured of one response. A measure writes its own fields and leaves the others.
struct ResponseMeasures {
  unsigned measured = 0;  // MeasuredBits

  float Baseline = 0.0F;     // trace units
  float BaselineVar = 0.0F;  // squared units
  float PeakValue = 0.0F;    // trace units, not less the baseline
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

/// What the measures of a response are to be made by.
struct MeasureSettings {
  float intervalMs = 0.0F;     // between two samples
  float baselineStart = 0.0F;  // ms
  int baselinePts = 0;
  float startAnalysis = 0.0F;  // ms
  int peakSearchPts = 0;       // positions to try beside the first
  int peakAvePts = 1;
  int peakOption = 1;  // 0 first sample of the window, 1 middle, 2 one past its end
  float riseStartFrac = 0.1F;
  float riseEndFrac = 0.9F;
  float fracDecay = 0.62F;
  float latencyPos = 0.0F;  // ms
  float latencyFrac = 0.1F;
  std::int64_t integralPts = 0;
};

/// Mean and sample variance of samples start .. start + count - 1. A stretch that runs over the end is cut;
/// one that begins outside the trace, or ends with its last sample, changes nothing.
void BaselineOf(std::span<const float> trace, std::int64_t start, std::int64_t count,
                ResponseMeasures& measures);

/// Slides a window of `width` samples over `positions` + 1 places from `start` and keeps the one whose sum of
/// deviations from `baseline` is the largest in size; of equal ones the leftmost. Samples past the end count
/// as none. Changes nothing with a width below 1 or a start outside the trace.
void PeakOf(std::span<const float> trace, std::int64_t positions, std::int64_t start, float baseline,
            std::int64_t width, const MeasureSettings& settings, ResponseMeasures& measures);

/// Area between trace and baseline by the trapezoid rule over `count` intervals from `start`, in units x ms.
/// Sets the coastline, the summed size of all steps from sample to sample. From sample 0 the first half term
/// is that of sample 0 and the sum begins at sample 2.
float IntegralOf(std::span<const float> trace, std::int64_t start, std::int64_t count, float baseline,
                 float intervalMs, ResponseMeasures& measures);

/// Why a rise was not measured; its results then stay as they were.
enum class RiseFault { None, FractionsInWrongOrder, PeakBeforeStart };

/// Time between the two rise levels of the peak and baseline in `measures`, interpolated, and the regression
/// slope of the samples between them.
RiseFault RiseOf(std::span<const float> trace, const MeasureSettings& settings, ResponseMeasures& measures);

/// Time from the peak to the decay level, width at that level, and latency of the rise. A level that the
/// trace does not cross leaves the last position tried, and the measure's bit unset.
void DecayOf(std::span<const float> trace, const MeasureSettings& settings, ResponseMeasures& measures);

/// All measures of a response in order. Does nothing when `settings.intervalMs` is 0.
RiseFault MeasureResponse(std::span<const float> trace, const MeasureSettings& settings,
                          ResponseMeasures& measures);

/// Level of the decay and width measures and of the rise latency, in trace units.
float DecayLevel(const MeasureSettings& settings, const ResponseMeasures& measures);
float LatencyLevel(const MeasureSettings& settings, const ResponseMeasures& measures);

}  // namespace zelvane
