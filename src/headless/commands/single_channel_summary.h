// A summary of the channels of a Monte Carlo simulation.
#pragma once

#include <iosfwd>
#include <vector>

#include "headless/json_values.h"

namespace zelvane {

struct DwellListSummary {
  int count = 0;
  double meanMs = 0.0;  // 0 for an empty list
};

/// The lists belong to the whole simulation. Exits, and channels that reached a monitored state, belong to
/// its last run.
struct SingleChannelSummary {
  int channels = 0;  // of a run; with subunits, the subunits of the channel
  int runs = 0;
  int intervals = 0;  // sweeps without agonist between the runs
  bool subunits = false;
  int openState = 0;
  int openStateExits = 0;
  int monitoredChannels = 0;
  DwellListSummary open;
  DwellListSummary closed;
  DwellListSummary latencies;
};

/// Summarises the simulation in the stores. Reads: `Model`, `Dwell`.
SingleChannelSummary SummariseSingleChannels();

void WriteSingleChannels(const SingleChannelSummary& summary, std::ostream& out);
Json SingleChannelsJson(const SingleChannelSummary& summary);

/// Adds up the traces of the runs during its lifetime. It uses the place of the window's analysis after
/// each run, because a job has no results file. Only one may exist at a time.
class RunMean {
 public:
  RunMean();
  ~RunMean();
  RunMean(const RunMean&) = delete;
  RunMean& operator=(const RunMean&) = delete;

  /// Returns the mean over the runs, one sample per point. After a single run returns its trace.
  std::vector<float> Mean() const;

 private:
  void Add();
  std::vector<double> sum_;
  int runs_ = 0;
};

}  // namespace zelvane
