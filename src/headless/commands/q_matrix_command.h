// `zelvane-cli qmatrix`: the relaxation and the equilibrium of a scheme at a fixed stimulus.
#pragma once

#include <string>
#include <vector>

#include "headless/commands/one_job.h"

namespace zelvane {

struct QMatrixOptions {
  std::string model;                  // path
  double timeMs = 0.0;                // time in the stimulus; before point 1, point 1 is used
  std::vector<std::string> settings;  // "NAME=VALUE", any store field
  bool json = false;
};

/// Reads the model and builds its stimulus. Writes the rate matrix at this time, the relaxation time
/// constants and the occupancies at equilibrium.
/// @return JobDone; JobFailed with the reason on `streams.err`, also where no state takes part or a rate is
/// not
///         finite; JobMisused for a setting that no field takes
int QMatrixCommand(const QMatrixOptions& options, const JobStreams& streams);

}  // namespace zelvane
