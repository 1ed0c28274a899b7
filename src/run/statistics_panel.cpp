// Event statistics of the last Monte Carlo simulation on MainPanel.
#include <algorithm>
#include <cstddef>
#include <span>

#include "dwells/dwell_store.h"
#include "run/run_panel.h"
#include "run/run_panels.h"
#include "screen/screen.h"
#include "trace/trace_events.h"

namespace zelvane {
namespace {

constexpr char StatisticsGroup[] = "statistics";

// clang-format off
constexpr ControlDecl StatisticsControls[] = {
    {.name = "OpenStateExits", .kind = ControlKind::Readout, .label = "Exits of open state", .format = "%d",
     .help = "Number of times that the channels left the open state in the last run."},
    {.name = "MonitoredChannels", .kind = ControlKind::Readout, .label = "Channels that opened", .format = "%d",
     .help = "Number of sweeps of channels in the last run that reached a monitored state."},
    {.name = "OpenTimesText", .kind = ControlKind::Readout, .label = "Open times", .format = "",
     .help = "Number and mean of the open times of the last simulation."},
    {.name = "ClosedTimesText", .kind = ControlKind::Readout, .label = "Closed times", .format = "",
     .help = "Number and mean of the closed times between openings of the last simulation."},
    {.name = "LatenciesText", .kind = ControlKind::Readout, .label = "Latencies", .format = "",
     .help = "Number and mean of the times to the first opening of a sweep in the last simulation."},
};
// clang-format on

/// Returns "1024, mean 0.512 ms"; an empty list has no mean.
std::string ListText(std::span<const float> list, float count) {
  const auto entries = std::min(static_cast<std::size_t>(std::max(count, 0.0F)), list.size());
  if (entries == 0) return "0";
  double sum = 0.0;
  for (const float entry : list.first(entries)) sum += static_cast<double>(entry);
  return FormatText("%zu, mean %.4g ms", entries, sum / static_cast<double>(entries));
}

}  // namespace

void AddStatisticsControls() {
  AddControls(MainPanelName, StatisticsGroup, StatisticsControls);
  StatisticsChanged.Add(ShowEventStatistics);
}

void ShowEventStatistics() {
  ShowNumber("OpenStateExits", Dwell.OpenStateExits);
  ShowNumber("MonitoredChannels", Dwell.MonitoredChannels);
  ShowText("OpenTimesText", ListText(Dwell.OpenTimes, Dwell.NumOpenTimes));
  ShowText("ClosedTimesText", ListText(Dwell.ClosedTimes, Dwell.NumClosedTimes));
  ShowText("LatenciesText", ListText(Dwell.Latencies, Dwell.NumLatencies));
}

}  // namespace zelvane
