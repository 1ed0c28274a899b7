// The panel that adds noise to the trace and filters it.
#pragma once

namespace zelvane {

void AddFilterPanel();
void AddFilterButton();  // onto MainPanel
void AddFilterMenu();

}  // namespace zelvane
