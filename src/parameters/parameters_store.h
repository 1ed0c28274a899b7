// The data that every fit shares: which fit runs, the working tables of its parameters, and the type of a
// table of limits. Data only. The limits of each kind of fit are with its subject.
#pragma once

#include <array>
#include <initializer_list>

#include "platform/index.h"

namespace zelvane {

inline constexpr int MaxFitRows = 72;  // rows of a fit are numbered 1..MaxFitRows

/// Codes of ParametersStore::FitMode.
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

/// Limits of a fit, by row; row 0 is unused.
using FitLimitTable = std::array<FitLimit, MaxFitRows + 1>;

/// The same limits for the rows first, first + step, ... up to last.
struct LimitsOfRows {
  int first = 1;
  int last = 1;
  int step = 1;
  FitLimit limit{};
};

/// Returns a table with these limits; 0 to 0 in all other rows.
constexpr FitLimitTable LimitTable(std::initializer_list<LimitsOfRows> groups) {
  FitLimitTable table{};
  for (const LimitsOfRows& group : groups) {
    for (int r = group.first; r <= group.last; r += group.step) table[Index(r)] = group.limit;
  }
  return table;
}

/// Rows are indexed from 1.
struct ParametersStore {
  int FitMode = FitDecay;
  double FitTolerance = 1e-5;  // fractional spread of the residuals at which a fit ends

  // -- Of all fits of formulas; the fit of rates has its own --
  FitLimitTable AnalysisFitLimits{};  // working copy of the fit that runs
  std::array<int, MaxFitRows + 1> AnalysisFitFixed{};
  std::array<double, MaxFitRows + 1> AnalysisFitSeed{};
  int AnalysisLimitsOn = 0;
  int AnalysisAutoSeed = 1;
  int AnalysisFixOn = 0;
};

inline ParametersStore Parameters;

}  // namespace zelvane
