// What the writers of traces ask of the panels.
#pragma once

#include <string>

namespace zelvane {

/// Adds the commands and the fields of autosave to the main panel and the menu.
void AddTraceWriteControls();

/// The title of the Y axis of the main graph; empty without panels.
std::string ShownTraceTitle();

}  // namespace zelvane
