// Bounds and forced values of the run settings.
#include <charconv>
#include <cmath>
#include <limits>

#include "model/model.h"

namespace zelvane {

void LimitNumPoints() {
  if (Model.NumPoints > MaxStimPoints) Model.NumPoints = MaxPoints;
}

void ForceMultiSubunit() {
  if (Model.MultiSubunit != 1) return;
  Model.StartAtEquilibrium = 0;
  Model.NumRuns = 1;
  Model.NumIntervals = 0;
  Model.ReseedSimulation = 0;
  Model.AutoAnalyze = 0;
  Model.ShowAllTraces = 0;
}

int RoundCount(double value) {
  constexpr int lowest = std::numeric_limits<int>::min();
  constexpr int highest = std::numeric_limits<int>::max();
  if (std::isnan(value)) return 0;
  if (value >= highest) return highest;
  if (value <= lowest) return lowest;
  // The text decides, not a sum such as value + 0.005: it rounds the exact binary value to two decimals,
  // once. The argument is a double so that a caller's float keeps its value; 1.995 lies just above the middle
  // in both types.
  char text[24];  // sign, ten digits, full stop, two decimals
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 2).ptr;
  int count = 0;
  std::from_chars(text, end, count);
  return count;
}

}  // namespace zelvane
