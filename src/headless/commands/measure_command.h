// `zelvane-cli measure`: measures every sweep of a recording.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/commands/one_job.h"
#include "headless/commands/recorded_sweeps.h"

namespace zelvane {

struct MeasureOptions {
  std::string file;            // recording: ABF, or text
  std::optional<int> channel;  // physical input of an ABF file, number of the signal of a text
  SweepRange sweeps;
  // For a text without an interval; the first line of a single column is then a sample.
  std::optional<double> intervalMs;
  std::string model;                             // file of the settings; empty = settings of the start
  std::vector<std::string> settings;             // "NAME=VALUE", any store field
  std::optional<int> fit;                        // FitMode of the exponentials; empty = as in the settings
  std::optional<int> fitPoints;                  // AnalysisFitPts
  std::optional<int> fitEvery;                   // AnalysisParse
  std::optional<int> fitStart;                   // FitStartPts
  std::optional<std::array<double, 3>> seeds{};  // of the starting simplex; empty = always the same
  std::optional<double> filterKHz;               // corner of a Gaussian filter before the measures
  bool correct = false;                          // for series resistance, with the settings of the model
  std::string outFile;                           // .csv, .res or .tbl
  bool json = false;
};

/// Measures the sweeps as the analysis panel does, with the settings of the model. Writes one row per sweep
/// to the file, as JSON, or as CSV to `streams.out`. Keeps an ABF file open for the whole job, and one
/// sweep in memory.
/// @return JobDone; JobFailed after a failure or a stop, with the reason on `streams.err` and without a file;
///         JobMisused for an invalid setting, channel, range or file name
int MeasureCommand(const MeasureOptions& options, const JobStreams& streams);

}  // namespace zelvane
