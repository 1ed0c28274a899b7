// `zelvane-cli simulate`: runs a model file.
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
  std::string stimulusFile;           // .stm that replaces the stimulus of the model; empty = none
  std::string autosaveFile;           // gets the run appended, .abf or text; empty = none
  std::string traceFile;              // .txt, .atf or .csv; empty = none
  std::string meanFile;               // for the mean over the runs; formats of traceFile
  std::string occupancyFile;          // .csv; empty = none
  std::string dwellFile;  // names the .ops, .sht and .lat of a Monte Carlo simulation; empty = none
  bool json = false;
};

/// Reads the model, applies the options to stores and panels, builds the stimulus and runs. Then writes the
/// files of the options and a summary. Interval and points come from the stimulus file, unless the options
/// give others. Trace, peak and final occupancies are those of the last run; the dwell lists are those of
/// all runs. Writes no files when the run failed or was stopped.
/// @return JobDone, JobFailed with the reason on `streams.err`, or JobMisused for a name or value that no
/// field
///         takes
int SimulateCommand(const SimulateOptions& options, const JobStreams& streams);

}  // namespace zelvane
