// `zelvane-cli info` and `zelvane-cli convert`: recordings and stimulus files by name.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "headless/commands/one_job.h"

namespace zelvane {

/// Writes kind, version, inputs, interval, sweeps, samples and length of each file; with `json` one JSON
/// object per line. Returns JobFailed when a file is not a recording, but still describes the other files.
/// @param intervalMs  ms, above 0, for texts without an interval, as in ConvertOptions
int InfoCommand(const std::vector<std::string>& files, bool json, const JobStreams& streams,
                std::optional<double> intervalMs = {});

struct ConvertOptions {
  std::string in{};
  std::string out{};             // .atf, .txt or .asc, .csv, .abf, .stm
  std::optional<int> channel{};  // its number in `info`; default: the first
  std::string sweep = "1";       // from 1, or "all"
  double startMs = 0.0;          // of each sweep
  std::optional<double> lengthMs{};
  int every = 1;  // keep every n-th sample
  // For a text without an interval; the first line of a single column is then a sample.
  std::optional<double> intervalMs{};
};

/// Writes one input of a recording. The name of the new file decides the format. With several sweeps, an
/// ABF file gets one episode per sweep, ATF and CSV get one column per sweep, and a single column gets the
/// sweeps one after the other. Between .stm and .asc the channel is the profile; default: Drug1. On failure
/// keeps the old file.
int ConvertCommand(const ConvertOptions& options, const JobStreams& streams);

}  // namespace zelvane
