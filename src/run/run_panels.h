// The parts of the run's panels, each in its file.
#pragma once

namespace zelvane {

void AddStatisticsControls();  // statistics of a Monte Carlo simulation on MainPanel
void AddValuesTablePanel();

}  // namespace zelvane
