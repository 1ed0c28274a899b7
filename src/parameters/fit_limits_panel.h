// FitLimitsPanel: the table of the parameters of the present fit, and the moment at which FitMode changes.
//
//   Declaring          AddFitLimitsPanel
//   The present fit    SetFitMode  FollowFitMode  ShowFitLimits
//   Panel and tables   FitLimitsRead  FitLimitsWrite  FitLimitsRefresh
//
// Every table of limits has its own controls, under the name of its field. Those of the present fit are visible.
#pragma once

#include "screen/listeners.h"

namespace zelvane {

inline constexpr char FitLimitsPanelName[] = "FitLimitsPanel";

/// Another fit is the present one: panels show what depends on it.
inline Listeners<> FitModeChanged;

/// The flags and switches of the formulas were read from the panel.
inline Listeners<> AnalysisFitSwitchesRead;

/// Declares the panel. The fits must be registered.
void AddFitLimitsPanel();

/// Makes a fit the present one. What is typed on the panel goes to the tables of the former one.
void SetFitMode(int mode);

/// Does the same after FitMode has changed. Does nothing when the panel shows this fit.
void FollowFitMode();

/// Makes a fit the present one and shows the panel with its table.
void ShowFitLimits(int mode);

/// Stores everything that is typed on the panel: limits, flags and seeds in their tables, and the switches. For
/// a fit of a formula also copies its limits to `Parameters.AnalysisFitLimits`.
void FitLimitsRead();

/// Shows the tables and switches of the stores.
void FitLimitsWrite();

/// Makes the rows of the present fit again and shows their labels, colours and dimming.
void FitLimitsRefresh();

}  // namespace zelvane
