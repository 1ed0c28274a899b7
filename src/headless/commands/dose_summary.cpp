#include "headless/commands/dose_summary.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ostream>

#include "analysis/analysis_fit_store.h"
#include "analysis/dose_response.h"
#include "analysis/dose_store.h"
#include "headless/json_values.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/format_text.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr double FittedSize = 100.0;  // of the largest response in the fit
constexpr double BeyondDoses = 100.0;
constexpr double Tolerance = 1e-9;
constexpr int Runs = 8;  // of the simplex

/// Returns the sign of all responses, 1 when they differ.
double SignOf(const std::vector<float>& response) {
  const bool negative = std::all_of(response.begin(), response.end(), [](float r) { return r <= 0.0F; });
  return negative ? -1.0 : 1.0;
}

float LargestOf(const std::vector<float>& response) {
  float largest = 0.0F;
  for (const float r : response) largest = std::max(largest, std::fabs(r));
  return largest;
}

/// Returns the smallest concentration with at least half of the largest response.
double HalfDose(const std::vector<float>& concentration) {
  double half = 0.0;
  for (std::size_t i = 0; i < concentration.size(); ++i) {
    const auto x = static_cast<double>(concentration[i]);
    if (static_cast<double>(Dose.DoseResponse[i]) >= FittedSize / 2.0 && x > 0.0 && (half == 0.0 || x < half))
      half = x;
  }
  return half > 0.0 ? half : 1e-4;
}

void SetSeedsAndLimits(const std::vector<float>& concentration) {
  double lowest = 0.0;
  double highest = 0.0;
  for (const float c : concentration) {
    const auto x = static_cast<double>(c);
    if (!(x > 0.0)) continue;
    lowest = lowest == 0.0 ? x : std::min(lowest, x);
    highest = std::max(highest, x);
  }
  Dose.DoseEC50 = HalfDose(concentration);
  Dose.DoseSlope = 1.0;
  Dose.DoseMax = FittedSize;
  Dose.DoseMin = 0.0;
  Dose.DoseFitLimits = LimitTable({{1, 1, 1, {lowest / BeyondDoses, highest * BeyondDoses}},
                                   {2, 2, 1, {0.05, 10.0}},
                                   {3, 3, 1, {0.0, 10.0 * FittedSize}},
                                   {4, 4, 1, {-FittedSize, FittedSize}}});
  Parameters.AnalysisLimitsOn = 1;
  Parameters.AnalysisFixOn = 0;
  AnalysisFit.AnalysisTolerance = Tolerance;
}

std::string Shortest(float value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string ValueText(const char* name, const DoseSummary::Value& value, const std::string& unit) {
  std::string text = FormatText("%-6s %.5g%s", name, value.value, unit.c_str());
  text +=
      std::isfinite(value.error) ? FormatText(" +- %.2g", value.error) : std::string(" (no standard error)");
  return text + '\n';
}

Json ValueJson(const DoseSummary::Value& value) {
  Json json = Json::object();
  json["value"] = value.value;
  json["standardError"] = std::isfinite(value.error) ? Json(value.error) : Json(nullptr);
  return json;
}

Json PairsJson(const DoseSummary& summary) {
  Json pairs = Json::array();
  for (std::size_t i = 0; i < summary.concentration.size(); ++i) {
    Json pair = Json::object();
    pair["concentration"] = FloatJson(summary.concentration[i]);
    pair["response"] = FloatJson(summary.response[i]);
    pair["fit"] = summary.curve.empty() ? Json(nullptr) : FloatJson(summary.curve[i]);
    pairs.push_back(pair);
  }
  return pairs;
}

void WriteJson(const DoseSummary& summary, const DoseReport& report, std::ostream& out) {
  Json json = Json::object();
  json["model"] = report.model;
  json["drug"] = report.drug;
  json["measure"] = report.measure;
  json["units"] = report.units;
  json["pairs"] = PairsJson(summary);
  if (!summary.curve.empty()) {
    json["EC50"] = ValueJson(summary.ec50);
    json["slope"] = ValueJson(summary.slope);
    json["max"] = ValueJson(summary.max);
    json["min"] = ValueJson(summary.min);
    json["residual"] = summary.residual;
    json["converged"] = summary.converged;
  }
  out << JsonLine(json) << '\n';
}

}  // namespace

DoseSummary FitDosePairs(const std::vector<float>& concentration, const std::vector<float>& response) {
  DoseSummary summary{.concentration = concentration, .response = response};
  const float largest = LargestOf(response);
  if (response.empty() || !(largest > 0.0F) || !std::isfinite(largest)) return summary;
  const double back = SignOf(response) * static_cast<double>(largest) / FittedSize;
  Dose.DoseConc = {};
  Dose.DoseResponse = {};
  std::copy(concentration.begin(), concentration.end(), Dose.DoseConc.begin());
  for (std::size_t i = 0; i < response.size(); ++i)
    Dose.DoseResponse[i] = static_cast<float>(static_cast<double>(response[i]) / back);
  Dose.DoseCount = static_cast<float>(response.size());
  SetSeedsAndLimits(concentration);
  if (FitDoses(Runs) != Outcome::Done) return summary;
  summary.ec50 = {Dose.DoseEC50, Dose.DoseError[1]};
  summary.slope = {Dose.DoseSlope, Dose.DoseError[2]};
  summary.max = {Dose.DoseMax * back, Dose.DoseError[3] * std::fabs(back)};
  summary.min = {Dose.DoseMin * back, Dose.DoseError[4] * std::fabs(back)};
  summary.residual = Dose.DoseResidual * back * back;
  summary.converged = Dose.DoseResultCode == FitConverged;
  for (std::size_t i = 0; i < response.size(); ++i)
    summary.curve.push_back(static_cast<float>(static_cast<double>(Dose.DoseCurve[i]) * back));
  return summary;
}

void WriteDoseSummary(const DoseSummary& summary, const DoseReport& report, bool json, std::ostream& out) {
  if (json) {
    WriteJson(summary, report, out);
    return;
  }
  const std::string unit = report.units.empty() ? "" : ' ' + report.units;
  for (std::size_t i = 0; i < summary.concentration.size(); ++i)
    out << FormatText("%12.5g M  %12.6g", static_cast<double>(summary.concentration[i]),
                      static_cast<double>(summary.response[i]))
        << unit << '\n';
  if (summary.curve.empty()) {
    out << "no curve: the responses do not differ from 0\n";
    return;
  }
  out << ValueText("EC50", summary.ec50, " M") << ValueText("slope", summary.slope, "")
      << ValueText("max", summary.max, unit) << ValueText("min", summary.min, unit);
  if (!summary.converged) out << "the fit did not converge\n";
}

std::string DoseCsv(const DoseSummary& summary) {
  std::string text = "Concentration (M),Response,Fit\n";
  for (std::size_t i = 0; i < summary.concentration.size(); ++i) {
    text += Shortest(summary.concentration[i]) + ',' + Shortest(summary.response[i]) + ',';
    if (!summary.curve.empty()) text += Shortest(summary.curve[i]);
    text += '\n';
  }
  return text;
}

}  // namespace zelvane
