#include "analysis/measures.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/sliding_window.h"
#include "numerics/rounding.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr std::int64_t DecayAverage = 3;     // samples averaged after the peak
constexpr std::int64_t FirstBackSample = 5;  // the search before the peak ends here
constexpr int SlopePoints = 3;               // fewer samples give no regression

std::int64_t Length(std::span<const float> trace) {
  return static_cast<std::int64_t>(trace.size());
}

float SampleAt(std::span<const float> trace, std::int64_t i) {
  return trace[Index(i)];
}

bool Inside(std::span<const float> trace, std::int64_t i) {
  return i >= 0 && i < Length(trace);
}

/// Marks a measure as made or not made.
void Mark(ResponseMeasures& measures, unsigned bits, bool made) {
  measures.measured = made ? measures.measured | bits : measures.measured & ~bits;
}

float Amplitude(const ResponseMeasures& measures) {
  return measures.PeakValue - measures.Baseline;
}

/// Returns whether there is a response with meaningful levels.
bool HasAmplitude(const ResponseMeasures& measures) {
  return (measures.measured & MeasuredAmplitude) != 0 && Amplitude(measures) != 0.0F;
}

/// A crossing that was searched along the trace.
struct Crossing {
  std::int64_t sample = 0;
  bool found = false;
};

/// Goes back from the peak to the first sample nearer to the baseline than `level`.
Crossing CrossingBefore(std::span<const float> trace, const ResponseMeasures& measures, float level) {
  const std::int64_t peak = measures.PeakPos;
  for (std::int64_t i = std::min(peak, Length(trace) - 1); i >= FirstBackSample; --i) {
    if (std::abs(SampleAt(trace, i) - measures.Baseline) < std::abs(level)) return {i, true};
  }
  return {std::min(peak, FirstBackSample), false};
}

/// Goes on from the peak to the first three samples whose mean is nearer to the baseline than `level`.
Crossing CrossingAfter(std::span<const float> trace, const ResponseMeasures& measures, float level) {
  const std::int64_t end = Length(trace) - DecayAverage;
  for (std::int64_t i = std::max(measures.PeakPos, 0); i < end; ++i) {
    const float mean = (SampleAt(trace, i) + SampleAt(trace, i + 1) + SampleAt(trace, i + 2)) / 3.0F;
    if (std::abs(mean - measures.Baseline) < std::abs(level)) return {i, true};
  }
  return {std::max<std::int64_t>(measures.PeakPos, end - 1), false};
}

/// Returns the time from a sample to the point at which the trace crosses `target` before the next sample.
float PartOfInterval(std::span<const float> trace, std::int64_t i, float target, float intervalMs) {
  if (!Inside(trace, i) || !Inside(trace, i + 1)) return 0.0F;
  const float d = std::abs(target - SampleAt(trace, i));
  const float g = std::abs(SampleAt(trace, i + 1) - SampleAt(trace, i));
  return g != 0.0F && d < g ? (d / g) * intervalMs : 0.0F;
}

float TimeOf(std::int64_t sample, float intervalMs) {
  return static_cast<float>(sample) * intervalMs;
}

/// Sums of a least-squares line through samples a at times t.
struct LineSums {
  float t = 0.0F;
  float a = 0.0F;
  float tt = 0.0F;
  float at = 0.0F;

  void Add(float time, float sample) {
    t += time;
    a += sample;
    tt += time * time;
    at += sample * time;
  }
  float Spread(float n) const { return tt - t * t / n; }
  float Slope(float n) const {
    const float spread = Spread(n);
    return spread != 0.0F ? (at - t * a / n) / spread : 0.0F;
  }
};

/// The samples on the rise: the first, their number and their sums.
struct RiseSamples {
  std::int64_t first = 0;
  int count = 0;
  LineSums line;       // times from the start of the trace
  LineSums fromFirst;  // times from the first sample of the rise
};

/// Returns the last foot before the peak: the first sample, going back, nearer to the baseline than the lower
/// rise level.
Crossing FindFoot(std::span<const float> trace, const ResponseMeasures& measures, float lower,
                  std::int64_t start) {
  for (std::int64_t i = std::min<std::int64_t>(measures.PeakPos, Length(trace) - 1); i > start && i > 1;
       --i) {
    if (std::abs(SampleAt(trace, i) - measures.Baseline) < std::abs(lower - measures.Baseline))
      return {i, true};
  }
  return {static_cast<std::int64_t>(measures.PeakPos) - 1, false};
}

