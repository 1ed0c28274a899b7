// Tables and settings of every fit: limits, seeds, fixed flags, switches, and the windows of the waveforms.
// Data only.
#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

namespace zelvane {

inline constexpr int MaxFitRows = 72;                // rows of a fit are numbered 1..MaxFitRows
inline constexpr int MaxFitWaveforms = 15;           // waveforms are numbered 1..MaxFitWaveforms
inline constexpr int MaxWaveformPoints = 1'000'001;  // samples of a waveform and of its stimulus

/// Codes of FitStore::FitMode.
inline constexpr int FitDecay = 1;
inline constexpr int FitTwoDecays = 2;
inline constexpr int FitRise = 3;
inline constexpr int FitDoseResponse = 6;
inline constexpr int FitSublevels = 7;
inline constexpr int FitCurrentVariance = -7;
inline constexpr int FitDwells = 8;
inline constexpr int FitSpectrum = -8;
inline constexpr int FitWaveforms = 10;

struct FitLimit {
  double lo = 0.0;
  double hi = 0.0;
};

using FitLimitTable = std::array<FitLimit, MaxFitRows + 1>;

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
  int FitMode = FitDecay;

  // -- Limits: one table per kind of fit --
  FitLimitTable AnalysisFitLimits{};  // working copy of the running analysis fit
  FitLimitTable WaveFitLimits{};
  FitLimitTable DwellFitLimits{};
  FitLimitTable ExpFitLimits{};
  FitLimitTable SublevelFitLimits{};
  FitLimitTable VarFitLimits{};
  FitLimitTable SpecFitLimits{};
  FitLimitTable DoseFitLimits{};

  std::array<int, MaxFitRows + 1> WaveFitFixed{};
  std::array<int, MaxFitRows + 1> AnalysisFitFixed{};
  std::array<double, MaxFitRows + 1> WaveFitSeed{};
  std::array<double, MaxFitRows + 1> AnalysisFitSeed{};

  // -- Switches --
  int WaveFitLimitsOn = 1;
  int WaveFitAutoSeed = 0;
  int WaveFitFixOn = 1;
  int AnalysisLimitsOn = 0;
  int AnalysisAutoSeed = 1;
  int AnalysisFixOn = 0;
  int AutoGenFitLims = 0;
  float FitLimsXFold = 10.0F;

  // -- Rate fit --
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
  double FitTolerance = 1e-5;
  std::array<FitWindow, MaxFitWaveforms + 1> Waveform{};
  std::array<FitWaveform, MaxFitWaveforms + 1> Wave{};
  int FitWaveCount = 0;               // waveforms loaded
  int FitListOn = 0;                  // 1 = the set is from a list file
  std::string FitListName;            // path of the list
  std::vector<std::string> LogLines;  // of the fit panel's log box, oldest first

  // -- Exponential fits of a response --
  int AnalysisParse = 20;
  int AnalysisFitPts = 210;
  int AnalysisNumIterations = 300;
  int AnalysisNumRestarts = 2;
  double AnalysisTolerance = 1e-6;
  int DualSpeedPts = 30;
  int FitStartPts = 0;
  double FitAmp1 = -50.0;  // units of the trace
  double FitTau1 = 1.0;    // ms
  double FitAmp2 = -10.0;  // the second component
  double FitTau2 = 10.0;
  double FitOffset = 0.0;    // final level of the exponentials, relative to the baseline
  float FitGoodness = 0.0F;  // 1 - residual / total sum of squares
};

inline FitStore Fit;

}  // namespace zelvane
