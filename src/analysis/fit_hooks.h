// What the analysis of a response hands to the fits, which lie above it. Connected at start-up; an empty hook
// does nothing.
#pragma once

namespace zelvane {

struct AnalysisFitHooks {
  /// Copies the limits of the exponential fits into the working table, before anything is measured.
  void (*refreshLimits)() = nullptr;
  /// Fits the exponentials that `Fit.FitMode` 1, 2 or 3 names to the response just measured, and plots the
  /// curve. Writes the fit fields of `Fit`. False when no fit ran.
  bool (*fitExponentials)() = nullptr;
};

inline AnalysisFitHooks AnalysisFit;

/// Whether `fitMode` is one of the exponential fits of a response.
constexpr bool IsExponentialFit(int fitMode) {
  return fitMode >= 1 && fitMode <= 3;
}

}  // namespace zelvane
