// Longer help texts that offer to open the help file, and the topics of this file.
#pragma once

namespace zelvane {

// -- Topics of the help file --
inline constexpr int HelpHotKeys = 1001;
inline constexpr int HelpStimulus = 22000;
inline constexpr int HelpAnalysis = 13000;
inline constexpr int HelpFit = 21000;

/// Adds the help buttons to their panels and the Help menu. Needs MainPanel, StimulusPanel and AnalysisPanel.
void AddHelp();

}  // namespace zelvane
