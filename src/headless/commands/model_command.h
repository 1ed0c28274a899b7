// `zelvane-cli model`: describes a model file, and converts it to the newest format.
#pragma once

#include <string>

#include "headless/commands/one_job.h"

namespace zelvane {

/// Writes the contents of a model file: states, rates with units and dependences, run settings, stimulus.
/// Writes text for people, or with `json` one JSON object. A file that ends early or has lines without their
/// numbers is described too, but returns JobFailed unless `lenient`.
int ModelCommand(const std::string& path, bool json, const JobStreams& streams, bool lenient = false);

/// Reads a model file of any format and writes it to `newPath` in the newest format. `newPath` may be
/// `oldPath`. On failure keeps the old file at `newPath`. Such a faulty file fails unless `lenient`.
int UpgradeModelCommand(const std::string& oldPath, const std::string& newPath, const JobStreams& streams,
                        bool lenient = false);

}  // namespace zelvane
