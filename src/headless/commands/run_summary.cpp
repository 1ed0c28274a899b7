#include "headless/commands/run_summary.h"

#include <cmath>
#include <ostream>

#include "formats/number_text.h"
#include "headless/commands/one_job.h"
#include "headless/json_values.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "run/result_store.h"
#include "screen/screen.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// The last row of Occupancy inside the sweep, and its time in the sweep.
struct LastRow {
  int point = 0;
  double timeMs = 0.0;
};

/// Returns the last row of the run. The saved steps of an adaptive run that began late continue beyond the
/// sweep; then it is the last step inside.
LastRow LastRowOfRun() {
  const auto interval = AsTyped(Model.ADInterval);
  if (Result.ResultKind == ResultMonteCarlo) return {Model.NumPoints, interval * Model.NumPoints};
  if (Result.ResultKind != ResultSavedSteps) return {Model.NumPoints, interval * (Model.NumPoints - 1)};
  const double start = interval * Result.IntegrationOffset;
  const double end = interval * Model.NumPoints * (1.0 + 1e-6);  // times are 32-bit sums
  int step = Result.KeptSteps;
  const auto time = [&](int q) { return start + static_cast<double>(Result.SavedTime[Index(q)]); };
  while (step > 1 && time(step) > end) --step;
  return {step, time(step)};
}

/// Returns an occupancy for printing with six decimals; a value that rounds to zero loses its sign.
float Shown(float occupancy) {
  return std::abs(occupancy) < 5e-7F ? 0.0F : occupancy;
}

std::string Number(double value) {
  return FormatText("%.6g", value);
}

std::string PeakText(const Peak& peak) {
  return Number(peak.value) + " at " + Number(peak.ms) + " ms";
}

std::string SimulatorText(const RunSummary& summary) {
  if (summary.singleChannels) {
    const SingleChannelSummary& single = *summary.singleChannels;
    return FormatText("Monte Carlo, %d %s, %d run(s), %d interval(s) after each", single.channels,
                      single.subunits ? "cooperative subunits" : "channel(s)", single.runs, single.intervals);
  }
  if (summary.simulator != AdaptiveIntegrator)
    return "fixed step, at most " + Number(summary.control) + " ms";
  return "adaptive, tolerance " + Number(summary.control) +
         FormatText(", %d steps saved", summary.savedSteps);
}

Json PeakJson(const Peak& peak) {
  return {{"value", FloatJson(static_cast<float>(peak.value))}, {"time", NumberJson(peak.ms)}};
}

}  // namespace

std::vector<int> StatesOn() {
  const auto& on = Model.ModelIs2D != 0 ? Model.StateOn : Model.TableStateOn;
  std::vector<int> states;
  for (int s = 1; s <= MaxStates; ++s) {
    if (on[Index(s)] != 0) states.push_back(s);
  }
  return states;
}

const char* SimulatorWord(int simulator) {
  switch (simulator) {
    case MonteCarlo:
      return "montecarlo";
    case AdaptiveIntegrator:
      return "adaptive";
    default:  // any other code of a file runs as this one
      return "fixed";
  }
}

const char* UnitsWord(int units) {
  switch (units) {
    case UnitsChannels:
      return "channels";
    case UnitsConductance:
      return "pS";
    case UnitsCurrent:
      return "pA";
    default:
      return "probability";
  }
}

Peak LargestSample(std::span<const float> trace) {
  Peak peak;
  for (std::size_t i = 0; i < trace.size(); ++i) {
    const auto sample = static_cast<double>(trace[i]);
    if (!(std::abs(sample) > std::abs(peak.value))) continue;
    peak = {sample, static_cast<double>(i) * AsTyped(Model.ADInterval)};
  }
  return peak;
}

