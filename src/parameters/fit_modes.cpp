#include "parameters/fit_modes.h"

#include <algorithm>

#include "parameters/vertex_store.h"
#include "platform/index.h"

namespace zelvane {
namespace {

std::vector<FitModeRows>& Modes() {
  static std::vector<FitModeRows> modes;
  return modes;
}

}  // namespace

void RegisterFitMode(const FitModeRows& rows) {
  const auto known = std::find_if(Modes().begin(), Modes().end(),
                                  [&](const FitModeRows& other) { return other.mode == rows.mode; });
  if (known != Modes().end())
    *known = rows;
  else
    Modes().push_back(rows);
}

const FitModeRows* FitModeOf(int mode) {
  const auto found = std::find_if(Modes().begin(), Modes().end(),
                                  [mode](const FitModeRows& rows) { return rows.mode == mode; });
  return found != Modes().end() ? &*found : nullptr;
}

std::span<const FitModeRows> AllFitModes() {
  return Modes();
}

std::string FitRowLabel(const FitModeRows& rows, int row) {
  if (rows.labelOf != nullptr) return rows.labelOf(row);
  return row <= LastFitRow(rows) ? rows.labels[Index(row) - 1] : "";
}

int LastFitRow(const FitModeRows& rows) {
  return rows.labelOf != nullptr ? MaxFitRows : static_cast<int>(rows.labels.size());
}

void TakeFitLimits(int mode) {
  const FitModeRows* rows = FitModeOf(mode);
  if (rows == nullptr) return;
  std::copy_n(rows->limitTable->begin() + 1, LastFitRow(*rows), Parameters.AnalysisFitLimits.begin() + 1);
}

const char* FitResultWord(int code) {
  switch (code) {
    case FitOneStep:
      return "One Step";
    case FitConverged:
      return "Converge";
    case FitMaxIterations:
      return "Maximum Iterations";
    case FitUserBreak:
      return "User Break";
    case FitRunning:
      return "Running";
    case FitBuilding:
      return "Building";
    default:
      return "";
  }
}

const char* AnalysisFitStatusWord() {
  const bool automatic = Parameters.AnalysisAutoSeed != 0;
  if (Parameters.AnalysisLimitsOn != 0) return automatic ? "Limits, Automatic" : "Limits, Manual";
  if (Parameters.AnalysisFixOn != 0) return automatic ? "Fixed, Automatic" : "Fixed, Manual";
  return automatic ? "Free, Automatic" : "Free, Manual";
}

}  // namespace zelvane
