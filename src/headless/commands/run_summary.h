// A summary of a run in numbers.
#pragma once

#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "headless/commands/single_channel_summary.h"

namespace zelvane {

struct FinalOccupancy {
  int state = 0;
  std::string name;  // label, or number of a state without a label
  float value = 0.0F;
};

/// The sample farthest from 0 of a trace, and its time.
struct Peak {
  double value = 0.0;
  double ms = 0.0;
};

struct RunSummary {
  std::string title;
  int points = 0;
  double intervalMs = 0.0;
  int simulator = 0;
  double control = 0.0;  // largest step, ms, or tolerance, at the end of the run
  int units = 0;
  std::string axisTitle;
  Peak peak;
  std::optional<Peak> meanPeak;                        // of the mean over several runs
  std::optional<SingleChannelSummary> singleChannels;  // of a Monte Carlo simulation
  std::vector<FinalOccupancy> last;                    // of the states that are on
  double lastMs = 0.0;
  int savedSteps = 0;  // of an adaptive run
  double wallSeconds = 0.0;
};

/// Returns the peak of a trace with one sample per `Model.ADInterval`.
Peak LargestSample(std::span<const float> trace);

/// Summarises the run in the stores. The caller sets `meanPeak`. Reads: `Model`, `Result`, `Trace`, `Dwell`.
RunSummary SummariseRun(double wallSeconds);

/// Write the summary as text or as JSON. They leave out the wall time of a Monte Carlo simulation, so that
/// equal seeds give equal bytes.
void WriteSummary(const RunSummary& summary, std::ostream& out);
void WriteSummaryJson(const RunSummary& summary, const std::string& model, std::ostream& out);

/// Return the word of `--simulator` or `--units` for a code.
const char* SimulatorWord(int simulator);
const char* UnitsWord(int units);

/// Returns the states that are on in the active form of the scheme.
std::vector<int> StatesOn();

}  // namespace zelvane
