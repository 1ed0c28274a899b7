// What a session of a waveform fit prepares and remembers. Data only.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fit/fit_store.h"
#include "kinetics/scheme_tables.h"
#include "model/constraints.h"
#include "model/model_store.h"
#include "numerics/simplex.h"
#include "run/run_memory.h"

namespace zelvane {

/// A parameter of the simplex.
struct FitParam {
  int row = 0;   // of the limits: of WaveFitLimits for a rate, of StimFitLimits for a stimulus
  int code = 0;  // of the rate, see fit_rows.h
};

/// The rates and the stimulus that a fit changes.
struct FittedValues {
  std::array<double, MaxLinks + 1> KOn{};
  std::array<double, MaxLinks + 1> KOff{};
  StateTable<float> TableRate{};
  std::array<float, StimFitRows + 1> stimulus{};  // in the order of StimFitLimits
};

/// Answers of a caller, instead of the user, to the questions of a session.
struct FitAnswers {
  bool longerStep = false;   // a longer step of the integrator
  bool anyInterval = false;  // intervals of data and stimulus that differ
  bool normalize = false;
};

/// The data side of the alignment of a waveform.
struct AlignedData {
  std::vector<float> hundredfold;  // 100 x recording over the alignment window
  std::vector<float> simulated;    // room for 100 x simulation / peak over the search
  std::vector<float> sums;         // room for the sum of squares of each offset
};

/// Things that a session tells once.
struct ToldOnce {
  ConstraintFaults constraints{};
  bool simulatedBaseline = false;
  bool noTrace = false;
};

/// Waveforms and parameters are indexed from 1.
struct FitSessionStore {
  std::array<FitParam, MaxSimplexParams + 1> param{};
  std::array<AlignedData, MaxFitWaveforms + 1> aligned{};
  std::array<RunMemory, MaxFitWaveforms + 1> memory{};
  int points = 0;                     // samples that all waveforms compare
  int peakStart = 0;                  // AlignIndex of waveform 1 before this evaluation
  std::optional<FitAnswers> answers;  // empty = the user is asked
  bool stopped = false;               // the user stopped; no further simulation
  bool finalRun = false;              // the best vertex goes into the model: a wish to stop has little effect
  std::chrono::steady_clock::time_point finalBegan{};
  ToldOnce told{};
  FittedValues before{};   // of the start of the session
  FittedValues after{};    // of its end
  bool hasBefore = false;  // a session has ended, and its old values are known
  bool takenBack = false;  // its old values are back in the model, and `before` has its result

  // -- Progress --
  std::int64_t evaluations = 0;
  int lastColumn = 0;    // of the last evaluation
  double seconds = 0.0;  // of the last session
  std::chrono::steady_clock::time_point began{};
  std::chrono::steady_clock::time_point lastShown{};
  std::vector<double> progressEvals;  // evaluations and best normalised residual, for the curve
  std::vector<float> progressResidual;

  // -- Log file --
  bool logOpen = false;
  std::string logText;  // not yet written
};

inline FitSessionStore FitSession;

}  // namespace zelvane
