// Dose-response curves: the pairs, the Hill curve through them, and the pairs before. Data only.
#pragma once

#include <array>
#include <cmath>
#include <string>

#include "parameters/parameters_store.h"

namespace zelvane {

inline constexpr int MaxDosePairs = 100;
inline constexpr int HillParameters = 4;  // EC50, slope, maximum, minimum

/// Codes of DoseStore::DoseMeasure.
inline constexpr int DosePeak = 0;    // peak less baseline
inline constexpr int DoseSteady = 1;  // mean of the last tenth of the pulse, less baseline
inline constexpr int DoseArea = 2;    // integral

/// Limits of EC50 (M), slope, maximum and minimum on a new panel.
inline constexpr FitLimitTable FirstDoseLimits = LimitTable(
    {{1, 1, 1, {1e-12, 0.01}}, {2, 2, 1, {0.1, 5.0}}, {3, 3, 1, {0.0, 2.0}}, {4, 4, 1, {0.0, 1.0}}});

/// Pairs count from 0.
struct DoseStore {
  std::array<float, MaxDosePairs> DoseConc{};  // M
  std::array<float, MaxDosePairs> DoseResponse{};
  float DoseCount = 3.0F;  // pairs of the fit, a whole number
  FitLimitTable DoseFitLimits = FirstDoseLimits;

  // -- The Hill curve: seeds, and results --
  double DoseEC50 = 1e-4;  // M
  double DoseSlope = 1.0;  // Hill coefficient
  double DoseMax = 1.0;
  double DoseMin = 0.0;

  // -- Simulated doses --
  int DoseDrug = 1;  // profile of the dose: 1 to 6 drugs
  int DoseMeasure = DosePeak;
  int DoseLogAxis = 1;
  std::string DoseUnits;  // of the responses; empty = unknown or none

  // -- Results of the last fit --
  int DoseFitted = 0;                                  // pairs of the fit; 0 = no fit of these pairs
  double DoseResidual = 0.0;                           // sum of squares for each pair
  int DoseEvals = 0;                                   // accepted steps of the last run
  int DoseResultCode = 0;                              // FitConverged or FitMaxIterations
  std::array<float, MaxDosePairs> DoseCurve{};         // the curve at the concentrations of the pairs
  std::array<double, HillParameters + 1> DoseError{};  // standard errors, from 1; nan = none

  // -- The curve of a trace with a template --
  int TemplateCount = 0;
  std::array<float, MaxDosePairs> TemplateCurve{};

  // -- The pairs of the last fit, and the curve before --
  std::array<float, MaxDosePairs> FittedConc{};
  std::array<float, MaxDosePairs> FittedResponse{};
  int FittedCount = 0;
  std::array<float, MaxDosePairs> LastDoseConc{};
  std::array<float, MaxDosePairs> LastDoseResponse{};
  int LastDoseCount = 0;
};

inline DoseStore Dose;

}  // namespace zelvane
