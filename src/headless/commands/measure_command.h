// `zelvane-cli measure`: every sweep of a recording measured in one go.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/commands/one_job.h"

namespace zelvane {

/// Sweeps from 1, both ends included.
struct SweepRange {
  int first = 1;
  int last = 0;  // 0 = the last one of the file
};

struct MeasureOptions {
  std::string file;            // recording: ABF, or text
  std::optional<int> channel;  // physical input of an ABF file, number of the signal of a text
  SweepRange sweeps;
  // Of a text that does not tell it; the first line of a single column is a sample then.
  std::optional<double> intervalMs;
  std::string model;                  // settings; empty = those at start-up
  std::vector<std::string> settings;  // "NAME=VALUE", any store field
  std::optional<double> filterKHz;    // Gaussian filter, before anything is measured
  bool correct = false;               // for series resistance, with the settings of the model
  std::string outFile;                // .csv, .res or .tbl
  bool json = false;
};

/// "3-10" or "3". Nothing when it is neither, or the wrong way round.
std::optional<SweepRange> ParseSweeps(std::string_view text);

/// Measures the sweeps with the settings of the model, as the analysis panel does, and writes a row for each:
/// to the file, as JSON, or as CSV to `streams.out`. An ABF file stays open over the whole job and one sweep
/// is in memory.
/// @return JobDone; JobFailed with the reason on `streams.err`, also when stopped, and then no file is
///         written; JobMisused for a setting, channel, range or file name that cannot be
int MeasureCommand(const MeasureOptions& options, const JobStreams& streams);

}  // namespace zelvane
