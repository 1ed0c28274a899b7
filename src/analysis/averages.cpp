#include "analysis/averages.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "analysis/averages_store.h"
#include "analysis/episodes.h"
#include "model/model_store.h"
#include "numerics/rounding.h"
#include "platform/index.h"
#include "screen/popups.h"
#include "trace/trace_events.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char BeyondRecord[] = "Searching position in data record exceeds file length.";
constexpr int FaintSamples = 2000;  // of a sweep behind the mean

MeasureSettings WaveSettings() {
  MeasureSettings settings;
  settings.intervalMs = Model.ADInterval;
  settings.baselineStart = Averages.WaveBaselineStart;
  settings.baselinePts = Averages.WaveBaselinePts;
  settings.startAnalysis = Averages.WaveStartAnalysis;
  settings.peakSearchPts = Averages.WavePeakSearchPts;
  settings.peakAvePts = Averages.WavePeakAve;
  settings.peakOption = Analysis.PeakOption;
  settings.riseStartFrac = Averages.WaveRiseStartFrac;
  settings.riseEndFrac = Averages.WaveRiseEndFrac;
  settings.latencyPos = Averages.WaveLatencyPos;
  settings.latencyFrac = Averages.WaveLatencyFrac;
  return settings;
}

/// Gives the measures that all panels share the values of this sweep, unless an analysed response has them.
void ShareMeasures(const ResponseMeasures& m) {
  if (Analysis.Measures.measured != 0) return;
  Analysis.Measures = m;
  Analysis.Measures.measured = 0;
}

/// Returns the samples of a sweep that the average takes.
int SamplesToAdd() {
  return std::clamp(Model.NumPoints, 0, std::min(MaxAveragePoints, static_cast<int>(Trace.SimTrace.size())));
}

/// Returns the place of a sweep that lies on the anchor.
int PointOfSweep(bool first) {
  switch (Averages.AlignMode) {
    case AlignAtCursor:
      return static_cast<int>(std::clamp(std::trunc(Averages.AlignCursor), 0.0, double{MaxPoints}));
    case AlignAtPeak:
      return Averages.WavePeakPos;
    case AlignNot:
      return 0;
    case AlignByFit: {
      const std::int64_t wanted = std::int64_t{Averages.WaveRisePoints} * std::max(Averages.AlignRange, 1);
      const int range =
          static_cast<int>(std::min<std::int64_t>(wanted, MaxPoints));  // longer than any record
      return first ? Averages.SteepestPos
                   : valign(Averages.SteepestPos, 2 * range, Averages.AlignAnchor, range);
    }
    default:
      return Averages.SteepestPos;
  }
}

/// Adds the samples of a sweep that was moved left by `shift`.
void AddSums(std::span<const float> sweep, std::int64_t shift, int places) {
  const auto samples = static_cast<std::int64_t>(sweep.size());
  const std::int64_t first = std::max<std::int64_t>(0, -shift);
  const std::int64_t end = std::min<std::int64_t>(places, samples - shift);
  if (first >= end) return;
  const auto from = Index(first);
  const auto count = Index(end - first);
  const float* x = sweep.data() + (shift + first);
  float* sum = Averages.WaveSum.data() + from;
  float* reached = Averages.WaveCount.data() + from;
  float* norm = Averages.WaveNormSum.data() + from;
  const float taken = Averages.WaveBaselineCorrect != 0 ? Averages.WaveBaseline : 0.0F;
  const float base = Averages.WaveBaseline;
  const float height = Averages.WavePeak - base;
  for (std::size_t k = 0; k < count; ++k) sum[k] += x[k] - taken;
  for (std::size_t k = 0; k < count; ++k) reached[k] += 1.0F;
  for (std::size_t k = 0; height != 0.0F && k < count; ++k) norm[k] += 100.0F * (x[k] - base) / height;
  // Mean and squares about it, updated with each sweep (Welford, Technometrics 4, 419, 1962).
  double* mean = Averages.SweepMean.data() + from;
  double* squares = Averages.SweepSquares.data() + from;
  for (std::size_t k = 0; k < count; ++k) {
    const auto y = static_cast<double>(x[k] - taken);
    const double difference = y - mean[k];
    mean[k] += difference / static_cast<double>(reached[k]);
    squares[k] += difference * (y - mean[k]);
  }
}

/// Keeps some samples of a sweep for the eye.
void KeepFaint(std::span<const float> sweep, std::int64_t shift) {
  if (Averages.Faint.size() >= MaxFaintSweeps || sweep.empty()) return;
  const std::size_t step = std::max<std::size_t>(sweep.size() / FaintSamples, 1);
  FaintSweep faint;
  faint.start = static_cast<double>(-shift);
  faint.step = static_cast<double>(step);
  const float taken = Averages.WaveBaselineCorrect != 0 ? Averages.WaveBaseline : 0.0F;
  for (std::size_t i = 0; i < sweep.size(); i += step) faint.samples.push_back(sweep[i] - taken);
  Averages.Faint.push_back(std::move(faint));
}

