// Zoom, scroll and span rules of a graph with strips, bars and span buttons. They work on the axis ranges
// alone.
//
// Lengths along a strip or bar are pixels; without a window a plot area measures 1000 by 500.
#pragma once

#include <string_view>

#include "screen/screen.h"

namespace zelvane {

inline constexpr double PlotAreaWidth = 1000.0;  // pixels, where no window gives another
inline constexpr double PlotAreaHeight = 500.0;

/// Makes `graph` a zoom graph: its full ranges start from its present axis ranges.
void ZoomGraphCreate(Graph& graph);

/// Sets the full range of an axis ('x' or 'y').
void ZoomSetFullRange(Graph& graph, char axis, double min, double max);

/// A drag on a strip from pixel `a` to pixel `b`, button released. A drag of 5 pixels or less zooms nothing,
/// nor does an x zoom to a span below 10.
void ZoomStrip(Graph& graph, char axis, double a, double b);

/// One press of "xexpand", "xcontract", "yexpand", "ycontract", "left", "right", "up" or "down".
/// False when there is no such button.
bool ZoomButton(Graph& graph, std::string_view button);

/// Drags the thumb of a bar by `pixels` (right and down positive).
void ZoomThumb(Graph& graph, char axis, double pixels);

/// Pages beside the thumb: negative to the left and up. Each page shifts the view by one span.
void ZoomPage(Graph& graph, char axis, int pages);

/// Start and length of a bar's thumb, pixels. The y bar counts from the top.
struct Thumb {
  double start = 0.0;
  double length = 0.0;
};
Thumb ZoomThumbOf(const Graph& graph, char axis);

}  // namespace zelvane
