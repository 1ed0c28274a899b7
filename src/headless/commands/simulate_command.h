// `zelvane-cli simulate`: one run of a model file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "headless/commands/one_job.h"

namespace zelvane {

struct SimulateOptions {
  std::string model;             // path
  std::optional<int> simulator;  // codes of ModelStore::SimulatorKind
  std::optional<int> points;
  std::optional<double> intervalMs;
  std::optional<int> units;  // codes of ModelStore::DisplayUnits
  std::optional<int> channels;
  std::optional<int> runs;            // of a Monte Carlo simulation
  std::vector<std::string> settings;  // "NAME=VALUE", any store field
  std::optional<Seeds> seeds;         // of the generators
  std::string stimulusFile;           // .stm that takes the place of the model's stimulus; empty = none
  std::string autosaveFile;           // that the run is appended to, .abf or text; empty = none
  std::string traceFile;              // .txt, .atf or .csv; empty = none
  std::string meanFile;               // mean over the runs, likewise
  std::string occupancyFile;          // .csv; empty = none
  std::string dwellFile;  // names the .ops, .sht and .lat of a Monte Carlo simulation; empty = none
  bool json = false;
};

/// Reads the model, sets what the options say in the stores and on the panels, rebuilds the stimulus, runs,
/// and writes the files asked for and a summary. A stimulus file brings its interval and its points unless
/// the options name others. The trace, peak and final occupancies are those of the last run, the dwell lists
/// those of all. Nothing is written when the run failed or was stopped.
/// @return JobDone, JobFailed with the reason on `streams.err`, or JobMisused for a name or value that no
/// field
///         takes
int SimulateCommand(const SimulateOptions& options, const JobStreams& streams);

}  // namespace zelvane
