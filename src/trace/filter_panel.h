// The panel that adds noise to the trace and filters it.
#pragma once

namespace zelvane {

void AddFilterPanel();  // with a button on MainPanel

}  // namespace zelvane
