// `zelvane-cli average`: averages the sweeps of recordings.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "headless/commands/one_job.h"
#include "headless/commands/recorded_sweeps.h"

namespace zelvane {

struct AverageOptions {
  std::vector<std::string> files;
  std::optional<int> channel;
  std::optional<double> intervalMs;  // for a text without one
  SweepRange sweeps;
  int align = 1;                   // AlignMode
  std::optional<double> cursorMs;  // of the alignment at a time
  bool subtractBaseline = false;
  std::string model;                  // file of the settings
  std::vector<std::string> settings;  // "NAME=VALUE", any store field
  std::string outFile;                // of the mean: .atf, .csv, .txt
  std::string varianceFile;           // .csv
  bool json = false;
};

/// Reads each sweep once, measures it, lays it on the first one and adds it, as the panel of averages does. Without
/// settings the search for the peak lasts to the end of the sweep. Files must have one interval.
/// @return JobDone; JobFailed after a failure or a stop, with the reason on `streams.err` and without a file; JobMisused for
///         wrong settings
int AverageCommand(const AverageOptions& options, const JobStreams& streams);

}  // namespace zelvane
