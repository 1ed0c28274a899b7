// Settings from the command line of a job.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "platform/outcome.h"

namespace zelvane {

/// Sets store fields from "NAME=VALUE", in order. When a name is not a field or a value does not suit its
/// field, writes a message to `err` and returns false.
bool ApplySettings(const std::vector<std::string>& settings, std::ostream& err);

/// Copies the stores to the panels, because a run reads the panels, and builds the stimulus again.
/// @return what came of the stimulus: Refused, with a message, when its mode is unavailable
Outcome ShowJobStores();

}  // namespace zelvane
