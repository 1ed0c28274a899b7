// A readable description of the scheme in the stores.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "headless/json_values.h"

namespace zelvane {

/// One rate above 0, in one of the two forms of the scheme.
struct RateAccount {
  int from = 0;
  int to = 0;
  double rate = 0.0;
  std::vector<int> drugs;  // their concentrations multiply the rate
  bool onVoltage = false;
  double steepness = 0.0;        // elementary charges
  double efoldMillivolts = 0.0;  // mV for a change by e at Model.Temperature; infinite for steepness 0
};

/// GridRates returns the rates between grid states that are on, in the order of the links. TableRates
/// returns those of the table.
std::vector<RateAccount> GridRates();
std::vector<RateAccount> TableRates();

/// Returns "1/s", "1/(M s)" or "1/(M^2 s)" for the number of drugs.
std::string RateUnit(const RateAccount& rate);

void WriteModelReport(std::ostream& out);
Json ModelReportJson();

}  // namespace zelvane
