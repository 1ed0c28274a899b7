// The visible part of the trace on the plot of AnalysisPanel: zoom, rescaling and gains.
#include <algorithm>
#include <cmath>

#include "analysis/analysis_panel.h"
#include "analysis/analysis_plot_panels.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "model/model_store.h"
#include "screen/pyramid.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr double NarrowestSpan = 10.0;   // samples
constexpr double SmallestShrunk = 13.0;  // spans below this one become the narrowest
constexpr double SpanStep = 0.2;
constexpr double YMargin = 1.0 / 18.0;

/// The state of the view besides its graph.
struct RangeState {
  DataRange gainRange{0.0, 1.0};  // y range when automatic rescaling was switched off
  bool zoomArea = false;          // the user chooses an area; the other cursors are hidden
  bool secondCorner = false;      // its first corner is placed, so the second one shows too
  DataRange fittedX;              // x range for which y was fitted
};

RangeState& Ranges() {
  static RangeState state;
  return state;
}

/// Returns the samples in view.
std::span<const float> VisibleSamples() {
  const Graph& graph = AnalysisGraph();
  if (graph.plots.empty()) return {};
  const std::span<const float> trace = graph.plots.front().y;
  const DataRange x = ViewRange(graph, 'x');
  const auto size = static_cast<double>(trace.size());
  const auto first = static_cast<std::size_t>(std::clamp(std::ceil(x.min), 0.0, size));
  const auto last = static_cast<std::size_t>(std::clamp(std::floor(x.max) + 1.0, 0.0, size));
  return last > first ? trace.subspan(first, last - first) : std::span<const float>{};
}

void FitYToView() {
  Graph& graph = AnalysisGraph();
  Ranges().fittedX = ViewRange(graph, 'x');
  const MinMax range = AnalysisViewIsZoomed() ? RangeOfSamples(VisibleSamples()) : MinMax{};
  const double span = static_cast<double>(range.max) - static_cast<double>(range.min);
  if (range.empty || !(span > 0.0)) {
    SetAxisAuto(graph, 'y');
    return;
  }
  SetAxisRange(graph, 'y', static_cast<double>(range.min) - span * YMargin,
               static_cast<double>(range.max) + span * YMargin);
}

void ApplyGains() {
  const double min = Ranges().gainRange.min * static_cast<double>(Analysis.YMinGain);
  const double max = Ranges().gainRange.max * static_cast<double>(Analysis.YMaxGain);
  if (min < max) SetAxisRange(AnalysisGraph(), 'y', min, max);
}

/// Returns the left and the right zoom cursor.
DataRange ZoomSpan() {
  const auto [left, right] =
      std::minmax(AnalysisCursor(ZoomFirstCursor).x, AnalysisCursor(ZoomSecondCursor).x);
  return {left, right};
}

/// Puts the zoom cursors at the ends of a zoomed view, in whatever way the user reached it.
void BringZoomCursors(const DataRange& x) {
  if (Ranges().zoomArea || !AnalysisViewIsZoomed()) return;
  AnalysisCursor(ZoomFirstCursor).x = x.min;
  AnalysisCursor(ZoomSecondCursor).x = x.max;
}

void SetXRange(double left, double right) {
  if (!(left < right)) return;
  SetAxisRange(AnalysisGraph(), 'x', left, right);
  ShowNewAnalysisRange();
}

// -- Callbacks --

void AnalysisExpand(const ControlEvent&) {
  const DataRange x = ViewRange(AnalysisGraph(), 'x');
  const double span = x.max - x.min;
  if (span < NarrowestSpan) return;
  SetXRange(x.min, span < SmallestShrunk ? x.min + NarrowestSpan : x.max - SpanStep * span);
}

void AnalysisCompress(const ControlEvent&) {
  const DataRange x = ViewRange(AnalysisGraph(), 'x');
  SetXRange(x.min, std::min(x.min + (1.0 + SpanStep) * (x.max - x.min), PointsOfTrace()));
}

void AnalysisFullScale(const ControlEvent&) {
  ShowWholeAnalysisRange();
}

constexpr char AreaCommand[] = "FxnMenuZoomArea";

void BeginAreaChoice() {
  Ranges().zoomArea = true;
  Ranges().secondCorner = false;
  AnalysisGraph().areaCursor = ZoomFirstCursor + 1;
  AnalysisGraph().areaCommand = AreaCommand;
}

void EndAreaChoice() {
  Ranges().zoomArea = false;
  AnalysisGraph().areaCursor = 0;
}

/// Begins the choice of an area with the first zoom cursor alone, or ends it.
void FxnMenuZoomArea(const ControlEvent&) {
  if (Ranges().zoomArea) {
    EndAreaChoice();
  } else {
    BeginAreaChoice();
    const DataRange x = ViewRange(AnalysisGraph(), 'x');
    const DataRange y = ViewRange(AnalysisGraph(), 'y');
    AnalysisCursor(ZoomFirstCursor).x = x.min + (x.max - x.min) / 4.0;
    AnalysisCursor(ZoomSecondCursor).x = x.max - (x.max - x.min) / 4.0;
    AnalysisCursor(ZoomFirstCursor).y = y.min + (y.max - y.min) / 4.0;
    AnalysisCursor(ZoomSecondCursor).y = y.max - (y.max - y.min) / 4.0;
  }
  HideCursorsOutsideView();
}

void AnalysisZoom(const ControlEvent&) {
  const Cursor a = AnalysisCursor(ZoomFirstCursor);
  const Cursor b = AnalysisCursor(ZoomSecondCursor);
  EndAreaChoice();
  SetXRange(std::min(a.x, b.x), std::max(a.x, b.x));
  if (a.y != b.y) SetAxisRange(AnalysisGraph(), 'y', std::min(a.y, b.y), std::max(a.y, b.y));
  HideCursorsOutsideView();
  DrawAnalysisMarks();
}