RunSummary SummariseRun(double wallSeconds) {
  RunSummary summary;
  summary.title = Model.ModelTitle;
  summary.points = Model.NumPoints;
  summary.intervalMs = AsTyped(Model.ADInterval);
  summary.simulator = Model.SimulatorKind;
  summary.control = AsTyped(Model.SimulatorKind == AdaptiveIntegrator ? Model.Precision : Model.MaxStepSize);
  summary.units = Model.DisplayUnits;
  summary.axisTitle = GraphNamed(MainPanelName).y.title;
  summary.wallSeconds = wallSeconds;
  if (Result.ResultKind == ResultSavedSteps) summary.savedSteps = Result.KeptSteps;
  summary.peak = LargestSample(Trace.SimTrace.first(Index(Model.NumPoints)));
  if (Model.SimulatorKind == MonteCarlo) summary.singleChannels = SummariseSingleChannels();
  const LastRow last = LastRowOfRun();
  summary.lastMs = last.timeMs;
  const auto& labels = Model.ModelIs2D != 0 ? Model.StateLabel : Model.TableStateLabel;
  for (const int s : StatesOn()) {
    const auto index = Index(s);
    summary.last.push_back({s, StateName(s, labels[index]), Result.Occupancy[index][Index(last.point)]});
  }
  return summary;
}

void WriteSummary(const RunSummary& summary, std::ostream& out) {
  out << "Scheme       " << (summary.title.empty() ? "(no title)" : summary.title) << '\n';
  out << "States on    " << summary.last.size() << ':';
  for (const FinalOccupancy& state : summary.last) out << ' ' << state.name;
  out << "\nSweep        " << summary.points << " points, one every " << Number(summary.intervalMs) << " ms ("
      << Number(summary.intervalMs * summary.points) << " ms)\n";
  out << "Simulator    " << SimulatorText(summary) << '\n';
  out << "Trace        " << summary.axisTitle << '\n';
  out << "Peak         " << PeakText(summary.peak) << (summary.meanPeak ? " in the last run\n" : "\n");
  if (summary.meanPeak) out << "Mean of runs " << PeakText(*summary.meanPeak) << " at its peak\n";
  if (summary.singleChannels) WriteSingleChannels(*summary.singleChannels, out);
  out << "Occupancy at " << Number(summary.lastMs) << " ms\n";
  for (const FinalOccupancy& state : summary.last) {
    out << FormatText("  %-12s %.6f\n", state.name.c_str(), static_cast<double>(Shown(state.value)));
  }
  if (!summary.singleChannels) out << "Wall time    " << FormatText("%.3f s", summary.wallSeconds) << '\n';
}

void WriteSummaryJson(const RunSummary& summary, const std::string& model, std::ostream& out) {
  Json json = Json::object();
  json["model"] = model;
  json["title"] = summary.title;
  json["points"] = summary.points;
  json["interval"] = NumberJson(summary.intervalMs);
  json["simulator"] = SimulatorWord(summary.simulator);
  if (summary.singleChannels) {
    json["singleChannels"] = SingleChannelsJson(*summary.singleChannels);
  } else {
    json[summary.simulator == AdaptiveIntegrator ? "tolerance" : "step"] = NumberJson(summary.control);
  }
  if (summary.savedSteps > 0) json["savedSteps"] = summary.savedSteps;
  json["units"] = UnitsWord(summary.units);
  json["axis"] = summary.axisTitle;
  json["peak"] = PeakJson(summary.peak);
  if (summary.meanPeak) json["mean"]["peak"] = PeakJson(*summary.meanPeak);
  json["final"]["time"] = NumberJson(summary.lastMs);
  json["final"]["states"] = Json::array();
  for (const FinalOccupancy& state : summary.last) {
    json["final"]["states"].push_back(
        {{"state", state.state}, {"label", state.name}, {"occupancy", FloatJson(state.value)}});
  }
  if (!summary.singleChannels) json["wallTime"] = NumberJson(summary.wallSeconds);
  out << JsonLine(json) << '\n';
}

}  // namespace zelvane
