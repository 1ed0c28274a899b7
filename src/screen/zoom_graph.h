// Zoom, scroll and span rules of a graph. They change only the ranges of the axes.
//
//   Strips, bars, buttons   ZoomGraphCreate  ZoomSetFullRange  ZoomStrip  ZoomButton  ZoomThumb  ZoomPage
//                           ZoomThumbOf
//   Wheel, drag, keys       PictureRange  ZoomAbout  ZoomPan  ZoomView  ZoomFullScale  ZoomBringCursors
//
// Lengths along a strip or bar are in pixels. Every change of a range calls axisChanged of the graph.
// Observers get the change as a line of the command language.
#pragma once

#include <string_view>

#include "screen/screen.h"

namespace zelvane {

/// Size of the plot area without a window, in pixels. The strips and bars have the same lengths.
struct PlotArea {
  double width = 1000.0;
  double height = 500.0;
};

inline constexpr std::string_view ZoomStripHelp = "Click and drag to zoom the axis to the highlighted area";

/// Makes `graph` a zoom graph: its full ranges start from its present axis ranges.
void ZoomGraphCreate(Graph& graph);

/// Sets the full range of an axis ('x' or 'y').
void ZoomSetFullRange(Graph& graph, char axis, double min, double max);

/// Handles a drag on a strip from pixel `a` to pixel `b`. Ignores a drag of 5 pixels or less, and an x zoom
/// to a span below 10.
void ZoomStrip(Graph& graph, char axis, double a, double b, PlotArea area = {});

/// Presses one of the buttons "xexpand", "xcontract", "yexpand", "ycontract", "left", "right", "up" and
/// "down". Returns false for any other name.
bool ZoomButton(Graph& graph, std::string_view button);

/// Drags the thumb of a bar by `pixels` (right and down positive).
void ZoomThumb(Graph& graph, char axis, double pixels, PlotArea area = {});

/// Scrolls by pages; negative to the left and up. Each page moves the view by one span.
void ZoomPage(Graph& graph, char axis, int pages);

/// Returns start and length of the thumb of a bar, in pixels. The y bar counts from the top.
struct Thumb {
  double start = 0.0;
  double length = 0.0;
};
Thumb ZoomThumbOf(const Graph& graph, char axis, PlotArea area = {});

/// Returns the range for a picture of the graph: the range of ViewRange. An automatic y range grows by 1/18
/// on each side, so a trace does not touch the frame. The range is never empty, and above 0 on a
/// logarithmic axis.
DataRange PictureRange(const Graph& graph, char axis);

/// Multiplies the span of an axis by `factor`. Coordinate `at` keeps its place in the picture. The x range
/// of a zoom graph grows at most to its full range.
void ZoomAbout(Graph& graph, char axis, double at, double factor);

/// Shows the range `from`, moved by `share` of its span; a positive share moves it up. The x range of a
/// zoom graph stops at its full range.
void ZoomPan(Graph& graph, char axis, DataRange from, double share);

/// Shows a range of an axis. Keeps the view and returns false when the range is not finite, or when min is
/// not below max.
bool ZoomView(Graph& graph, char axis, double min, double max);

/// Shows all data: both axes become automatic.
void ZoomFullScale(Graph& graph);

/// Moves the enabled cursors into the view at equal distances (two cursors: at one third and two thirds of
/// the x range). Their height is that of the first plot there; without a plot, half of the view.
void ZoomBringCursors(Graph& graph);

}  // namespace zelvane
