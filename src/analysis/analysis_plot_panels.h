// Shared by the parts of the plot of AnalysisPanel: its graph, its cursors, and the effects of one part on
// another.
//
//   Graph      AnalysisGraph  PointsOfTrace  SampleOf  MsOf                  analysis_view_panel.cpp
//   Ranges     AnalysisViewIsZoomed  FollowAnalysisRange  FollowResidualRange  ShowNewAnalysisRange  ShowWholeAnalysisRange
//              HideCursorsOutsideView  PlaceFirstCorner                    analysis_ranges_panel.cpp
//   Cursors    AnalysisCursor                                               analysis_cursors_panel.cpp
//   Readouts   ShowCursorReadouts  LockReadoutCursors  SetCursorOnTrace      analysis_readouts_panel.cpp
//   Marks      DrawAnalysisMarks                                            analysis_marks_panel.cpp
//
// The x axis counts samples.
#pragma once

#include <cstddef>

#include "screen/screen.h"

namespace zelvane {

// -- Cursors, counted from 0 --
inline constexpr std::size_t BaseStartCursor = 0;
inline constexpr std::size_t BaseEndCursor = 1;
inline constexpr std::size_t SearchStartCursor = 2;
inline constexpr std::size_t SearchEndCursor = 3;
inline constexpr std::size_t ZoomFirstCursor = 4;
inline constexpr std::size_t ZoomSecondCursor = 5;
inline constexpr std::size_t ReadFirstCursor = 6;
inline constexpr std::size_t ReadSecondCursor = 7;
inline constexpr std::size_t LatencyCursor = 8;
inline constexpr int AnalysisCursorCount = 9;

// -- Colours that cursors share with the marks of their measures --
inline constexpr Colour BaselineColour{0, 128, 0};
inline constexpr Colour LatencyColour{0, 96, 192};

// -- Graph --
Graph& AnalysisGraph();

/// Returns the samples of the trace, at least 1.
double PointsOfTrace();

/// Return the place of a time (ms) on the x axis, and the time at a place.
double SampleOf(float ms);
float MsOf(double sample);

// -- Ranges --
/// Adds the commands of the ranges. Removes the zoom and sets the range of the gains to 0 to 1.
void AddAnalysisRanges();

/// Returns whether the x axis shows less than the whole trace.
bool AnalysisViewIsZoomed();

/// Follows a change of the view: hides the cursors outside and draws the marks again. Fits y to a new x
/// range; after a zoom of y alone y stays.
void FollowAnalysisRange(Graph& graph);

/// Gives the response the x range of its residual, which the user has changed.
void FollowResidualRange(Graph& residual);

/// Does the same for a range of a command, and fits y also to an unchanged x range.
void ShowNewAnalysisRange();

/// Shows the whole trace, with each cursor at the time of its field, and ends the choice of an area.
void ShowWholeAnalysisRange();

/// Hides the cursors outside the view, and those of the other mode (zoom pair or other cursors).
void HideCursorsOutsideView();

/// Shows the cursor of the second corner too: the user has placed the first corner of an area.
void PlaceFirstCorner();

// -- Cursors --
/// Adds the commands of the cursors and gives the graph its nine cursors.
void AddAnalysisCursors();
Cursor& AnalysisCursor(std::size_t cursor);

// -- Readouts --
void AddCursorReadouts();

/// Shows times, samples and heights of the two readout cursors, and their differences.
void ShowCursorReadouts();

/// Puts each readout cursor on the trace if it is locked to it.
void LockReadoutCursors();

/// Puts a cursor at the height of the trace under it.
void SetCursorOnTrace(std::size_t cursor);

// -- Marks --
/// Replaces the marks by those of the present measures.
void DrawAnalysisMarks();

}  // namespace zelvane
