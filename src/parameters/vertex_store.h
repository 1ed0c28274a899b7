// The simplex table of the program and the points of the fit of a formula. Data only. One fit runs at a time.
#pragma once

#include <array>

#include "numerics/simplex.h"

namespace zelvane {

inline constexpr int MaxFormulaPoints = 17'000;

/// Codes of VertexStore::FitResultCode.
inline constexpr int FitOneStep = -1;
inline constexpr int FitConverged = 1;
inline constexpr int FitMaxIterations = 2;
inline constexpr int FitUserBreak = 3;
inline constexpr int FitRunning = 4;
inline constexpr int FitBuilding = 5;

struct VertexStore {
  SimplexTable simplex;
  int FitResultCode = 0;  // 0 = no fit so far

  // -- The fit of a formula --
  int FormulaPoints = 0;  // points in use, from index 0
  std::array<float, MaxFormulaPoints> FitX{};
  std::array<float, MaxFormulaPoints> FitData{};
  std::array<float, MaxFormulaPoints> FitCurve{};
};

inline VertexStore Vertices;

}  // namespace zelvane
