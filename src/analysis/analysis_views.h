// Functions that the parts of AnalysisPanel call in each other.
#pragma once

#include <string>

#include "analysis/measures.h"

namespace zelvane {

inline constexpr char AnalysisPanelName[] = "AnalysisPanel";
inline constexpr char AnalysisResidualName[] = "AnalysisPanel.residual";
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

/// Does the same, moves the cursors to their fields and shows live measures.
void FollowSettings();

/// Returns the unit of the trace ("pA"), empty for numbers without a unit.
std::string TraceUnitWord();

// -- Live measures (analysis_live_panel.cpp) --
void AddLiveMeasures();

/// The measures on panel and plot, with the settings that gave them.
struct ShownMeasures {
  ResponseMeasures measures{};
  MeasureSettings settings{};
  bool live = false;  // not those of the last analysis
};

/// Returns the live measures while they are shown, else those of the last analysis.
ShownMeasures MeasuresOnPanel();

/// While `MeasureWhileMoving` is on and there is a trace, measures it with these settings and shows the values.
/// Shows no messages.
void ShowLiveMeasures(const MeasureSettings& settings);

/// Shows the measures of the last analysis again.
void EndLiveMeasures();

// -- Mean and variance between the cursors of MainPanel (main_cursors_panel.cpp) --
void AddMainCursorReadouts();
void ShowBetweenCursors();

}  // namespace zelvane
