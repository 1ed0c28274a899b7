// What a Monte Carlo simulation came to, beside its trace.
#pragma once

#include <iosfwd>
#include <vector>

#include "headless/json_values.h"

namespace zelvane {

struct DwellListSummary {
  int count = 0;
  double meanMs = 0.0;  // 0 for an empty list
};

/// Lists are of the whole simulation; exits and channels that reached a monitored state of its last run.
struct SingleChannelSummary {
  int channels = 0;  // of a run; with subunits the subunits of the one channel
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

/// Sums up the simulation in the stores. Reads: `Model`, `Dwell`.
SingleChannelSummary SummariseSingleChannels();

void WriteSingleChannels(const SingleChannelSummary& summary, std::ostream& out);
Json SingleChannelsJson(const SingleChannelSummary& summary);

/// Adds up the traces of the runs of a simulation while it lives. It stands where the analysis of each run
/// stands in the window, since a job has no results file; one at a time.
class RunMean {
 public:
  RunMean();
  ~RunMean();
  RunMean(const RunMean&) = delete;
  RunMean& operator=(const RunMean&) = delete;

  /// The mean over the runs, a sample a point. After a single run, which is not analysed, that of the trace.
  std::vector<float> Mean() const;

 private:
  void Add();
  std::vector<double> sum_;
  int runs_ = 0;
};

}  // namespace zelvane
