#include "analysis/series.h"

#include <optional>
#include <set>
#include <string>

#include "screen/popups.h"

namespace zelvane {
namespace {

/// Returns what was told in the series; empty outside a series.
std::optional<std::set<std::string, std::less<>>>& Told() {
  static std::optional<std::set<std::string, std::less<>>> told;
  return told;
}

}  // namespace

void BeginSeries() {
  Told().emplace();
}

void EndSeries() {
  Told().reset();
}

SeriesOfRuns::SeriesOfRuns() {
  BeginSeries();
}

SeriesOfRuns::~SeriesOfRuns() {
  EndSeries();
  ResetProgress();
}

bool FirstInSeries(std::string_view message) {
  return !Told() || Told()->emplace(message).second;
}

}  // namespace zelvane
