// A series of responses that are measured one after the other.
//
//   BeginSeries  EndSeries  FirstInSeries
#pragma once

#include <string_view>

namespace zelvane {

/// Begins a series of responses. Until EndSeries, each message about a measure or a fit is shown only once, because the
/// same settings cause it at every response.
void BeginSeries();
void EndSeries();

/// Returns whether a message must be shown: always outside a series, and the first time in a series.
bool FirstInSeries(std::string_view message);

}  // namespace zelvane
