// DwellListsPanel, ListChoicePanel and the menu of single channels.
#pragma once

namespace zelvane {

void AddDwellListsPanels();

}  // namespace zelvane
