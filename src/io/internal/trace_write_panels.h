// What the writers of traces ask of the panels.
#pragma once

#include <string>

namespace zelvane {

/// The title of the Y axis of the main graph; empty without panels.
std::string ShownTraceTitle();

}  // namespace zelvane
