#include "headless/commands/model_report.h"

#include <cmath>
#include <limits>
#include <ostream>
#include <set>

#include "headless/commands/one_job.h"
#include "headless/commands/run_summary.h"
#include "kinetics/rate_factor.h"
#include "model/model.h"
#include "platform/index.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

using Labels = std::array<std::string, MaxStates + 1>;

constexpr double MillivoltsPerVolt = 1000.0;

/// Return the states that take part: in the grid those that are on, in the table those with a rate into or
/// out of them.
std::vector<int> GridStatesOn() {
  std::vector<int> states;
  for (int s = 1; s <= MaxStates; ++s) {
    if (Model.StateOn[Index(s)] != 0) states.push_back(s);
  }
  return states;
}

std::vector<int> TableStates() {
  std::set<int> states;
  for (const RateAccount& rate : TableRates()) states.insert({rate.from, rate.to});
  return {states.begin(), states.end()};
}

RateAccount Account(int from, int to, double rate, const DependenceTables& depend) {
  RateAccount account{from, to, rate, {}, false, 0.0, std::numeric_limits<double>::infinity()};
  for (int d = 1; d <= MaxDrugs; ++d) {
    if (depend.Drug[Index(d)][Index(from)][Index(to)] != 0) account.drugs.push_back(d);
  }
  if (depend.Volt[Index(from)][Index(to)] != 1) return account;
  const float steepness = depend.Steepness[Index(from)][Index(to)];
  account.onVoltage = true;
  account.steepness = static_cast<double>(steepness);
  const double coefficient = VoltageCoefficient(steepness, Model.Temperature);
  if (coefficient != 0.0) account.efoldMillivolts = MillivoltsPerVolt / coefficient;
  return account;
}

std::string DrugName(int drug) {
  const std::string& label = Model.DrugLabel[Index(drug)];
  return label.empty() ? "Drug" + std::to_string(drug) : label;
}

std::string DependenceText(const RateAccount& rate) {
  std::string text;
  for (const int d : rate.drugs) text += " x [" + DrugName(d) + "]";
  if (!rate.onVoltage) return text;
  if (std::isinf(rate.efoldMillivolts)) return text + " x exp(0 V)";
  return text + FormatText(" x exp(V / %.4g mV)", rate.efoldMillivolts);
}

void WriteStates(std::ostream& out, const std::vector<int>& states, const Labels& labels) {
  out << "  state  label                conductance      start  monitored\n";
  for (const int s : states) {
    out << FormatText("  %5d  %-20s %8g pS %10g", s, labels[Index(s)].c_str(),
                      static_cast<double>(Model.StateConductance[Index(s)]),
                      static_cast<double>(Model.StartOccupancy[Index(s)]))
        << (Model.StateMonitored[Index(s)] != 0 ? "  yes\n" : "\n");
  }
}

void WriteRates(std::ostream& out, const std::vector<RateAccount>& rates, const Labels& labels) {
  for (const RateAccount& rate : rates) {
    const std::string way =
        StateName(rate.from, labels[Index(rate.from)]) + " -> " + StateName(rate.to, labels[Index(rate.to)]);
    out << FormatText("  %2d -> %-2d  %-24s %12g ", rate.from, rate.to, way.c_str(), rate.rate)
        << RateUnit(rate) << DependenceText(rate) << '\n';
  }
}

void WriteRunSettings(std::ostream& out) {
  out << "\nRun settings\n"
      << FormatText("  simulator %s, %d points, one every %g ms (%g ms)\n",
                    SimulatorWord(Model.SimulatorKind), Model.NumPoints,
                    static_cast<double>(Model.ADInterval),
                    static_cast<double>(Model.ADInterval) * Model.NumPoints)
      << FormatText("  largest step %g ms, tolerance %g\n", static_cast<double>(Model.MaxStepSize),
                    static_cast<double>(Model.Precision))
      << FormatText("  %d run(s), %d interval(s) after each, %d channel(s)%s\n", Model.NumRuns,
                    Model.NumIntervals, Model.NumChannels,
                    Model.MultiSubunit != 0 ? ", cooperative subunits" : "")
      << FormatText("  trace in %s; holding %g mV, reversal %g mV, valence %d, %g degrees Celsius\n",
                    UnitsWord(Model.DisplayUnits), static_cast<double>(Model.VHold),
                    static_cast<double>(Model.VRev), Model.Valence, static_cast<double>(Model.Temperature));
}

const char* StimModeWord() {
  switch (Stimulus.StimMode) {
    case StimAutomatic:
      return "automatic";
    case StimManual:
      return "manual";
    case StimExponential:
      return "exponential";
    default:
      return "user";
  }
}

void WriteStimulus(std::ostream& out) {
  out << "\nStimulus\n";
  if (Stimulus.StimMode != StimAutomatic) {
    out << "  " << StimModeWord() << ": built on the stimulus panel, not kept in a model file\n";
    return;
  }
  const bool voltage = Stimulus.AutoDrugOrVolt != 0;
  const auto value = static_cast<double>(Stimulus.AutoValue);
  out << FormatText("  step of %s: %g %s from %g to %g ms\n", voltage ? "voltage" : DrugName(1).c_str(),
                    voltage ? value * MillivoltsPerVolt : value, voltage ? "mV" : "M",
                    static_cast<double>(Stimulus.AutoStart), static_cast<double>(Stimulus.AutoStop));
}

