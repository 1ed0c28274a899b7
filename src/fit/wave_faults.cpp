#include "fit/wave_faults.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "fit/fit_objective.h"
#include "fit/fit_store.h"
#include "fit/wave_compare.h"
#include "model/model_store.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

bool Differ(float intervalMs, float otherMs) {
  return std::fabs(static_cast<double>(intervalMs) - static_cast<double>(otherMs)) >
         LargestIntervalDifference;
}

bool HasOwnInterval(const FitWaveform& wave, const FitWindow& /*window*/) {
  return wave.StimOn != 0 && Differ(wave.WaveDataInterval, wave.WaveStimInterval);
}

bool IsSimulatedAtOther(const FitWaveform& wave, const FitWindow& /*window*/) {
  return Differ(wave.WaveDataInterval, Model.ADInterval);
}

bool HasNoPoints(const FitWaveform& /*wave*/, const FitWindow& window) {
  return window.NumFitPts <= 0;
}

bool EndsBeforeFit(const FitWaveform& wave, const FitWindow& window) {
  return window.NumFitPts > 0 && SampleAtTime(window.DataFitStart) + window.NumFitPts > wave.DataLength;
}

bool StimulusEndsBeforeFit(const FitWaveform& wave, const FitWindow& window) {
  return wave.StimOn != 0 && window.NumFitPts > 0 &&
         SampleAtTime(window.SimFitStart) + window.NumFitPts > wave.StimLength;
}

bool BaselineLeavesRecording(const FitWaveform& wave, const FitWindow& window) {
  return window.NumBaselinePts > 0 &&
         SampleAtTime(window.DataBaselineStart) + window.NumBaselinePts > wave.DataLength;
}

bool BaselineLeavesRun(const FitWaveform& /*wave*/, const FitWindow& window) {
  return window.NumBaselinePts > 0 &&
         SampleAtTime(window.SimBaselineStart) + window.NumBaselinePts > WaveRunPoints(window);
}

/// A fault of a waveform and what to tell of it, after the numbers of the waveforms.
struct Fault {
  bool (*isIn)(const FitWaveform&, const FitWindow&);
  const char* text;
};

constexpr Fault Faults[] = {
    {HasNoPoints, "there are no fit points, so nothing is compared."},
    {EndsBeforeFit, "the recording ends before the fit does; the rest is compared with 0."},
    {StimulusEndsBeforeFit,
     "the stimulus ends before the fit does; from there on the voltage and all drugs are 0."},
    {BaselineLeavesRecording, "the baseline goes beyond the end of the recording, where all samples are 0."},
    {BaselineLeavesRun,
     "the baseline of the simulation goes beyond the end of its run, where all samples are 0."},
    {HasOwnInterval, "the intervals of recording and stimulus differ."},
    {IsSimulatedAtOther,
     "the interval of the recording is not that of the run settings, at which it is simulated."},
};

/// Returns "Waveform 2: " or "Waveforms 2, 3: " for the loaded waveforms with a fault; an empty text without one.
std::string WavesWith(const Fault& fault) {
  std::string numbers;
  int count = 0;
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    if (Fit.Wave[w].WaveLoaded == 0 || !fault.isIn(Fit.Wave[w], Fit.Waveform[w])) continue;
    numbers += (count++ > 0 ? ", " : "") + std::to_string(w);
  }
  return count == 0 ? numbers : (count > 1 ? "Waveforms " : "Waveform ") + numbers + ": ";
}

}  // namespace

void TellWaveFaults() {
  for (const Fault& fault : Faults) {
    if (const std::string waves = WavesWith(fault); !waves.empty()) Note(waves + fault.text);
  }
}

bool WaveIntervalsDiffer() {
  return !WavesWith({HasOwnInterval, ""}).empty();
}

}  // namespace zelvane
