#include "headless/commands/single_channel_summary.h"

#include <algorithm>
#include <numeric>
#include <ostream>
#include <span>

#include "dwells/dwell_store.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

RunMean* listening = nullptr;

DwellListSummary SummariseList(std::span<const float> list, float entries) {
  const auto count = static_cast<std::size_t>(std::clamp(entries, 0.0F, static_cast<float>(list.size())));
  if (count == 0) return {};
  const std::span<const float> durations = list.first(count);
  const double sum = std::accumulate(durations.begin(), durations.end(), 0.0);
  return {static_cast<int>(count), sum / static_cast<double>(count)};
}

void WriteList(const char* title, const DwellListSummary& list, std::ostream& out) {
  out << FormatText("%-12s %d", title, list.count);
  if (list.count > 0) out << FormatText(", mean %.6g ms", list.meanMs);
  out << '\n';
}

Json ListJson(const DwellListSummary& list) {
  Json json = Json::object();
  json["count"] = list.count;
  json["mean"] = list.count > 0 ? NumberJson(list.meanMs) : Json(nullptr);
  return json;
}

/// Returns the trace of the last run.
std::span<const float> PresentTrace() {
  return Trace.SimTrace.first(Index(std::clamp(Model.NumPoints, 0, MaxStimPoints)));
}

}  // namespace

SingleChannelSummary SummariseSingleChannels() {
  return {Model.NumChannels,
          Model.NumRuns,
          std::max(0, Model.NumIntervals),
          Model.MultiSubunit != 0,
          Model.OpenState,
          Dwell.OpenStateExits,
          Dwell.MonitoredChannels,
          SummariseList(Dwell.OpenTimes, Dwell.NumOpenTimes),
          SummariseList(Dwell.ClosedTimes, Dwell.NumClosedTimes),
          SummariseList(Dwell.Latencies, Dwell.NumLatencies)};
}

void WriteSingleChannels(const SingleChannelSummary& summary, std::ostream& out) {
  WriteList("Open times", summary.open, out);
  WriteList("Closed times", summary.closed, out);
  WriteList("Latencies", summary.latencies, out);
  const char* where = summary.subunits ? "in the last subunit" : summary.runs > 1 ? "in the last run" : "";
  const auto write = [&](const char* title, const std::string& text) {
    out << FormatText("%-12s ", title) << text << (*where != '\0' ? " " : "") << where << '\n';
  };
  write("Exits", FormatText("%d of state %d", summary.openStateExits, summary.openState));
  write("Opened", FormatText("%d channels reached a monitored state", summary.monitoredChannels));
}

Json SingleChannelsJson(const SingleChannelSummary& summary) {
  Json json = Json::object();
  json["channels"] = summary.channels;
  json["runs"] = summary.runs;
  json["intervals"] = summary.intervals;
  json["subunits"] = summary.subunits;
  json["openState"] = summary.openState;
  json["openStateExits"] = summary.openStateExits;
  json["monitoredChannels"] = summary.monitoredChannels;
  json["openTimes"] = ListJson(summary.open);
  json["closedTimes"] = ListJson(summary.closed);
  json["latencies"] = ListJson(summary.latencies);
  return json;
}

RunMean::RunMean() {
  listening = this;
  Model.AutoAnalyze = 0;  // a job writes no file of measures
  SeriesRun.Add([](int) {
    if (listening != nullptr) listening->Add();
  });
}

RunMean::~RunMean() {
  listening = nullptr;
}

void RunMean::Add() {
  const std::span<const float> trace = PresentTrace();
  sum_.resize(trace.size());
  for (std::size_t i = 0; i < trace.size(); ++i) sum_[i] += static_cast<double>(trace[i]);
  ++runs_;
}

std::vector<float> RunMean::Mean() const {
  const std::span<const float> trace = PresentTrace();
  if (runs_ == 0) return {trace.begin(), trace.end()};
  std::vector<float> mean;
  mean.reserve(sum_.size());
  for (const double sum : sum_) mean.push_back(static_cast<float>(sum / runs_));
  return mean;
}

}  // namespace zelvane
