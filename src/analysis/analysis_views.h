// Functions that the parts of AnalysisPanel call in each other.
#pragma once

namespace zelvane {

inline constexpr char AnalysisPanelName[] = "AnalysisPanel";
inline constexpr char AnalysisTableName[] = "AnalysisTable";

// -- Plot and cursors (analysis_view_panel.cpp) --
void AddAnalysisView();

/// Moves the cursors to the times of their fields.
void PlaceAnalysisCursors();

// -- Table and files (analysis_table_panel.cpp) --
void AddAnalysisTable();

// -- Episodes (analysis_section_panel.cpp) --
void AddAnalysisSections();

/// Shows the settings that cursors and field rules have changed.
void ShowAnalysisSettings();

/// Does the same, moves the cursors to their fields and measures a measured response again.
void FollowSettings();

}  // namespace zelvane
