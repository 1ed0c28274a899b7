// The fit of rates and stimulus to recorded waveforms: settings, limits, windows and the set of waveforms.
// Data only.
#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "parameters/parameters_store.h"

namespace zelvane {

inline constexpr int MaxFitWaveforms = 15;           // waveforms are numbered 1..MaxFitWaveforms
inline constexpr int MaxWaveformPoints = 1'000'001;  // samples of a waveform and of its stimulus

/// The windows for the comparison of one waveform with its simulation.
struct FitWindow {
  float DataBaselineStart = 2.5F;  // ms
  float DataFitStart = 4.5F;       // ms
  float SimBaselineStart = 2.5F;   // ms
  float SimFitStart = 4.5F;        // ms
  int NumBaselinePts = 30;
  int NumAlignPts = 40;
  int NumFitPts = 500;
};

/// One recording of a waveform fit and its stimulus.
struct FitWaveform {
  std::span<float> WaveData;  // MaxWaveformPoints samples, set once by AllocateStores
  std::array<std::span<float>, 7>
      WaveStim;        // voltage (V), then drugs 1 to 6 (M); MaxWaveformPoints samples each
  int WaveLoaded = 0;  // 1 = part of the fit
  int DataOn = 0;      // switches of its line on the panel
  int StimOn = 0;
  int DataLength = 0;             // samples
  int StimLength = 0;             // samples
  float WaveDataInterval = 0.0F;  // ms
  float WaveStimInterval = 0.0F;  // ms
  std::string DataName;           // without the folder
  std::string StimName;
};

/// Rows and waveforms are indexed from 1.
struct FitStore {
  // -- Parameters: a row for each rate of the scheme --
  FitLimitTable WaveFitLimits{};
  std::array<int, MaxFitRows + 1> WaveFitFixed{};
  std::array<double, MaxFitRows + 1> WaveFitSeed{};
  int WaveFitLimitsOn = 1;
  int WaveFitAutoSeed = 0;
  int WaveFitFixOn = 1;
  int AutoGenFitLims = 0;      // 1 = limits follow from the rates
  float FitLimsXFold = 10.0F;  // limits are rate / factor and rate x factor

  // -- Settings --
  int FitModelIs2D = 1;  // 1 = fit the grid, 0 = the table
  int FitAlign = 1;
  int FitAlignChoice = 0;
  int AlignRange = 1;
  int FitPeakSearchPts = 100;
  int FitPeakAve = 3;
  int FitDualSpeed = 0;
  int FitNormalized = 0;
  int FitFilterOn = 0;
  float FitFilterFc = 10.0F;  // kHz
  int FitNumIterations = 10;
  int FitNumRestarts = 1;
  float FitStepSize = 0.5F;
  float FitSeedSpread = 0.05F;
  std::array<FitWindow, MaxFitWaveforms + 1> Waveform{};

  // -- The set of waveforms --
  std::array<FitWaveform, MaxFitWaveforms + 1> Wave{};
  int FitWaveCount = 0;               // waveforms loaded
  int FitListOn = 0;                  // 1 = the set is from a list file
  std::string FitListName;            // path of the list
  std::vector<std::string> LogLines;  // lines of the fit panel's log box, oldest first
};

inline FitStore Fit;

}  // namespace zelvane
