// Shared by the parts of FitPanel.
//
//   Lines of the set    WaveControls  OfferedLines  ShowModelOfFit    fit_waves_panel.cpp
//   Plots, cursors      AddFitViewControls                            fit_plots_panel.cpp
//   During a session    FollowSessions                                fit_session_panel.cpp
#pragma once

#include <span>

#include "fit/fit_store.h"
#include "screen/screen.h"

namespace zelvane {

inline constexpr char FitDataGraph[] = "FitPanel.data";
inline constexpr char FitStimulusGraph[] = "FitPanel.stimulus";
inline constexpr char FitCurvesGraph[] = "FitPanel.fit";
inline constexpr char FitResidualGraph[] = "FitPanel.residual";
inline constexpr char FitProgressGraph[] = "FitPanel.progress";
inline constexpr char FitLogBoxName[] = "FitLogBox";
inline constexpr int FitCursorCount = 6;

/// Lines for waveforms that the user wants on the panel; the empty lines beyond it are dimmed.
inline int OfferedLines = MaxFitWaveforms;

/// Returns the switches and names of the 15 lines and the commands of the set.
std::span<const ControlDecl> WaveControls();

/// Shows the settings that came with a model file.
void ShowModelOfFit();

/// Adds the commands of the plots.
void AddFitViewControls();

/// Adds the notice of one step and makes the panel show the progress and the end of sessions.
void FollowSessions();

}  // namespace zelvane
