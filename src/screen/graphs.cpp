// Plots, axes, tables and text boxes.
#include <algorithm>
#include <cassert>
#include <cmath>

#include "platform/index.h"
#include "screen/announce.h"
#include "screen/pyramid.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

Axis& AxisOf(Graph& graph, char axis) {
  return axis == 'x' ? graph.x : graph.y;
}
const Axis& AxisOf(const Graph& graph, char axis) {
  return axis == 'x' ? graph.x : graph.y;
}

std::size_t CellIndex(const Table& table, int row, int column) {
  assert(row >= 1 && row <= table.rows && column >= 1 && column <= table.columns);
  return Index(row - 1) * Index(table.columns) + Index(column - 1);
}

void Changed(Graph& graph) {
  ++graph.revision;
  AnnounceGraph(graph);
}

std::optional<DataRange> RangeOf(std::span<const float> samples) {
  const MinMax range = RangeOfSamples(samples);
  if (range.empty) return std::nullopt;
  return DataRange{static_cast<double>(range.min), static_cast<double>(range.max)};
}

std::optional<DataRange> RangeOf(std::span<const double> values) {
  std::optional<DataRange> range;
  for (const double v : values) {
    if (!std::isfinite(v)) continue;
    if (!range) range = DataRange{v, v};
    range->min = std::min(range->min, v);
    range->max = std::max(range->max, v);
  }
  return range;
}

std::optional<DataRange> RangeOfTimes(double start, double step, std::size_t count) {
  if (count == 0) return std::nullopt;
  const double end = start + step * static_cast<double>(count - 1);
  return DataRange{std::min(start, end), std::max(start, end)};
}

}  // namespace

void ClearPlots(Graph& graph) {
  graph.plots.clear();
  Changed(graph);
}

void KeepPlots(Graph& graph, std::size_t count) {
  if (graph.plots.size() <= count) return;
  graph.plots.erase(graph.plots.begin() + static_cast<std::ptrdiff_t>(count), graph.plots.end());
  Changed(graph);
}

void PlotWave(Graph& graph, PlotStyle style, Colour colour, std::span<const float> y, double start,
              double step) {
  graph.plots.push_back({style,
                         colour,
                         start,
                         step,
                         {},
                         {y.begin(), y.end()},
                         RangeOfTimes(start, step, y.size()),
                         RangeOf(y)});
  Changed(graph);
}

void PlotPoints(Graph& graph, PlotStyle style, Colour colour, std::span<const double> x,
                std::span<const float> y) {
  assert(x.size() == y.size());
  graph.plots.push_back(
      {style, colour, 0.0, 1.0, {x.begin(), x.end()}, {y.begin(), y.end()}, RangeOf(x), RangeOf(y)});
  Changed(graph);
}

void SetAxisTitle(Graph& graph, char axis, std::string_view title) {
  AxisOf(graph, axis).title = title;
  AnnounceGraph(graph);
}

void SetAxisRange(Graph& graph, char axis, double min, double max) {
  Axis& changed = AxisOf(graph, axis);
  changed.automatic = false;
  changed.min = min;
  changed.max = max;
  AnnounceGraph(graph);
}

void SetAxisAuto(Graph& graph, char axis) {
  AxisOf(graph, axis).automatic = true;
  AnnounceGraph(graph);
}

void SetAxisLog(Graph& graph, char axis, bool log) {
  AxisOf(graph, axis).log = log;
  AnnounceGraph(graph);
}

std::optional<DataRange> PlotRange(const Plot& plot, char axis) {
  return axis == 'x' ? plot.xRange : plot.yRange;
}

std::optional<DataRange> DataRangeOf(const Graph& graph, char axis) {
  std::optional<DataRange> all;
  for (const Plot& plot : graph.plots) {
    const auto one = PlotRange(plot, axis);
    if (!one) continue;
    if (!all) all = one;
    all->min = std::min(all->min, one->min);
    all->max = std::max(all->max, one->max);
  }
  return all;
}

DataRange ViewRange(const Graph& graph, char axis) {
  const Axis& seen = AxisOf(graph, axis);
  if (seen.automatic) {
    if (const auto data = DataRangeOf(graph, axis)) return *data;
  }
  return {seen.min, seen.max};
}

void SetCell(Table& table, int row, int column, std::string_view text) {
  table.cells[CellIndex(table, row, column)] = text;
  AnnouncePanel(*table.panel);
}

void MarkRow(Table& table, int row) {
  table.markedRow = row;
  AnnouncePanel(*table.panel);
}

void ScrollTable(Table& table, int topRow, int leftColumn) {
  table.topRow = std::clamp(topRow, 1, std::max(table.rows, 1));
  table.leftColumn = std::clamp(leftColumn, 1, std::max(table.columns, 1));
  AnnouncePanel(*table.panel);
}

std::string CellText(const Table& table, int row, int column) {
  return table.made != nullptr ? table.made(row, column) : table.cells[CellIndex(table, row, column)];
}

void InsertLine(TextBox& box, std::string_view line) {
  box.lines.emplace_back(line);
  AnnouncePanel(*box.panel);
}

void ClearLines(TextBox& box) {
  box.lines.clear();
  AnnouncePanel(*box.panel);
}

const std::vector<std::string>& LinesOf(TextBox& box) {
  if (box.renew != nullptr) box.renew(box);
  return box.lines;
}

void TellLinesChanged(TextBox& box) {
  AnnouncePanel(*box.panel);
}

}  // namespace zelvane
