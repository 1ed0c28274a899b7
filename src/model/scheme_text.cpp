#include "model/scheme_text.h"

#include <cmath>

#include "model/model.h"
#include "screen/entry.h"

namespace zelvane {
namespace {

constexpr int TipDigits = 7;

int DrugsOf(const DependenceTables& tables, int from, int to) {
  int drugs = 0;
  for (int drug = 1; drug <= MaxDrugs; ++drug) drugs += tables.Drug[drug][from][to] != 0;
  return drugs;
}

/// Returns 1/s for a rate without a drug, with one 1/M more for each drug.
std::string UnitOfRate(int drugs) {
  if (drugs == 0) return "/s";
  return drugs == 1 ? "/M/s" : "/M^" + std::to_string(drugs) + "/s";
}

}  // namespace

std::string DependenceText(const DependenceTables& tables, int from, int to) {
  std::string text;
  const auto add = [&text](const std::string& word) { text += (text.empty() ? "" : ", ") + word; };
  for (int drug = 1; drug <= MaxDrugs; ++drug) {
    if (tables.Drug[drug][from][to] == 0) continue;
    const std::string& label = Model.DrugLabel[drug];
    add(label.empty() ? "drug " + std::to_string(drug) : label);
  }
  if (tables.Volt[from][to] != 0) add("V");
  return text;
}

std::string RateText(double rate) {
  const double size = std::abs(rate);
  if (size >= 9999.5 && size < 99999.5) return FormatText("%.0f", rate);
  return CompactNumber(rate, size == 0.0 || (size >= 0.01 && size < 1e4) ? 4 : 3);
}

std::string StateName(int state) {
  const std::string& label = Model.StateLabel[state];
  return label.empty() ? "state " + std::to_string(state) : label;
}

std::string StateTip(int state) {
  const std::string& label = Model.StateLabel[state];
  std::string tip = FormatText("State %d", state);
  if (!label.empty()) tip.append(": ").append(label);
  if (Model.StateOn[state] == 0) return tip + "\noff";
  tip += "\nConductance " + CompactNumber(static_cast<double>(Model.StateConductance[state])) + " pS";
  tip += "\nStarting occupancy " + CompactNumber(static_cast<double>(Model.StartOccupancy[state]));
  if (Model.StateMonitored[state] != 0) tip += "\nMonitored";
  return tip;
}

std::string RateTip(int link, bool forward) {
  const auto [low, high] = LinkTable[link];
  const int from = forward ? low : high;
  const int to = forward ? high : low;
  const double rate = forward ? Model.KOn[link] : Model.KOff[link];
  const std::string depends = DependenceText(GridDependences(), from, to);
  std::string tip = FormatText(
      "K%d %s: %s to %s\n%s %s", link, forward ? "on" : "off", StateName(from).c_str(), StateName(to).c_str(),
      CompactNumber(rate, TipDigits).c_str(), UnitOfRate(DrugsOf(GridDependences(), from, to)).c_str());
  if (!depends.empty()) tip += "\nDepends on " + depends;
  return tip;
}

}  // namespace zelvane
