// Functions of the panels for the writers of traces.
#pragma once

#include <string>

namespace zelvane {

/// Adds the commands and the fields of autosave to the main panel and the menu.
void AddTraceWriteControls();

/// Returns the title of the Y axis of the main graph; empty without panels.
std::string ShownTraceTitle();

}  // namespace zelvane
