// FitPanel: the fit of rates to recorded waveforms.
//
//   Declaring          AddFitPanel  DimForSessions
//   Panel and store    ReadFitPanel  WriteFitPanel
//   What is shown      ShowFitResults  ShowLoadedWaves  FitPanelPlot  FitPlot  PlotFitProgress  WhitenFitCursors
//   Commands           OpenFitPanel  AskForFitLog  SwitchNormalized
//
// Load: wave_load.h. Sessions: fit_session.h.
#pragma once

#include <span>
#include <string_view>

#include "platform/outcome.h"
#include "screen/screen.h"

namespace zelvane {

inline constexpr char FitPanelName[] = "FitPanel";

void AddFitPanel();

/// Dims what must wait while a session runs, on all panels. Call after AddFitRatesTable.
void DimForSessions();

/// Shows the panel with the present settings and plots. The task in front keeps its tag.
void OpenFitPanel();

/// Copies the settings of the panel into the stores, within their limits. While `Fit.FitAlignChoice` is 0, all
/// waveforms get the positions of the waveform on display. `Fit.FitAlignRange` becomes 1.
void ReadFitPanel();

/// Shows settings, set and results of the stores.
void WriteFitPanel();

/// Shows the results: code, evaluations and residuals.
/// @param colour  "blue" during a session, "" after it
void ShowFitResults(std::string_view colour = {});

/// Draws the waveform on display, its windows and its stimulus.
void FitPanelPlot();

/// Shows the set after recordings were read: length and interval of the run are theirs.
void ShowLoadedWaves();

/// Draws recordings and simulations as they are compared, and their differences.
void FitPlot();

/// Returns the colour of the simulation of waveform `w` in the comparison.
Colour FitCurveColour(int w);

/// Draws the best normalised residual against evaluations. Both have the same length.
void PlotFitProgress(std::span<const double> evaluations, std::span<const float> residuals);

/// Makes the six cursors white, for the time of a session. FitPanelPlot gives them their colours again.
void WhitenFitCursors();

/// Asks for the log file. On cancel turns the log off and returns false.
bool AskForFitLog();

/// Turns `Fit.FitNormalized` on and normalises the recordings.
/// @return as NormalizeWaves
Outcome SwitchNormalized();

}  // namespace zelvane
