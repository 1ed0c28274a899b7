// The contents of a graph as text: the readout of its cursors, and its data.
//
//   Cursors   CursorReadout  HeightAt
//   Data      GraphText  WriteGraphFile
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "screen/screen.h"

namespace zelvane {

/// Returns the position of every enabled cursor, and the differences between two cursors:
/// "1: 33 ms, 0.52    2: 66 ms, 0.61    \u0394: 33 ms, 0.09". The unit is what the title of the x axis has in
/// brackets; `gain` is the axis' own. Empty without an enabled cursor.
std::string CursorReadout(std::span<const Cursor> cursors, std::string_view xTitle, double gain = 1.0);

/// Returns the height of a plot at `x`, by linear interpolation. The plot must be evenly sampled or have
/// increasing x values. Returns an empty result outside the plot, and next to a sample that is not finite.
std::optional<double> HeightAt(const Plot& plot, double x);

/// Returns the samples of all plots with x from `view.min` to `view.max`: a line of titles, then rows with
/// columns separated by `separator`. Plots with the same times share the first column; other plots have
/// their own. Returns an empty result when there are more than `maxRows` rows.
std::optional<std::string> GraphText(const Graph& graph, DataRange view, char separator, std::size_t maxRows);

/// Writes all samples of a graph to a file as comma-separated values, in the layout of GraphText. On
/// failure keeps the old file and returns false.
bool WriteGraphFile(const Graph& graph, const std::string& path);

}  // namespace zelvane
