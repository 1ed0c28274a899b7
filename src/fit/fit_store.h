// The fit of rates and stimulus to recorded waveforms: settings, limits, windows and the set of waveforms.
// Data only.
#pragma once

#include <array>
#include <deque>
#include <span>
#include <string>

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
      WaveStim;  // voltage (V), then drugs 1 to 6 (M); MaxWaveformPoints samples each
  // What the comparison with a simulation holds, each MaxWaveformPoints samples; FittedCount are compared.
  std::span<float> FitX;       // index of the sample of the recording
  std::span<float> FitData;    // recording minus its baseline
  std::span<float> FitSim;     // simulation minus its baseline, scaled
  std::span<float> FitSqDiff;  // square of their difference
  int WaveLoaded = 0;          // 1 = part of the fit
  int AlignIndex = 0;          // sample of the simulation at which the comparison starts
  int FittedCount = 500;       // samples that are compared
  int DataOn = 0;              // switches of its line on the panel
  int StimOn = 0;
  int DataLength = 0;             // samples
  int StimLength = 0;             // samples
  float WaveDataInterval = 0.0F;  // ms
  float WaveStimInterval = 0.0F;  // ms
  std::string DataName;           // without the folder
  std::string StimName;
};

/// Codes of FitStore::FitKind.
inline constexpr int FitOfRates = 1;
inline constexpr int FitOfStimulus = 2;

/// The parameters of an exponential stimulus that a fit can change, in the order of StimFitLimits.
inline constexpr int StimFitRows = 5;

/// Rows and waveforms are indexed from 1.
struct FitStore {
  // -- Parameters: a row for each rate of the scheme --
  FitLimitTable WaveFitLimits{};
  std::array<int, MaxFitRows + 1>
      WaveFitFixed{};  // in force: 1 also while a constraint or loop sets the rate
  std::array<int, MaxFitRows + 1> WaveFitOwnFixed{};  // the user's own flags, which a model file holds
  std::array<double, MaxFitRows + 1> WaveFitSeed{};
  int WaveFitLimitsOn = 1;
  int WaveFitAutoSeed = 0;
  int WaveFitFixOn = 1;
  int AutoGenFitLims = 0;                     // 1 = limits follow from the rates
  float FitLimsXFold = 10.0F;                 // limits are rate / factor and rate x factor
  std::array<int, MaxFitRows + 1> RowCode{};  // rate of each row, see fit_rows.h; 0 = the row is not in use
  std::array<FitLimit, StimFitRows + 1> StimFitLimits{{{},
                                                       {1e-6, 2.0},      // amplitude 1, M
                                                       {0.05, 1000.0},   // time constant 1, ms
                                                       {1e-6, 2.0},      // amplitude 2, M
                                                       {0.05, 1000.0},   // time constant 2, ms
                                                       {0.05, 900.0}}};  // rise time constant, ms

  // -- Settings --
  int FitModelIs2D = 1;  // 1 = fit the grid, 0 = the table
  int FitAlign = 1;
  int FitAlignChoice = 0;
  int FitAlignRange = 1;  // search span in multiples of NumAlignPts
  int FitPeakSearchPts = 100;
  int FitPeakAve = 3;
  int FitDualSpeed = 0;  // samples at the outset that are compared one by one
  int FitParse = 2;      // after them every n-th is compared
  int FitNormalized = 0;
  int FitFilterOn = 0;
  float FitFilterFc = 10.0F;  // kHz
  int FitNumIterations = 10;
  int FitNumRestarts = 1;
  double WaveFitTolerance = 1e-5;  // of the fit panel; a fit takes it to FitTolerance
  float FitStepSize = 0.5F;
  float FitSeedSpread = 0.05F;
  std::array<FitWindow, MaxFitWaveforms + 1> Waveform{};

  // -- Display and log --
  int FitShowCurves = 1;    // waveforms that are drawn during a fit
  int FitTotalCurves = 1;   // lines for waveforms that the panel offers
  int FitShownWave = 1;     // waveform on display
  int FitShownProfile = 0;  // its profile on display: 0 voltage, 1 to 3 drugs
  int FitLogOn = 0;         // 1 = write a log file
  std::string FitLogFile;   // its path

  // -- Results --
  int FitKind = FitOfRates;      // what the last session fitted
  float FitPeak = 1.0F;          // peak of the simulation of waveform 1, 1 without normalising
  int RestartCount = 0;          // runs of the session so far plus 2
  double FitNormResidual = 0.0;  // lowest sum of squares / compared samples

  // -- The set of waveforms --
  std::array<FitWaveform, MaxFitWaveforms + 1> Wave{};
  int FitWaveCount = 0;              // waveforms loaded
  int FitListOn = 0;                 // 1 = the set is from a list file
  std::string FitListName;           // path of the list
  int WavesNormalized = 0;           // 1 = NormalizeWaves has changed the recordings
  float WaveDataInterval = 0.0F;     // ms, of the last recording that was read
  float WaveStimInterval = 0.0F;     // ms, of the last stimulus file that was read
  std::deque<std::string> LogLines;  // lines of the fit panel's log box, oldest first
};

inline FitStore Fit;

}  // namespace zelvane
