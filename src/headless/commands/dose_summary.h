// The Hill curve through the pairs of a command, and how commands print it.
#pragma once

#include <string>
#include <vector>

#include "headless/commands/one_job.h"

namespace zelvane {

/// A fitted curve. Responses have the sign of the pairs.
struct DoseSummary {
  std::vector<float> concentration{};  // M
  std::vector<float> response{};
  std::vector<float> curve{};  // empty when no curve could be fitted
  struct Value {
    double value = 0.0;
    double error = 0.0;  // standard error; nan = none
  };
  Value ec50{}, slope{}, max{}, min{};
  double residual = 0.0;  // sum of squares for each pair
  bool converged = false;
};

/// Fits the Hill curve to pairs. When all responses have one sign, it fits their magnitudes, scaled to 100, and gives the
/// sign and the size back. Limits are wide: two decades beyond the doses, slopes of 0.05 to 10.
DoseSummary FitDosePairs(const std::vector<float>& concentration, const std::vector<float>& response);

/// Prints a summary as text, or as a JSON object. `units` are those of the responses, empty for none.
struct DoseReport {
  std::string model;
  std::string measure;
  std::string units;
  int drug = 1;
};
void WriteDoseSummary(const DoseSummary& summary, const DoseReport& report, bool json, std::ostream& out);

/// Returns the pairs and the curve as comma-separated text.
std::string DoseCsv(const DoseSummary& summary);

}  // namespace zelvane
