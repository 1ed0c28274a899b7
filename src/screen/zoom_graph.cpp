#include "screen/zoom_graph.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "screen/graph_text.h"

namespace zelvane {
namespace {

constexpr double MinDragPixels = 5.0;     // a drag must be longer than this to zoom
constexpr double MinXSpan = 10.0;         // units of the x axis
constexpr double SmallestHalvedX = 13.0;  // spans below this one are cut to MinXSpan, not halved
constexpr double MinThumbPixels = 10.0;
constexpr double MinThumbShare = 0.01;         // share of the bar
constexpr double ButtonShift = 0.1;            // share of the span
constexpr double AutoMargin = 1.0 / 18.0;      // share of the data's span, above and below it
constexpr double SmallestLogShare = 1e-6;      // share of the largest value, where a range reaches 0
constexpr double SmallestShareOfValue = 1e-9;  // share of the limits: doubles and labels cannot resolve less

double BarLength(char axis, PlotArea area) {
  return axis == 'x' ? area.width : area.height;
}

DataRange FullRange(const Graph& graph, char axis) {
  return axis == 'x' ? DataRange{graph.fullXMin, graph.fullXMax} : DataRange{graph.fullYMin, graph.fullYMax};
}

/// Fixes an axis at a new range and calls the owner. Returns false when the range is not finite or is already
/// in view.
bool ChangeView(Graph& graph, char axis, double min, double max) {
  const DataRange view = ViewRange(graph, axis);
  if (!std::isfinite(min) || !std::isfinite(max) || (min == view.min && max == view.max)) return false;
  SetAxisRange(graph, axis, min, max);
  if (graph.axisChanged != nullptr) graph.axisChanged(graph);
  return true;
}

/// Does the same for a move of the mouse. Observers get the range, because the pixels hold only for this
/// window.
bool ChangeViewByMouse(Graph& graph, char axis, double min, double max) {
  if (!ChangeView(graph, axis, min, max)) return false;
  TellViewed(FormatText("view %s %c %.17g %.17g", graph.name.c_str(), axis, min, max));
  return true;
}

/// Returns the view shifted, with the same span. The limits stop at the full range; a limit that already lies
/// beyond it does not move.
DataRange Shifted(const Graph& graph, char axis, double shift) {
  const DataRange view = ViewRange(graph, axis);
  const DataRange full = FullRange(graph, axis);
  const double span = view.max - view.min;
  if (shift > 0.0 && view.max + shift >= full.max) {
    return view.max < full.max ? DataRange{full.max - span, full.max} : view;
  }
  if (shift < 0.0 && view.min + shift <= full.min) {
    return view.min > full.min ? DataRange{full.min, full.min + span} : view;
  }
  return {view.min + shift, view.max + shift};
}

/// Returns the direction in axis units of a move to the right or down: y decreases downwards.
double Downward(char axis) {
  return axis == 'x' ? 1.0 : -1.0;
}

void ExpandX(Graph& graph) {
  const DataRange view = ViewRange(graph, 'x');
  const double span = view.max - view.min;
  if (span < MinXSpan) return;
  ChangeView(graph, 'x', view.min, view.min + (span < SmallestHalvedX ? MinXSpan : span * 0.5));
}

void ContractX(Graph& graph) {
  const DataRange view = ViewRange(graph, 'x');
  const double max = std::min(view.min + 2.0 * (view.max - view.min), graph.fullXMax);
  if (max > view.min) ChangeView(graph, 'x', view.min, max);
}

void ExpandY(Graph& graph) {
  const DataRange view = ViewRange(graph, 'y');
  ChangeView(graph, 'y', (view.max + 3.0 * view.min) / 4.0, (view.min + 3.0 * view.max) / 4.0);
}

void ContractY(Graph& graph) {
  const DataRange view = ViewRange(graph, 'y');
  const double min = (3.0 * view.min - view.max) / 2.0;
  const double max = (3.0 * view.max - view.min) / 2.0;
  if (!std::isfinite(min) || !std::isfinite(max)) return;
  ZoomSetFullRange(graph, 'y', min, max);
  ChangeView(graph, 'y', min, max);
}

void PressShift(Graph& graph, char axis, double direction) {
  const DataRange view = ViewRange(graph, axis);
  const DataRange to = Shifted(graph, axis, direction * ButtonShift * (view.max - view.min));
  ChangeView(graph, axis, to.min, to.max);
}

/// Return values on the scale of the axis, which is linear for moves and stretches: a logarithmic axis uses
/// exponents.
double ToScale(const Axis& axis, double value) {
  return axis.log ? std::log10(value) : value;
}
double FromScale(const Axis& axis, double value) {
  return axis.log ? std::pow(10.0, value) : value;
}

/// Returns a range of positive numbers for a logarithmic axis.
DataRange Positive(DataRange range) {
  if (!(range.max > 0.0)) return {0.1, 1.0};
  if (!(range.min > 0.0)) range.min = range.max * SmallestLogShare;
  return range;
}

/// Returns a range that is not empty: a single number is in the middle of a span of its own size.
DataRange NotEmpty(DataRange range, bool log) {
  if (range.max > range.min) return range;
  if (log) return {range.min / 10.0, range.max * 10.0};
  const double half = range.min != 0.0 ? std::abs(range.min) * 0.5 : 0.5;
  return {range.min - half, range.max + half};
}

/// Returns whether a view must stay within the full range: the x range of a zoom graph that already lies
/// there.
bool StopsAtFull(const Graph& graph, char axis, DataRange view) {
  const DataRange full = FullRange(graph, axis);
  return axis == 'x' && graph.zooms && view.min >= full.min && view.max <= full.max;
}

}  // namespace

void ZoomGraphCreate(Graph& graph) {
  graph.zooms = true;
  if (graph.x.title.empty()) graph.x.title = "Time (ms)";
  if (graph.y.title.empty()) graph.y.title = "Amplitude (pA)";
  for (const char axis : {'x', 'y'}) {
    const DataRange view = ViewRange(graph, axis);
    ZoomSetFullRange(graph, axis, view.min, view.max);
  }
}

void ZoomSetFullRange(Graph& graph, char axis, double min, double max) {
  (axis == 'x' ? graph.fullXMin : graph.fullYMin) = min;
  (axis == 'x' ? graph.fullXMax : graph.fullYMax) = max;
}

void ZoomStrip(Graph& graph, char axis, double a, double b, PlotArea area) {
  const double length = BarLength(axis, area);
  const double from = std::clamp(std::min(a, b), 0.0, length);  // the mouse may leave the strip
  const double to = std::clamp(std::max(a, b), 0.0, length);
  if (!(to - from > MinDragPixels)) return;
  const DataRange view = ViewRange(graph, axis);
  const double span = view.max - view.min;
  if (axis == 'y') {
    ChangeViewByMouse(graph, 'y', view.min + span * (length - to) / length,
                      view.min + span * (length - from) / length);
    return;
  }
  const double min = view.min + span * from / length;
  const double max = view.min + span * to / length;
  if (max - min < MinXSpan) return;
  ChangeViewByMouse(graph, 'x', min, max);
}

bool ZoomButton(Graph& graph, std::string_view button) {
  if (button == "xexpand")
    ExpandX(graph);
  else if (button == "xcontract")
    ContractX(graph);
  else if (button == "yexpand")
    ExpandY(graph);
  else if (button == "ycontract")
    ContractY(graph);
  else if (button == "left")
    PressShift(graph, 'x', -1.0);
  else if (button == "right")
    PressShift(graph, 'x', 1.0);
  else if (button == "up")
    PressShift(graph, 'y', 1.0);
  else if (button == "down")
    PressShift(graph, 'y', -1.0);
  else
    return false;
  TellViewed("zoom " + graph.name + ' ' + std::string(button));
  return true;
}

void ZoomThumb(Graph& graph, char axis, double pixels, PlotArea area) {
  const DataRange full = FullRange(graph, axis);
  const double shift = Downward(axis) * (full.max - full.min) * pixels / BarLength(axis, area);
  const DataRange to = Shifted(graph, axis, shift);
  ChangeViewByMouse(graph, axis, to.min, to.max);
}

void ZoomPage(Graph& graph, char axis, int pages) {
  const double direction = pages < 0 ? -Downward(axis) : Downward(axis);
  for (int page = 0; page != pages; page += pages < 0 ? -1 : 1) {
    const DataRange view = ViewRange(graph, axis);
    const DataRange to = Shifted(graph, axis, direction * (view.max - view.min));
    if (!ChangeView(graph, axis, to.min, to.max)) return;
    TellViewed(FormatText("page %s %c %d", graph.name.c_str(), axis, pages < 0 ? -1 : 1));
    ProcessSystemEvents();  // a redraw of the owner may come between two pages
  }
}

Thumb ZoomThumbOf(const Graph& graph, char axis, PlotArea area) {
  const DataRange view = ViewRange(graph, axis);
  const DataRange full = FullRange(graph, axis);
  const double length = BarLength(axis, area);
  const double range = full.max - full.min;
  if (!(range > 0.0)) return {0.0, length};  // without a range the thumb fills the bar
  const double before = axis == 'x' ? view.min - full.min : full.max - view.max;
  Thumb thumb{std::trunc(length * before / range), std::trunc(length * (view.max - view.min) / range)};
  if (thumb.length < MinThumbPixels) thumb.length = std::max(MinThumbPixels, MinThumbShare * length);
  return thumb;
}

DataRange PictureRange(const Graph& graph, char axis) {
  const Axis& seen = axis == 'x' ? graph.x : graph.y;
  DataRange range = ViewRange(graph, axis);
  if (seen.log) range = Positive(range);
  range = NotEmpty(range, seen.log);
  if (axis == 'x' || !seen.automatic || !DataRangeOf(graph, axis)) return range;
  const double low = ToScale(seen, range.min);
  const double high = ToScale(seen, range.max);
  const double margin = (high - low) * AutoMargin;
  return {FromScale(seen, low - margin), FromScale(seen, high + margin)};
}

void ZoomAbout(Graph& graph, char axis, double at, double factor) {
  const Axis& seen = axis == 'x' ? graph.x : graph.y;
  const DataRange from = PictureRange(graph, axis);
  const double fixed = ToScale(seen, at);
  const auto stretched = [&](double limit) {
    return FromScale(seen, fixed + (ToScale(seen, limit) - fixed) * factor);
  };
  DataRange to{stretched(from.min), stretched(from.max)};
  if (StopsAtFull(graph, axis, from)) {
    const DataRange full = FullRange(graph, axis);
    to = {std::max(to.min, full.min), std::min(to.max, full.max)};
  }
  const double size = std::max(std::abs(to.min), std::abs(to.max));
  if (to.max - to.min > size * SmallestShareOfValue) ChangeViewByMouse(graph, axis, to.min, to.max);
}

void ZoomPan(Graph& graph, char axis, DataRange from, double share) {
  const Axis& seen = axis == 'x' ? graph.x : graph.y;
  const double low = ToScale(seen, from.min);
  const double high = ToScale(seen, from.max);
  double shift = (high - low) * share;
  if (StopsAtFull(graph, axis, from)) {
    const DataRange full = FullRange(graph, axis);
    shift = std::clamp(shift, ToScale(seen, full.min) - low, ToScale(seen, full.max) - high);
  }
  ChangeViewByMouse(graph, axis, FromScale(seen, low + shift), FromScale(seen, high + shift));
}

bool ZoomView(Graph& graph, char axis, double min, double max) {
  if (!std::isfinite(min) || !std::isfinite(max) || !(min < max)) return false;
  ChangeViewByMouse(graph, axis, min, max);
  return true;
}

void ZoomFullScale(Graph& graph) {
  if (graph.x.automatic && graph.y.automatic) return;
  SetAxisAuto(graph, 'x');
  SetAxisAuto(graph, 'y');
  if (graph.axisChanged != nullptr) graph.axisChanged(graph);
  TellViewed("view " + graph.name + " all");
}

void ZoomBringCursors(Graph& graph) {
  const DataRange x = PictureRange(graph, 'x');
  const DataRange y = PictureRange(graph, 'y');
  const auto enabled =
      std::count_if(graph.cursors.begin(), graph.cursors.end(), [](const Cursor& c) { return c.enabled; });
  int place = 0;
  for (std::size_t k = 0; k < graph.cursors.size(); ++k) {
    if (!graph.cursors[k].enabled) continue;
    const double at = x.min + (x.max - x.min) * ++place / static_cast<double>(enabled + 1);
    const auto height = graph.plots.empty() ? std::nullopt : HeightAt(graph.plots.front(), at);
    MoveCursor(graph, static_cast<int>(k) + 1, at, height.value_or((y.min + y.max) / 2.0));
  }
}

}  // namespace zelvane
