// Functions of the panels for loading a set of waveforms.
#pragma once

#include <string>

namespace zelvane {

/// Adds a line to the log of fits: to its box if a panel has one, else to the console.
void AddFitLogLine(const std::string& line);

}  // namespace zelvane
