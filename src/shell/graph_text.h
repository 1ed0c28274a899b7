// What a graph shows, in words and numbers: the readout of its cursors, and its data as text.
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

/// Position of every enabled cursor, and the differences when there are two:
/// "1: 33 ms, 0.52    2: 66 ms, 0.61    \u0394: 33 ms, 0.09". The unit is what the title of the x axis has in
/// brackets; `gain` is the axis' own. Empty without an enabled cursor.
std::string CursorReadout(std::span<const Cursor> cursors, std::string_view xTitle, double gain = 1.0);

/// Height of an evenly sampled plot, or of one whose x values rise, at `x`: linear between its samples.
/// Nothing beyond its ends and beside a sample that is not finite.
std::optional<double> HeightAt(const Plot& plot, double x);

/// The samples of all plots with x from `view.min` to `view.max` as rows of columns split by `separator`,
/// under a line of titles. Plots at the same times share the first column; others stand side by side with
/// their own. Nothing when there would be more than `maxRows`.
std::optional<std::string> GraphText(const Graph& graph, DataRange view, char separator, std::size_t maxRows);

/// Writes all samples of a graph to a file as comma-separated values, in the layout of GraphText. False, with
/// a former file untouched, when it cannot be written.
bool WriteGraphFile(const Graph& graph, const std::string& path);

}  // namespace zelvane