/// Makes room for a sweep, before anything changes.
void MakeRoom(int places) {
  const std::size_t room = std::max(Index(places), Averages.SweepMean.size());
  Averages.SweepMean.resize(room, 0.0);
  Averages.SweepSquares.resize(room, 0.0);
}

/// Returns one value for each place up to the end of the trace.
template <typename Value>
std::vector<float> WaveOf(const Value& valueAt) {
  std::vector<float> wave(Index(SamplesToAdd()), std::numeric_limits<float>::quiet_NaN());
  const std::size_t used = std::min(wave.size(), Index(Averages.AverageUsed));
  for (std::size_t k = 0; k < used; ++k) {
    if (Averages.WaveCount[k] != 0.0F) wave[k] = valueAt(k);
  }
  return wave;
}

}  // namespace

int SteepestRise(std::span<const float> trace, int a, int b, int w) {
  w = std::max(w, 1);
  const auto size = static_cast<std::int64_t>(trace.size());
  const auto at = [&](std::int64_t i) { return trace[Index(std::clamp<std::int64_t>(i, 0, size - 1))]; };
  if (size == 0) return 0;
  std::int64_t position = a;
  float best = std::fabs(at(a) - at(std::int64_t{a} - w));
  const std::int64_t last = std::min<std::int64_t>(std::int64_t{b} - w, size - 1);
  for (std::int64_t i = std::int64_t{a} + w; i <= last; ++i) {
    const float change = std::fabs(at(i) - at(i - w));
    if (!(change > best)) continue;
    best = change;
    position = i;
  }
  return static_cast<int>(
      std::min<std::int64_t>(position + std::max(1, w / 2), std::numeric_limits<int>::max()));
}

void WaveMeasure() {
  Averages.WaveMeasured = 0;
  const MeasureSettings settings = WaveSettings();
  if (Trace.TraceValid == 0 || settings.intervalMs == 0.0F) return;
  const std::span<const float> trace = RecordedTrace();
  ResponseMeasures m = Analysis.Measures.measured == 0 ? Analysis.Measures : ResponseMeasures{};
  m.Baseline = Averages.WaveBaseline;
  m.PeakValue = Averages.WavePeak;
  m.PeakPos = Averages.WavePeakPos;
  const std::int64_t start = WholeSamples(settings.startAnalysis / settings.intervalMs);
  BaselineOf(trace, WholeSamples(std::trunc(settings.baselineStart) / settings.intervalMs),
             settings.baselinePts, m);
  PeakOf(trace, settings.peakSearchPts, start, m.Baseline, settings.peakAvePts, settings, m);
  Averages.WaveBaseline = m.Baseline;
  Averages.WavePeak = m.PeakValue;
  Averages.WavePeakPos = m.PeakPos;
  m.RiseStartPos = Averages.WaveRiseStartPos;
  m.RiseEndPos = Averages.WaveRiseEndPos;
  m.RiseTime = Averages.WaveRiseTime;
  m.RisePoints = Averages.WaveRisePoints;
  WaveRiseOf(trace, settings, m);
  Averages.WaveRiseStartPos = m.RiseStartPos;
  Averages.WaveRiseEndPos = m.RiseEndPos;
  Averages.WaveRiseTime = m.RiseTime;
  Averages.WaveRisePoints = m.RisePoints;
  Averages.SteepestPos = SteepestRise(trace, m.RiseStartPos, m.RiseEndPos, Averages.SlopePoints);
  Averages.WaveMeasured = 1;
  ShareMeasures(m);
}