RiseSamples SumRise(std::span<const float> trace, const ResponseMeasures& measures, std::int64_t begin,
                    float lower, float upper, float intervalMs) {
  RiseSamples sums;
  const float base = measures.Baseline;
  const std::int64_t end =
      std::min<std::int64_t>(static_cast<std::int64_t>(measures.PeakPos) + 1, Length(trace));
  for (std::int64_t i = std::max<std::int64_t>(begin, 0); i < end; ++i) {
    const float sample = SampleAt(trace, i);
    const float deviation = std::abs(sample - base);
    if (!(std::abs(lower - base) < deviation && deviation < std::abs(upper - base))) continue;
    if (sums.count == 0) sums.first = i;
    ++sums.count;
    sums.line.Add(intervalMs * static_cast<float>(i), sample);
    sums.fromFirst.Add(intervalMs * static_cast<float>(i - sums.first), sample);
  }
  return sums;
}

/// Returns the slope of the regression. In a short rise late in a trace the times hardly differ, and their
/// 32-bit squares cancel down to rounding errors. Such a line is calculated from its first sample on; it has
/// the same slope.
float RegressionSlope(const RiseSamples& rise) {
  constexpr float FewestDigits = 1e3F;  // digits of the spread of the times that must be right
  const auto n = static_cast<float>(rise.count);
  const float rounding = std::numeric_limits<float>::epsilon() * rise.line.tt;
  return rise.line.Spread(n) > FewestDigits * rounding ? rise.line.Slope(n) : rise.fromFirst.Slope(n);
}

/// Returns the time between a sample and the level that the trace crosses towards its neighbour.
float PartToLevel(std::span<const float> trace, std::int64_t i, std::int64_t neighbour, float level,
                  float intervalMs) {
  if (!Inside(trace, i) || !Inside(trace, neighbour) || SampleAt(trace, i) == SampleAt(trace, neighbour))
    return 0.0F;
  return std::abs(SampleAt(trace, i) - level) * intervalMs /
         std::abs(SampleAt(trace, i) - SampleAt(trace, neighbour));
}

void MeasureDecayTimes(std::span<const float> trace, float intervalMs, float level, bool measurable,
                       ResponseMeasures& measures) {
  const Crossing after = CrossingAfter(trace, measures, level);
  const Crossing before = CrossingBefore(trace, measures, level);
  const float target = measures.Baseline + level;
  float t1 = TimeOf(before.sample, intervalMs) + PartOfInterval(trace, before.sample, target, intervalMs);
  float t2 = TimeOf(after.sample, intervalMs) + PartOfInterval(trace, after.sample, target, intervalMs);
  const float peakTime = TimeOf(measures.PeakPos, intervalMs);
  if (peakTime == t2) t2 = peakTime + intervalMs;
  if (peakTime == t1) t1 = peakTime - intervalMs;
  measures.DecayTime = t2 - peakTime;
  measures.FracWidth = t2 - t1;
  Mark(measures, MeasuredDecay, measurable && after.found && std::isfinite(measures.DecayTime));
  Mark(measures, MeasuredWidth,
       measurable && after.found && before.found && std::isfinite(measures.FracWidth));
}

/// Where a rise without a foot or without samples begins.
enum class RiseBegin { BeforePeak, StartOfAnalysis };

