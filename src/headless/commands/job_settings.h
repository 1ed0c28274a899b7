// Settings that a job's command line brings, and the panels that follow them.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace zelvane {

/// Sets store fields from "NAME=VALUE", in order. False, told on `err`, when a name is no field or a value
/// does not suit it.
bool ApplySettings(const std::vector<std::string>& settings, std::ostream& err);

/// Shows the stores on the panels, which a run reads, and rebuilds the stimulus.
void ShowJobStores();

}  // namespace zelvane
