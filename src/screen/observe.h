// Telling observers.
#pragma once

#include <string>

namespace zelvane {

void ObserveBefore();
void ObserveDid(const std::string& line);
void ObserveQueued(const std::string& line);

/// Calls of ProcessSystemEvents since the outermost action began.
int PumpsOfAction();
void RestartPumpCount();

}  // namespace zelvane
