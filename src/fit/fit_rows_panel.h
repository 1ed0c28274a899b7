// What the panels of a fit show of its rows: the controls of the fit of rates on FitLimitsPanel, the limits of the
// stimulus, and the table of the rates.
#pragma once

namespace zelvane {

/// Adds the form, the automatic limits and the limits of the stimulus. FitLimitsPanel must exist.
void AddFitRowsControls();

/// Adds the table of the rates and the buttons of both panels of limits to FitPanel, which must exist.
void AddFitRatesTable();

/// Declares StimFitLimitsPanel.
void AddStimFitLimitsPanel();

/// Store what is typed on StimFitLimitsPanel, and show the store there.
void StimFitLimitsRead();
void StimFitLimitsWrite();

}  // namespace zelvane