RiseFault MeasureRiseFrom(RiseBegin without, std::span<const float> trace, const MeasureSettings& settings,
                          ResponseMeasures& measures) {
  Mark(measures, MeasuredRise | MeasuredSlope, false);
  if (settings.riseStartFrac >= settings.riseEndFrac && settings.riseEndFrac != 1.0F) {
    return RiseFault::FractionsInWrongOrder;
  }
  const float dt = settings.intervalMs;
  const std::int64_t start = RoundCount(static_cast<double>(settings.startAnalysis / dt));
  if (start >= Length(trace)) return RiseFault::StartAfterEnd;  // there was no search for a peak
  const std::int64_t peak = measures.PeakPos;
  if (peak < start) return RiseFault::PeakBeforeStart;

  const float base = measures.Baseline;
  const float lower = base + Amplitude(measures) * settings.riseStartFrac;
  const float upper = base + Amplitude(measures) * settings.riseEndFrac;
  const std::int64_t first = WholeSamples(settings.startAnalysis / dt);
  const std::int64_t before = without == RiseBegin::BeforePeak ? peak - 1 : first;
  const Crossing foot = FindFoot(trace, measures, lower, start);
  const std::int64_t begin = std::max<std::int64_t>(first, (foot.found ? foot.sample : before) + 1);
  const RiseSamples rise = SumRise(trace, measures, begin, lower, upper, dt);
  measures.RisePoints = std::max(rise.count, 1);
  const std::int64_t r1 = rise.count > 0 ? rise.first : before;
  const std::int64_t r2 = rise.count > 0 ? rise.first + rise.count - 1 : peak;
  const bool measurable = foot.found && HasAmplitude(measures);
  if (measures.RisePoints >= SlopePoints) {
    measures.RiseSlope = RegressionSlope(rise);
    Mark(measures, MeasuredSlope, measurable && std::isfinite(measures.RiseSlope));
  }
  const float t1 = TimeOf(r1, dt) - PartToLevel(trace, r1, r1 - 1, lower, dt);
  const float t2 = TimeOf(r2, dt) + PartToLevel(trace, r2, r2 + 1, upper, dt);
  measures.RiseTime = t2 - t1 == 0.0F ? dt : t2 - t1;
  measures.RiseStartPos = RoundCount(static_cast<double>(t1 / dt));
  measures.RiseEndPos = RoundCount(static_cast<double>(t2 / dt));
  Mark(measures, MeasuredRise, measurable && std::isfinite(measures.RiseTime));
  return RiseFault::None;
}

}  // namespace

void BaselineOf(std::span<const float> trace, std::int64_t start, std::int64_t count,
                ResponseMeasures& measures) {
  const std::int64_t length = Length(trace);
  Mark(measures, MeasuredBaseline | MeasuredVariance, false);
  if (!Inside(trace, start)) return;
  if (start + count > length) count = length - start - 1;
  if (start + count >= length) return;
  double sum = 0.0;
  for (std::int64_t i = start; i < start + count; ++i) sum += static_cast<double>(SampleAt(trace, i));
  if (count > 0) measures.Baseline = static_cast<float>(sum / static_cast<double>(count));
  float squares = 0.0F;
  for (std::int64_t i = start; i < start + count; ++i) {
    const float deviation = SampleAt(trace, i) - measures.Baseline;
    squares += deviation * deviation;
  }
  // One sample alone has the variance 0 / 0.
  measures.BaselineVar =
      count == 1 ? std::numeric_limits<float>::quiet_NaN() : squares / static_cast<float>(count - 1);
  Mark(measures, MeasuredBaseline, count > 0 && std::isfinite(measures.Baseline));
  Mark(measures, MeasuredVariance, count > 1 && std::isfinite(measures.BaselineVar));
}

void PeakOf(std::span<const float> trace, std::int64_t positions, std::int64_t start, float baseline,
            std::int64_t width, const MeasureSettings& settings, ResponseMeasures& measures) {
  Mark(measures, MeasuredPeak | MeasuredAmplitude | MeasuredLatencyPeak, false);
  if (width < 1 || !Inside(trace, start)) return;
  const std::int64_t best = BestWindow(trace, start, positions, baseline, width);
  const std::int64_t end = std::min(best + width, Length(trace));
  float sum = 0.0F;
  for (std::int64_t i = best; i < end; ++i) sum += SampleAt(trace, i);
  measures.PeakValue = 1.0F / static_cast<float>(width) * sum;
  const int option = width > 1 ? settings.peakOption : 1;
  const std::int64_t shift = option == 0 ? 0 : option == 2 ? width : width / 2;
  measures.PeakPos = static_cast<int>(std::min<std::int64_t>(best + shift, std::numeric_limits<int>::max()));
  measures.LatencyPeak = static_cast<float>(measures.PeakPos) * settings.intervalMs - settings.latencyPos;
  // A window that exceeds the end has no mean of `width` samples.
  const bool whole = best + width <= Length(trace);
  Mark(measures, MeasuredPeak, whole && std::isfinite(measures.PeakValue));
  Mark(measures, MeasuredAmplitude,
       whole && std::isfinite(Amplitude(measures)) && (measures.measured & MeasuredBaseline) != 0);
  Mark(measures, MeasuredLatencyPeak, HasAmplitude(measures) && std::isfinite(measures.LatencyPeak));
}

