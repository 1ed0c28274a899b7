// `zelvane-cli model`: an account of a model file, and its conversion to the newest format.
#pragma once

#include <string>

#include "headless/commands/one_job.h"

namespace zelvane {

/// Writes what a model file holds: states, rates with units and dependences, run settings, stimulus; for
/// people, or with `json` as one JSON object.
int ModelCommand(const std::string& path, bool json, const JobStreams& streams);

/// Reads a model file of any format and writes it to `newPath` in the newest one. `newPath` may be `oldPath`;
/// on a failure the file that stood there is whole.
int UpgradeModelCommand(const std::string& oldPath, const std::string& newPath, const JobStreams& streams);

}  // namespace zelvane
