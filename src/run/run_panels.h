// The parts of the run's panels, each in its file.
#pragma once

namespace zelvane {

void AddStatisticsControls();  // onto MainPanel: what the channels of a Monte Carlo simulation did
void AddValuesTablePanel();

}  // namespace zelvane
