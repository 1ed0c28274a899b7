#include "fit/wave_compare.h"

#include <cmath>
#include <numeric>

#include "analysis/analysis_store.h"
#include "analysis/measures.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "platform/zero_pages.h"
#include "screen/popups.h"
#include "stimulus/profile_builder.h"

namespace zelvane {
namespace {

constexpr char IncompleteFirst[] = "Both stimulus1 and data1 file must be loaded";
constexpr char IncompleteSecond[] = "Both stimulus2 and data2 file must be loaded";
constexpr char IncompleteThird[] = "Both stimulus3 and data file3 must be loaded";
constexpr char IncompletePair[] = "Both stimulus%d and data%d file must be loaded";
constexpr char EmptyStimulus[] = "Waveform %d is compared under an empty stimulus.";
constexpr char NoNumbers[] =
    "The recording of waveform %d has samples that are no numbers within the fit (%d).";
constexpr char BadBaseline[] =
    "The baseline of waveform %d is not a number, so its recording is not normalised.";
constexpr char NothingLoaded[] = "! No data loaded for fitting.";
constexpr char NoPeak[] = "No peak found in 1st dataset.";
constexpr char LargerPeak[] =
    "Peak for waveform %d is larger than first waveform; reload so that first waveform is largest.";
constexpr char SignedPeaks[] =
    "Peaks are compared with their signs: of inward currents the first waveform must be the smallest in magnitude.";

const FitWaveform& Wave(int w) {
  return Fit.Wave[Index(w)];
}

const FitWindow& Window(int w) {
  return Fit.Waveform[Index(w)];
}

bool Compared(int w) {
  return Wave(w).WaveLoaded != 0 && Window(w).NumFitPts > 0;
}

std::string IncompleteText(int w) {
  switch (w) {
    case 1:
      return IncompleteFirst;
    case 2:
      return IncompleteSecond;
    case 3:
      return IncompleteThird;
    default:
      return FormatText(IncompletePair, w, w);
  }
}

/// Fills the samples of a waveform that are compared.
void BuildFitData(int w) {
  FitWaveform& wave = Fit.Wave[Index(w)];
  const std::int64_t start = SampleAtTime(Window(w).DataFitStart);
  const auto length = static_cast<std::int64_t>(wave.WaveData.size());
  const float baseline = BaselineOfRecording(w);
  int noNumbers = 0;
  wave.FittedCount = ForComparedSamples(Window(w).NumFitPts, CompareSteps(), [&](std::size_t c, int offset) {
    const std::int64_t i = start + offset;
    const float sample = i < length ? wave.WaveData[Index(i)] : 0.0F;
    wave.FitX[c] = static_cast<float>(i);
    wave.FitData[c] = sample - baseline;
    if (!std::isfinite(wave.FitData[c])) ++noNumbers;
  });
  for (const auto row : {&FitWaveform::FitX, &FitWaveform::FitData, &FitWaveform::FitSim})
    ReleaseZeroPages((wave.*row).subspan(Index(wave.FittedCount)));
  if (noNumbers > 0) Note(FormatText(NoNumbers, w, noNumbers));
}

/// Normalises one recording over its whole array, so that the samples after its end also stay `-baseline / scale`.
void NormalizeWave(int w, float scale) {
  const float baseline = Window(w).NumFitPts > 0 ? BaselineOfRecording(w) : 0.0F;
  if (!std::isfinite(baseline)) {
    Note(FormatText(BadBaseline, w));
    return;
  }
  for (float& sample : Fit.Wave[Index(w)].WaveData) sample = (sample - baseline) / scale;
}

}  // namespace

float WaveBaseline(std::span<const float> record, std::int64_t start, std::int64_t count) {
  const auto length = static_cast<std::int64_t>(record.size());
  const std::int64_t first = std::clamp<std::int64_t>(start, 0, length);
  const std::int64_t samples = std::clamp<std::int64_t>(count, 0, length - first);
  if (samples == 0) return 0.0F;
  const std::span<const float> window = record.subspan(Index(first), Index(samples));
  return static_cast<float>(std::accumulate(window.begin(), window.end(), 0.0) /
                            static_cast<double>(samples));
}

WavePeak PeakOfWave(std::span<const float> record, std::int64_t start, std::int64_t span, float baseline,
                    int width, int option) {
  MeasureSettings settings;
  settings.peakOption = option;
  ResponseMeasures measures;
  PeakOf(record, std::max<std::int64_t>(span, 0), start, baseline, width, settings, measures);
  return {measures.PeakValue, measures.PeakPos};
}

ComparisonSteps CompareSteps() {
  return {Fit.FitDualSpeed, Fit.FitParse};
}

std::int64_t SampleAtTime(float timeMs) {
  return std::max<std::int64_t>(TimeIndex(timeMs, Model.ADInterval), 0);
}

std::span<const float> RecordingOf(const FitWaveform& wave) {
  return wave.WaveData.first(Index(std::clamp(wave.DataLength, 0, static_cast<int>(wave.WaveData.size()))));
}

float BaselineOfRecording(int w) {
  return WaveBaseline(Wave(w).WaveData, SampleAtTime(Window(w).DataBaselineStart), Window(w).NumBaselinePts);
}

WavePeak PeakOfRecording(int w, std::int64_t span, float baseline) {
  return PeakOfWave(RecordingOf(Wave(w)), SampleAtTime(Window(w).DataFitStart), span, baseline,
                    Fit.FitPeakAve, Analysis.PeakOption);
}

void ValidPairs() {
  for (int w = 1; w <= MaxFitWaveforms; ++w) {
    FitWaveform& wave = Fit.Wave[Index(w)];
    if ((wave.DataOn != 0) != (wave.StimOn != 0)) {
      MessagePopup(ErrorTitle, IncompleteText(w));
      wave.DataOn = 0;
      wave.StimOn = 0;
    }
    if (wave.WaveLoaded != 0 && wave.StimOn == 0) Note(FormatText(EmptyStimulus, w));
  }
}

void FitDataBuild() {
  for (int w = 1; w <= MaxFitWaveforms; ++w) {
    if (Compared(w))
      BuildFitData(w);
    else if (Wave(w).WaveLoaded != 0)
      Fit.Wave[Index(w)].FittedCount = 0;
  }
}

Outcome NormalizeWaves() {
  if (std::none_of(Fit.Wave.begin(), Fit.Wave.end(),
                   [](const FitWaveform& wave) { return wave.WaveLoaded != 0; })) {
    MessagePopup(WarningTitle, NothingLoaded);
    Fit.FitNormalized = 0;
    return Outcome::Refused;
  }
  if (Fit.FitNormalized == 0 || Fit.WavesNormalized != 0) return Outcome::Done;
  const float baseline = Window(1).NumFitPts > 0 ? BaselineOfRecording(1) : 0.0F;
  const WavePeak found = PeakOfRecording(1, Window(1).NumFitPts, baseline);
  float scale = found.value - baseline;
  if (found.value == 0.0F || scale == 0.0F || !std::isfinite(scale)) {
    MessagePopup(WarningTitle, NoPeak);
    scale =
        found.value == 0.0F && 1.0F - baseline != 0.0F && std::isfinite(baseline) ? 1.0F - baseline : 1.0F;
  }
  for (int w = 1; w <= MaxFitWaveforms; ++w) {
    if (Wave(w).WaveLoaded != 0) NormalizeWave(w, scale);
  }
  Fit.WavesNormalized = 1;
  return Outcome::Done;
}

bool FirstPeakIsLargest() {
  float first = 0.0F;
  for (int w = 1; w <= MaxFitWaveforms; ++w) {
    if (Wave(w).WaveLoaded == 0) continue;
    const float peak = PeakOfRecording(w, Fit.FitPeakSearchPts, BaselineOfRecording(w)).value;
    if (w == 1) first = peak;
    if (!(peak > first) || w == 1) continue;
    MessagePopup(WarningTitle, FormatText(LargerPeak, w));
    if (first < 0.0F) Note(SignedPeaks);
    return false;
  }
  return true;
}

}  // namespace zelvane