void FxnRescale(const ControlEvent&) {
  if (Analysis.AutoRescale != 0) {
    FitYToView();
  } else {
    Ranges().gainRange = ViewRange(AnalysisGraph(), 'y');
    ApplyGains();
  }
  DrawAnalysisMarks();
}

void FxnYGain(const ControlEvent&) {
  if (Analysis.AutoRescale != 0) return;
  ApplyGains();
  DrawAnalysisMarks();
}

constexpr auto Number = ControlKind::Number;
constexpr auto Switch = ControlKind::Switch;
constexpr auto Button = ControlKind::Button;

// clang-format off
constexpr ControlDecl RangeControls[] = {
    {.name = "AutoRescale", .kind = Switch, .label = "Auto Rescale", .format = "%d", .command = "FxnRescale",
     .action = FxnRescale,
     .help = "Fit the y axis to the samples in view. When it is off, the y axis keeps its range, multiplied by "
     "the two gains.",
     .choices = "off|on"},
    {.name = "YMinGain", .kind = Number, .label = "Y min x", .format = "%g", .command = "FxnYMin", .action = FxnYGain,
     .help = "Multiplies the lower limit that the y axis had when Auto Rescale was switched off."},
    {.name = "YMaxGain", .kind = Number, .label = "Y max x", .format = "%g", .command = "FxnYMax", .action = FxnYGain,
     .help = "Multiplies the upper limit that the y axis had when Auto Rescale was switched off."},
    {.name = "AnalysisExpandButton", .kind = Button, .label = "Expand", .format = "", .command = "AnalysisExpand",
     .action = AnalysisExpand, .help = "Show 20 % less of the trace. The left edge stays in place."},
    {.name = "AnalysisCompressButton", .kind = Button, .label = "Compress", .format = "",
     .command = "AnalysisCompress", .action = AnalysisCompress,
     .help = "Show 20 % more of the trace. The left edge stays in place."},
    {.name = "AnalysisFullButton", .kind = Button, .label = "Full scale", .format = "",
     .command = "AnalysisFullScale", .action = AnalysisFullScale,
     .help = "Show the whole trace, with each cursor at the time of its field."},
    {.name = "ZoomAreaButton", .kind = Button, .label = "Zoom area", .format = "", .command = AreaCommand,
     .action = FxnMenuZoomArea,
     .help = "Choose an area with a cross: drag from one corner to the other. Cursors 5 and 6 mark the corners, and all "
     "other cursors are hidden. Zoom then shows the area. Press again, or click beside the plot, to cancel."},
    {.name = "AnalysisZoomButton", .kind = Button, .label = "Zoom", .format = "", .command = "AnalysisZoom",
     .action = AnalysisZoom, .help = "Show the rectangle between the two zoom cursors."},
};
// clang-format on

}  // namespace

void AddAnalysisRanges() {
  Ranges() = RangeState{};
  AddControls(AnalysisPanelName, "view", RangeControls);
}

bool AnalysisViewIsZoomed() {
  const Graph& graph = AnalysisGraph();
  return !graph.x.automatic && (graph.x.min > 0.0 || graph.x.max < graph.fullXMax);
}

void ShowWholeAnalysisRange() {
  EndAreaChoice();
  SetXRange(0.0, PointsOfTrace());
  PlaceAnalysisCursors();
}

void HideCursorsOutsideView() {
  const DataRange x = ViewRange(AnalysisGraph(), 'x');
  for (std::size_t c = 0; c < AnalysisCursorCount; ++c) {
    Cursor& cursor = AnalysisCursor(c);
    const bool inView = cursor.x >= x.min && cursor.x <= x.max;
    if (c == ZoomFirstCursor || c == ZoomSecondCursor)
      cursor.enabled = Ranges().zoomArea && (c == ZoomFirstCursor || Ranges().secondCorner);
    else
      cursor.enabled = !Ranges().zoomArea && inView;
  }
}

void PlaceFirstCorner() {
  Ranges().secondCorner = true;
  HideCursorsOutsideView();
}

void FollowResidualRange(Graph& residual) {
  const DataRange x = ViewRange(residual, 'x');
  if (residual.x.automatic)
    ShowWholeAnalysisRange();
  else
    SetXRange(x.min, x.max);
}

void FollowAnalysisRange(Graph& graph) {
  const DataRange x = ViewRange(graph, 'x');
  SetAxisRange(GraphNamed(AnalysisResidualName), 'x', x.min, x.max);
  const DataRange fitted = Ranges().fittedX;
  BringZoomCursors(x);
  const double viewed = graph.x.automatic ? std::max(Model.NumPoints, 0) : x.max - x.min;
  Analysis.ViewedPoints = static_cast<int>(std::round(std::clamp(viewed, 0.0, 2147483647.0)));
  HideCursorsOutsideView();
  if (Analysis.AutoRescale != 0 && (x.min != fitted.min || x.max != fitted.max)) FitYToView();
  DrawAnalysisMarks();
}

void ShowNewAnalysisRange() {
  Ranges().fittedX = {};
  FollowAnalysisRange(AnalysisGraph());
}

SampleRange SamplesInView() {
  const SampleRange whole = {0, std::max(Model.NumPoints, 0)};
  if (!AnalysisViewIsZoomed()) return whole;
  const DataRange between = ZoomSpan();
  const auto within = [&whole](double x) {
    return static_cast<int>(std::clamp(x, 0.0, static_cast<double>(whole.last)));
  };
  return {within(std::ceil(between.min)), within(std::floor(between.max))};
}

}  // namespace zelvane
