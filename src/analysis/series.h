// A series of responses that are measured one after the other.
//
//   BeginSeries  EndSeries  SeriesOfRuns  FirstInSeries
#pragma once

#include <string_view>

namespace zelvane {

/// Begins a series of responses. Until EndSeries, each message about a measure or a fit is shown only once, because the
/// same settings cause it at every response.
void BeginSeries();
void EndSeries();

/// A series of runs: ends itself and its progress on every way out.
class SeriesOfRuns {
 public:
  SeriesOfRuns();
  ~SeriesOfRuns();
  SeriesOfRuns(const SeriesOfRuns&) = delete;
  SeriesOfRuns& operator=(const SeriesOfRuns&) = delete;
};

/// Returns whether a message must be shown: always outside a series, and the first time in a series.
bool FirstInSeries(std::string_view message);

}  // namespace zelvane