float IntegralOf(std::span<const float> trace, std::int64_t start, std::int64_t count, float baseline,
                 float intervalMs, ResponseMeasures& measures) {
  Mark(measures, MeasuredIntegral, false);
  measures.Coastline = 0.0F;
  if (!Inside(trace, start)) return 0.0F;
  const std::int64_t length = Length(trace);
  if (start + count >= length) count = length - start - 1;
  float area = intervalMs * (SampleAt(trace, start) - baseline) / 2.0F;
  if (start == 0) start = 1;
  if (start + count >= length) count = length - start - 1;
  if (count < 1) return 0.0F;
  float coastline = 0.0F;
  for (std::int64_t i = start + 1; i < start + count; ++i) {
    coastline += std::abs((SampleAt(trace, i) - baseline) - (SampleAt(trace, i - 1) - baseline));
    area += intervalMs * (SampleAt(trace, i) - baseline);
  }
  const std::int64_t last = start + count;
  coastline += std::abs((SampleAt(trace, last) - baseline) - (SampleAt(trace, last - 1) - baseline));
  measures.Coastline = coastline;
  area += intervalMs * (SampleAt(trace, last) - baseline) / 2.0F;
  Mark(measures, MeasuredIntegral,
       (measures.measured & MeasuredBaseline) != 0 && std::isfinite(area) && std::isfinite(coastline));
  return area;
}

RiseFault RiseOf(std::span<const float> trace, const MeasureSettings& settings, ResponseMeasures& measures) {
  return MeasureRiseFrom(RiseBegin::BeforePeak, trace, settings, measures);
}

RiseFault WaveRiseOf(std::span<const float> trace, const MeasureSettings& settings,
                     ResponseMeasures& measures) {
  return MeasureRiseFrom(RiseBegin::StartOfAnalysis, trace, settings, measures);
}

float DecayLevel(const MeasureSettings& settings, const ResponseMeasures& measures) {
  return (1.0F - settings.fracDecay) * Amplitude(measures);
}

float LatencyLevel(const MeasureSettings& settings, const ResponseMeasures& measures) {
  return settings.latencyFrac * Amplitude(measures);
}

void DecayOf(std::span<const float> trace, const MeasureSettings& settings, ResponseMeasures& measures) {
  const bool measurable = HasAmplitude(measures);
  const float dt = settings.intervalMs;
  MeasureDecayTimes(trace, dt, DecayLevel(settings, measures), measurable, measures);
  const float level = LatencyLevel(settings, measures);
  const Crossing rise = CrossingBefore(trace, measures, level);
  measures.LatencyRise = TimeOf(rise.sample, dt) - settings.latencyPos;
  measures.LatencyRise += PartOfInterval(trace, rise.sample, measures.Baseline + level, dt);
  Mark(measures, MeasuredLatencyRise, measurable && rise.found && std::isfinite(measures.LatencyRise));
}

RiseFault MeasureResponse(std::span<const float> trace, const MeasureSettings& settings,
                          ResponseMeasures& measures) {
  measures.measured = 0;
  const float dt = settings.intervalMs;
  if (dt == 0.0F) return RiseFault::None;
  const std::int64_t start = WholeSamples(settings.startAnalysis / dt);
  BaselineOf(trace, WholeSamples(std::trunc(settings.baselineStart) / dt), settings.baselinePts, measures);
  PeakOf(trace, settings.peakSearchPts, start, measures.Baseline, settings.peakAvePts, settings, measures);
  measures.Integral = IntegralOf(trace, start, settings.integralPts, measures.Baseline, dt, measures);
  const RiseFault fault = RiseOf(trace, settings, measures);
  DecayOf(trace, settings, measures);
  return fault;
}

}  // namespace zelvane
