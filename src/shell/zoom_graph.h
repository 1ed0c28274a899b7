// Zoom, scroll and span rules of a graph. They work on the axis ranges alone.
//
//   Strips, bars, buttons   ZoomGraphCreate  ZoomSetFullRange  ZoomStrip  ZoomButton  ZoomThumb  ZoomPage
//                           ZoomThumbOf
//   Wheel, drag, keys       PictureRange  ZoomAbout  ZoomPan  ZoomView  ZoomFullScale  ZoomBringCursors
//
// Lengths along a strip or bar are pixels. Every change of a range calls the owner's axisChanged, and
// observers are told the line of the command language that repeats it.
#pragma once

#include <string_view>

#include "screen/screen.h"

namespace zelvane {

/// Size of the plot area, pixels; its strips and bars are as long. Without a window it is this one.
struct PlotArea {
  double width = 1000.0;
  double height = 500.0;
};

inline constexpr std::string_view ZoomStripHelp = "Click and drag to zoom the axis to the highlighted area";

/// Makes `graph` a zoom graph: its full ranges start from its present axis ranges.
void ZoomGraphCreate(Graph& graph);

/// Sets the full range of an axis ('x' or 'y').
void ZoomSetFullRange(Graph& graph, char axis, double min, double max);

/// A drag on a strip from pixel `a` to pixel `b`, button released. A drag of 5 pixels or less zooms nothing,
/// nor does an x zoom to a span below 10.
void ZoomStrip(Graph& graph, char axis, double a, double b, PlotArea area = {});

/// One press of "xexpand", "xcontract", "yexpand", "ycontract", "left", "right", "up" or "down".
/// False when there is no such button.
bool ZoomButton(Graph& graph, std::string_view button);

/// Drags the thumb of a bar by `pixels` (right and down positive).
void ZoomThumb(Graph& graph, char axis, double pixels, PlotArea area = {});

/// Pages beside the thumb: negative to the left and up. Each page shifts the view by one span.
void ZoomPage(Graph& graph, char axis, int pages);

/// Start and length of a bar's thumb, pixels. The y bar counts from the top.
struct Thumb {
  double start = 0.0;
  double length = 0.0;
};
Thumb ZoomThumbOf(const Graph& graph, char axis, PlotArea area = {});

/// Range that a picture of the graph shows: that of ViewRange, an automatic y widened on each side by 1/18 of
/// it, so that a trace does not run along the frame. Never empty; above 0 on a logarithmic axis.
DataRange PictureRange(const Graph& graph, char axis);

/// Multiplies the span of an axis by `factor`; coordinate `at` keeps its place in the picture. The x range of
/// a zoom graph grows no further than its full range.
void ZoomAbout(Graph& graph, char axis, double at, double factor);

/// Shows `from` moved by `share` of its span, upward for a positive one. The x range of a zoom graph stops at
/// its full range.
void ZoomPan(Graph& graph, char axis, DataRange from, double share);

/// Shows a range of an axis. False, with the view as it was, when it is none: not finite, or min not below
/// max.
bool ZoomView(Graph& graph, char axis, double min, double max);

/// Shows all data: both axes become automatic.
void ZoomFullScale(Graph& graph);

/// Moves the enabled cursors into the view, at even distances (two at one third and two thirds of the x
/// range) and at the height of the first plot there, or half-way up without one.
void ZoomBringCursors(Graph& graph);

}  // namespace zelvane