Json RatesJson(const std::vector<RateAccount>& rates) {
  Json list = Json::array();
  for (const RateAccount& rate : rates) {
    Json json = Json::object();
    json["from"] = rate.from;
    json["to"] = rate.to;
    json["rate"] = NumberJson(rate.rate);
    json["unit"] = RateUnit(rate);
    json["drugs"] = rate.drugs;
    if (rate.onVoltage) {
      json["voltage"]["steepness"] = TypedJson(static_cast<float>(rate.steepness));
      json["voltage"]["efold_mV"] = NumberJson(rate.efoldMillivolts);
    }
    list.push_back(std::move(json));
  }
  return list;
}

Json StatesJson(const std::vector<int>& states, const Labels& labels) {
  Json list = Json::array();
  for (const int s : states) {
    Json json = Json::object();
    json["state"] = s;
    json["label"] = labels[Index(s)];
    json["conductance"] = TypedJson(Model.StateConductance[Index(s)]);
    json["start"] = TypedJson(Model.StartOccupancy[Index(s)]);
    json["monitored"] = Model.StateMonitored[Index(s)] != 0;
    list.push_back(std::move(json));
  }
  return list;
}

Json RunJson() {
  Json json = Json::object();
  json["simulator"] = SimulatorWord(Model.SimulatorKind);
  json["points"] = Model.NumPoints;
  json["interval"] = TypedJson(Model.ADInterval);
  json["step"] = TypedJson(Model.MaxStepSize);
  json["tolerance"] = TypedJson(Model.Precision);
  json["runs"] = Model.NumRuns;
  json["intervals"] = Model.NumIntervals;
  json["channels"] = Model.NumChannels;
  json["subunits"] = Model.MultiSubunit != 0;
  json["units"] = UnitsWord(Model.DisplayUnits);
  json["holding"] = TypedJson(Model.VHold);
  json["reversal"] = TypedJson(Model.VRev);
  json["valence"] = Model.Valence;
  json["temperature"] = TypedJson(Model.Temperature);
  return json;
}

Json StimulusJson() {
  Json json = Json::object();
  json["mode"] = StimModeWord();
  if (Stimulus.StimMode != StimAutomatic) return json;
  json["target"] = Stimulus.AutoDrugOrVolt != 0 ? Json("voltage") : Json(1);
  json["value"] = TypedJson(Stimulus.AutoValue);
  json["start"] = TypedJson(Stimulus.AutoStart);
  json["stop"] = TypedJson(Stimulus.AutoStop);
  return json;
}

}  // namespace

std::vector<RateAccount> GridRates() {
  std::vector<RateAccount> rates;
  for (int n = 1; n <= MaxLinks; ++n) {
    const auto [low, high] = LinkTable[Index(n)];
    if (Model.StateOn[Index(low)] == 0 || Model.StateOn[Index(high)] == 0) continue;
    if (Model.KOn[Index(n)] != 0.0)
      rates.push_back(Account(low, high, Model.KOn[Index(n)], GridDependences()));
    if (Model.KOff[Index(n)] != 0.0)
      rates.push_back(Account(high, low, Model.KOff[Index(n)], GridDependences()));
  }
  return rates;
}

std::vector<RateAccount> TableRates() {
  std::vector<RateAccount> rates;
  for (int i = 1; i <= MaxStates; ++i) {
    for (int j = 1; j <= MaxStates; ++j) {
      const float rate = Model.TableRate[Index(i)][Index(j)];
      if (i != j && rate != 0.0F)
        rates.push_back(Account(i, j, static_cast<double>(rate), Model.TableDepend));
    }
  }
  return rates;
}

std::string RateUnit(const RateAccount& rate) {
  if (rate.drugs.empty()) return "1/s";
  if (rate.drugs.size() == 1) return "1/(M s)";
  return FormatText("1/(M^%zu s)", rate.drugs.size());
}

void WriteModelReport(std::ostream& out) {
  out << (Model.ModelTitle.empty() ? "(no title)" : Model.ModelTitle) << "\n\nGrid\n";
  WriteStates(out, GridStatesOn(), Model.StateLabel);
  out << '\n';
  WriteRates(out, GridRates(), Model.StateLabel);
  if (const auto rates = TableRates(); !rates.empty()) {
    out << "\nTable\n";
    WriteStates(out, TableStates(), Model.TableStateLabel);
    out << '\n';
    WriteRates(out, rates, Model.TableStateLabel);
  }
  WriteRunSettings(out);
  WriteStimulus(out);
}

Json ModelReportJson() {
  Json json = Json::object();
  json["title"] = Model.ModelTitle;
  json["drugs"] = Json::array();
  for (int d = 1; d <= MaxDrugs; ++d) json["drugs"].push_back(Model.DrugLabel[Index(d)]);
  json["states"] = StatesJson(GridStatesOn(), Model.StateLabel);
  json["rates"] = RatesJson(GridRates());
  json["tableStates"] = StatesJson(TableStates(), Model.TableStateLabel);
  json["table"] = RatesJson(TableRates());
  json["run"] = RunJson();
  json["stimulus"] = StimulusJson();
  return json;
}

}  // namespace zelvane
