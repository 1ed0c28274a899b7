// `zelvane-cli info` and `zelvane-cli convert`: recordings and stimulus files by name.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "headless/commands/one_job.h"

namespace zelvane {

/// Tells of each file its kind, version, inputs, interval, sweeps, samples and length; with `json` one JSON
/// object a line. JobFailed when a file is no recording; the others are told all the same.
/// @param intervalMs  ms, above 0, of texts that do not tell it, as in ConvertOptions
int InfoCommand(const std::vector<std::string>& files, bool json, const JobStreams& streams,
                std::optional<double> intervalMs = {});

struct ConvertOptions {
  std::string in{};
  std::string out{};             // .atf, .txt or .asc, .csv, .abf, .stm
  std::optional<int> channel{};  // as `info` numbers them; the first without one
  std::string sweep = "1";       // from 1, or "all"
  double startMs = 0.0;          // of each sweep
  std::optional<double> lengthMs{};
  int every = 1;  // keep every n-th sample
  // Of a text that does not tell it; the first line of a single column is a sample then.
  std::optional<double> intervalMs{};
};

/// Writes one input of a recording in the form that the name of the new file asks for. Of several sweeps an
/// ABF file has an episode each, an ATF and a CSV a column each, a single column one behind the other.
/// Between .stm and .asc the channel names the profile, Drug1 without one. A former file stands when
/// something fails.
int ConvertCommand(const ConvertOptions& options, const JobStreams& streams);

}  // namespace zelvane