std::optional<int> AlignToAverage(std::span<const float> trace, int points, float peak,
                                  const NormalizedAverage& average, const AlignSearch& search) {
  const std::int64_t r = search.range;
  const std::int64_t w = search.width;
  const std::int64_t u = std::max<std::int64_t>(std::int64_t{search.point} - r / 2, 1);
  const std::int64_t v = std::max<std::int64_t>(std::int64_t{search.anchor} - w / 2, 1);
  if (u > points || u + r > points || v > points || v + w > points) return std::nullopt;
  // What does not depend on the candidate is calculated once: the sweep in percent, the normalised mean.
  const auto scaled = [&](std::int64_t i) {
    const bool inside = i < static_cast<std::int64_t>(trace.size());
    return inside ? 100.0 * (static_cast<double>(trace[Index(i)]) / static_cast<double>(peak)) : 0.0;
  };
  std::vector<double> sweep;
  for (std::int64_t i = u; i < u + r + w - 1; ++i) sweep.push_back(scaled(i));
  std::vector<double> mean;
  std::vector<char> known;
  for (std::int64_t j = v; j < v + w; ++j) {
    const bool reached =
        j < static_cast<std::int64_t>(average.count.size()) && average.count[Index(j)] != 0.0F;
    known.push_back(reached && peak != 0.0F ? 1 : 0);
    mean.push_back(reached ? static_cast<double>(average.sum[Index(j)]) /
                                 static_cast<double>(average.count[Index(j)])
                           : 0.0);
  }
  const bool allKnown = std::all_of(known.begin(), known.end(), [](char k) { return k != 0; });
  std::int64_t bestAt = u;
  double best = std::numeric_limits<double>::infinity();
  double deviation = 0.0;  // carried on from place to place, also to the next candidate
  for (std::int64_t c = 0; c < r; ++c) {
    double sum = 0.0;
    const double* x = sweep.data() + c;
    for (std::size_t j = 0; j < Index(w); ++j) {
      if (known[j] != 0) deviation = x[j] - mean[j];
      sum += deviation * deviation;
      if (allKnown && sum >= best) break;  // it can only grow
    }
    if (c > 0 && !(sum < best)) continue;
    best = sum;
    bestAt = u + c;
  }
  return static_cast<int>(bestAt + w / 2);
}

int valign(int p, int r, int anchor, int w) {
  const auto point = AlignToAverage(Trace.SimTrace, Model.NumPoints, Averages.WavePeak,
                                    {Averages.WaveNormSum, Averages.WaveCount}, {p, r, anchor, w});
  if (!point) MessagePopup(ErrorTitle, BeyondRecord);
  return point.value_or(0);
}

void WaveAddAverage() {
  WaveSettingsWanted.Tell();
  WaveMeasure();
  const int places = SamplesToAdd();
  MakeRoom(places);
  const bool first = Averages.AverageCount == 0;
  const int point = PointOfSweep(first);
  if (first) Averages.AlignAnchor = point;
  const std::int64_t shift = std::int64_t{point} - Averages.AlignAnchor;
  const auto sweep =
      std::span<const float>(Trace.SimTrace)
          .first(Index(std::clamp(Model.NumPoints, 0, static_cast<int>(Trace.SimTrace.size()))));
  KeepFaint(sweep, shift);
  AddSums(sweep, shift, places);
  Averages.AverageUsed = std::max(Averages.AverageUsed, places);
  ++Averages.AverageCount;
  AverageChanged.Tell();
}

Outcome AverageAllSweeps() {
  if (Trace.TraceValid == 0) return Outcome::Refused;
  ForgetStop();
  const int former = Trace.EpisodeIndex;
  const int episodes = Trace.EpisodeCount;
  Outcome outcome = Outcome::Done;
  for (int episode = 1; episode <= episodes && outcome == Outcome::Done; ++episode) {
    ProcessSystemEvents();
    Breathe(static_cast<double>(episode - 1) / episodes);
    if (StopAsked()) {
      outcome = Outcome::Stopped;
      break;
    }
    ShowProgress(static_cast<double>(episode - 1) / episodes,
                 FormatText("Episode %d of %d", episode, episodes));
    if (episodes > 1 && !ReadEpisode(episode))
      outcome = Outcome::Failed;
    else
      WaveAddAverage();
  }
  ResetProgress();
  if (episodes > 1 && !ReadEpisode(former)) return Outcome::Failed;
  return outcome;
}

void ClearAverage() {
  const auto used = Index(Averages.AverageUsed);
  for (const std::span<float> sums : {Averages.WaveSum, Averages.WaveCount, Averages.WaveNormSum})
    std::fill_n(sums.begin(), used, 0.0F);
  Averages.AverageUsed = 0;
  Averages.SweepMean = {};
  Averages.SweepSquares = {};
  Averages.Faint = {};
  Averages.AverageCount = 0;
  Averages.AlignAnchor = 0;
  AverageChanged.Tell();
}

std::vector<float> MeanWave() {
  return WaveOf([](std::size_t k) { return Averages.WaveSum[k] / Averages.WaveCount[k]; });
}

std::vector<float> NormalizedWave() {
  return WaveOf([](std::size_t k) { return Averages.WaveNormSum[k] / Averages.WaveCount[k]; });
}

std::vector<float> VarianceWave() {
  return WaveOf([](std::size_t k) {
    const auto count = static_cast<double>(Averages.WaveCount[k]);
    return count > 1.0 ? static_cast<float>(Averages.SweepSquares[k] / (count - 1.0))
                       : std::numeric_limits<float>::quiet_NaN();
  });
}

}  // namespace zelvane
