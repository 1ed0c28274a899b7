// What loading a set of waveforms asks of the panels.
#pragma once

#include <string>

namespace zelvane {

/// Adds a line to the log of fits: to its box where a panel holds one, else to the console.
void AddFitLogLine(const std::string& line);

}  // namespace zelvane
