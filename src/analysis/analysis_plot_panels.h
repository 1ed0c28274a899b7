// What the parts of the plot of AnalysisPanel share: its graph, its cursors, and what follows from one part to another.
//
//   Graph      AnalysisGraph  PointsOfTrace  SampleOf  MsOf                  analysis_view_panel.cpp
//   Ranges     AnalysisViewIsZoomed  FollowAnalysisRange  ShowNewAnalysisRange  HideCursorsOutsideView
//                                                                           analysis_ranges_panel.cpp
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

// -- Colours that cursors share with the marks of what they measure --
inline constexpr Colour BaselineColour{0, 128, 0};
inline constexpr Colour LatencyColour{0, 96, 192};

// -- Graph --
Graph& AnalysisGraph();

/// Samples of the trace, 1 at least.
double PointsOfTrace();

/// The place of a time (ms) on the x axis, and back.
double SampleOf(float ms);
float MsOf(double sample);

// -- Ranges --
/// Adds the commands of the ranges. The view is then unzoomed and its gains apply to a range from 0 to 1.
void AddAnalysisRanges();

/// Whether the x axis shows less than the whole trace.
bool AnalysisViewIsZoomed();

/// Follows a change of the view: y follows x, where y was zoomed alone it stays so until x changes; cursors
/// outside are hidden and the marks drawn again.
void FollowAnalysisRange(Graph& graph);

/// The same for a range that a command has set: y follows even where x is as it was.
void ShowNewAnalysisRange();

/// Hides the cursors outside the view, and those of the mode (zoom pair or others) that is not on.
void HideCursorsOutsideView();

// -- Cursors --
/// Adds the commands of the cursors and gives the graph its nine cursors.
void AddAnalysisCursors();
Cursor& AnalysisCursor(std::size_t cursor);

// -- Readouts --
void AddCursorReadouts();

/// Shows times, samples and heights of the two readout cursors, and their differences.
void ShowCursorReadouts();

/// Puts the two readout cursors on the trace where they are locked to it.
void LockReadoutCursors();

/// Puts a cursor at the height of the trace under it.
void SetCursorOnTrace(std::size_t cursor);

// -- Marks --
/// Draws the marks of what was measured in place of the former ones.
void DrawAnalysisMarks();

}  // namespace zelvane
