// The plot of AnalysisPanel: the trace, the marks of what was measured, nine cursors and the range commands.
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "analysis/analysis_panel.h"
#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "analysis/internal/analysis_views.h"
#include "analysis/measures.h"
#include "model/model_store.h"
#include "numerics/rounding.h"
#include "screen/pyramid.h"
#include "screen/screen.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {

extern const Colour PeakMark{192, 0, 0};
extern const Colour RiseMark{224, 112, 0};
extern const Colour DecayMark{144, 0, 144};
extern const Colour IntegralMark{96, 96, 96};

namespace {

// -- Cursors, counted from 0 --
constexpr std::size_t BaseStart = 0;
constexpr std::size_t BaseEnd = 1;
constexpr std::size_t SearchStart = 2;
constexpr std::size_t SearchEnd = 3;
constexpr std::size_t ZoomFirst = 4;
constexpr std::size_t ZoomSecond = 5;
constexpr std::size_t ReadFirst = 6;
constexpr std::size_t ReadSecond = 7;
constexpr std::size_t Latency = 8;
constexpr int CursorCount = 9;

constexpr Colour BaselineColour{0, 128, 0};
constexpr Colour SearchColour{192, 0, 0};
constexpr Colour ZoomColour{192, 192, 192};
constexpr Colour ReadColour{0, 0, 128};
constexpr Colour LatencyColour{0, 96, 192};

constexpr std::array<Colour, CursorCount> CursorColours = {BaselineColour, BaselineColour, SearchColour,
                                                           SearchColour,   ZoomColour,     ZoomColour,
                                                           ReadColour,     ReadColour,     LatencyColour};

constexpr double NarrowestSpan = 10.0;   // samples
constexpr double SmallestShrunk = 13.0;  // spans below this one become the narrowest
constexpr double SpanStep = 0.2;
constexpr double BarHeight = 0.02;  // of the bar above the foot of the view, as a part of its height
constexpr double YMargin = 1.0 / 18.0;

/// What the view remembers beside its graph.
struct ViewState {
  DataRange gainRange{0.0, 1.0};  // y range that stood when automatic rescaling went off
  bool zoomArea = false;          // the zoom pair stands in place of the other cursors
  DataRange fittedX;              // x range that y was fitted to
};

ViewState& State() {
  static ViewState state;
  return state;
}

Graph& View() {
  return GraphNamed(AnalysisPanelName);
}

Cursor& CursorAt(std::size_t cursor) {
  return View().cursors[cursor];
}

double Points() {
  return std::max(Model.NumPoints, 1);
}

double SampleOf(float ms) {
  return Model.ADInterval > 0.0F ? static_cast<double>(ms / Model.ADInterval) : 0.0;
}

float MsOf(double sample) {
  return static_cast<float>(sample) * Model.ADInterval;
}

bool Zoomed() {
  const Graph& graph = View();
  return !graph.x.automatic && (graph.x.min > 0.0 || graph.x.max < graph.fullXMax);
}

/// Sample of the trace at a place of the axis; nan where there is none.
double TraceAt(double x) {
  const std::span<const float> trace = RecordedTrace();
  if (Trace.TraceValid == 0 || !(x >= 0.0 && x < static_cast<double>(trace.size()))) return std::nan("");
  return static_cast<double>(trace[static_cast<std::size_t>(x)]);
}

// -- Ranges --

/// The samples in view.
std::span<const float> VisibleSamples() {
  const Graph& graph = View();
  if (graph.plots.empty()) return {};
  const std::span<const float> trace = graph.plots.front().y;
  const DataRange x = ViewRange(graph, 'x');
  const auto size = static_cast<double>(trace.size());
  const auto first = static_cast<std::size_t>(std::clamp(std::ceil(x.min), 0.0, size));
  const auto last = static_cast<std::size_t>(std::clamp(std::floor(x.max) + 1.0, 0.0, size));
  return last > first ? trace.subspan(first, last - first) : std::span<const float>{};
}

void FitYToView() {
  Graph& graph = View();
  State().fittedX = ViewRange(graph, 'x');
  const MinMax range = Zoomed() ? RangeOfSamples(VisibleSamples()) : MinMax{};
  const double span = static_cast<double>(range.max) - static_cast<double>(range.min);
  if (range.empty || !(span > 0.0)) {
    SetAxisAuto(graph, 'y');
    return;
  }
  SetAxisRange(graph, 'y', static_cast<double>(range.min) - span * YMargin,
               static_cast<double>(range.max) + span * YMargin);
}

void ApplyGains() {
  const double min = State().gainRange.min * static_cast<double>(Analysis.YMinGain);
  const double max = State().gainRange.max * static_cast<double>(Analysis.YMaxGain);
  if (min < max) SetAxisRange(View(), 'y', min, max);
}

/// Cursors outside the view are hidden, and those of the mode that is not on.
void HideCursorsOutside() {
  const DataRange x = ViewRange(View(), 'x');
  for (std::size_t c = 0; c < CursorCount; ++c) {
    const bool zoomPair = c == ZoomFirst || c == ZoomSecond;
    Cursor& cursor = CursorAt(c);
    cursor.enabled = zoomPair == State().zoomArea && (zoomPair || (cursor.x >= x.min && cursor.x <= x.max));
  }
}

// -- Marks --

void DrawLine(double fromX, double toX, float y, Colour colour, PlotStyle style = PlotStyle::Line) {
  const std::array<double, 2> x = {fromX, toX};
  const std::array<float, 2> level = {y, y};
  PlotPoints(View(), style, colour, x, level);
}

/// Bar along the foot of the picture under the stretch of the integral.
void DrawIntegralBar(const MeasureSettings& settings) {
  const Graph& graph = View();
  const DataRange y = ViewRange(graph, 'y');
  const auto foot = static_cast<float>(y.min + (y.max - y.min) * BarHeight);
  const double start = std::max(SampleOf(settings.startAnalysis), 0.0);
  const double end = std::min(start + static_cast<double>(settings.integralPts), Points());
  if (end > start) DrawLine(start, end, foot, IntegralMark);
}

void DrawRise(const MeasureSettings& settings, const ResponseMeasures& m) {
  const float amplitude = m.PeakValue - m.Baseline;
  const std::array<double, 2> x = {static_cast<double>(m.RiseStartPos), static_cast<double>(m.RiseEndPos)};
  const std::array<float, 2> y = {m.Baseline + amplitude * settings.riseStartFrac,
                                  m.Baseline + amplitude * settings.riseEndFrac};
  PlotPoints(View(), PlotStyle::Points, RiseMark, x, y);
}

void DrawBaseline(const MeasureSettings& settings, const ResponseMeasures& m) {
  const double start = WholeSamples(std::trunc(settings.baselineStart) / settings.intervalMs);
  DrawLine(start, std::min(start + settings.baselinePts, Points()), m.Baseline, BaselineColour);
}

void DrawDecay(const MeasureSettings& settings, const ResponseMeasures& m) {
  const double end = m.PeakPos + SampleOf(m.DecayTime);
  const bool both = (m.measured & MeasuredWidth) != 0;
  DrawLine(both ? end - SampleOf(m.FracWidth) : static_cast<double>(m.PeakPos), end,
           m.Baseline + DecayLevel(settings, m), DecayMark);
}

void DrawLatency(const MeasureSettings& settings, const ResponseMeasures& m) {
  DrawLine(SampleOf(settings.latencyPos), SampleOf(settings.latencyPos + m.LatencyRise),
           m.Baseline + LatencyLevel(settings, m), LatencyColour);
}

void DrawMarks() {
  KeepPlots(View(), 1);
  const MeasureSettings settings = StoredMeasureSettings();
  const ResponseMeasures& m = Analysis.Measures;
  const auto made = [&m](unsigned bit) { return (m.measured & bit) != 0; };
  if (View().plots.empty() || !(settings.intervalMs > 0.0F)) return;
  if (made(MeasuredIntegral)) DrawIntegralBar(settings);
  if (made(MeasuredBaseline)) DrawBaseline(settings, m);
  if (made(MeasuredPeak)) {
    const std::array<double, 1> x = {static_cast<double>(m.PeakPos)};
    PlotPoints(View(), PlotStyle::Cross, PeakMark, x, std::array{m.PeakValue});
  }
  if (made(MeasuredRise)) DrawRise(settings, m);
  if (made(MeasuredDecay)) DrawDecay(settings, m);
  if (made(MeasuredLatencyRise)) DrawLatency(settings, m);
}

// -- Readout cursors --

void ShowReadouts() {
  const Cursor& first = CursorAt(ReadFirst);
  const Cursor& second = CursorAt(ReadSecond);
  const auto time = [](const Cursor& c) { return static_cast<double>(MsOf(c.x)); };
  ShowNumber("CursorTime[7]", time(first));
  ShowNumber("CursorTime[8]", time(second));
  ShowNumber("CursorIndex[7]", std::trunc(first.x));
  ShowNumber("CursorIndex[8]", std::trunc(second.x));
  ShowNumber("CursorValue[7]", first.y);
  ShowNumber("CursorValue[8]", second.y);
  ShowNumber("CursorTimeDifference", time(second) - time(first));
  ShowNumber("CursorIndexDifference", std::trunc(second.x) - std::trunc(first.x));
  ShowNumber("CursorValueDifference", second.y - first.y);
}

/// Puts a cursor at the height of the trace under it.
void RideOnTrace(std::size_t cursor) {
  const double y = TraceAt(CursorAt(cursor).x);
  if (std::isfinite(y)) CursorAt(cursor).y = y;
}

void LockReadCursors() {
  if (Analysis.AnalysisDisplay[1] == 0) return;
  RideOnTrace(ReadFirst);
  RideOnTrace(ReadSecond);
}

/// Left and right zoom cursor.
DataRange ZoomSpan() {
  const auto [left, right] = std::minmax(CursorAt(ZoomFirst).x, CursorAt(ZoomSecond).x);
  return {left, right};
}

/// A zoomed view lies between the zoom cursors, however it was reached.
void BringZoomCursors(const DataRange& x) {
  if (State().zoomArea || !Zoomed()) return;
  CursorAt(ZoomFirst).x = x.min;
  CursorAt(ZoomSecond).x = x.max;
}

/// The user or a command has changed the view. y follows x; where the user zooms y alone it stays so until
/// x changes.
void RangeChanged(Graph& graph) {
  const DataRange x = ViewRange(graph, 'x');
  const DataRange fitted = State().fittedX;
  BringZoomCursors(x);
  Analysis.ViewedPoints = static_cast<int>(std::clamp(x.max - x.min, 0.0, 2147483647.0));
  HideCursorsOutside();
  if (Analysis.AutoRescale != 0 && (x.min != fitted.min || x.max != fitted.max)) FitYToView();
  DrawMarks();
}

void ShowNewRange() {
  State().fittedX = {};
  RangeChanged(View());
}

void SetXRange(double left, double right) {
  if (!(left < right)) return;
  SetAxisRange(View(), 'x', left, right);
  ShowNewRange();
}

// -- Cursors --

int CountBetween(std::size_t from, std::size_t to) {
  return static_cast<int>(std::clamp(std::trunc(CursorAt(to).x - CursorAt(from).x), 0.0, 2147483647.0));
}

/// The end of a stretch was moved: a new length, or a snap back where it lies before the start.
void MoveStretchEnd(std::size_t from, std::size_t to, int& count) {
  if (CursorAt(to).x >= CursorAt(from).x) count = CountBetween(from, to);
}

void CursorMoved(Graph& /*graph*/, int cursor) {
  const auto moved = static_cast<std::size_t>(cursor) - 1;
  ReadAnalysisPanel();  // a value typed elsewhere and not yet committed stays
  switch (moved) {
    case BaseStart:
      Analysis.BaselineStart = MsOf(CursorAt(moved).x);
      break;
    case BaseEnd:
      MoveStretchEnd(BaseStart, BaseEnd, Analysis.BaselinePts);
      break;
    case SearchStart:
      Analysis.StartAnalysis = MsOf(CursorAt(moved).x);
      break;
    case SearchEnd:
      MoveStretchEnd(SearchStart, SearchEnd, Analysis.PeakSearchPts);
      break;
    case Latency:
      Analysis.LatencyPos = MsOf(CursorAt(moved).x);
      break;
    case ReadFirst:
    case ReadSecond:
      LockReadCursors();
      HideCursorsOutside();
      ShowReadouts();
      return;
    default:
      return;
  }
  FollowSettings();
}

/// Puts a stretch at two places of the view and takes it into its fields.
void BringStretch(std::size_t from, double fromPart, double toPart, float& start, int& count) {
  ReadAnalysisPanel();
  const DataRange x = ViewRange(View(), 'x');
  CursorAt(from).x = std::trunc(x.min + (x.max - x.min) * fromPart);
  CursorAt(from + 1).x = std::trunc(x.min + (x.max - x.min) * toPart);
  start = MsOf(CursorAt(from).x);
  count = CountBetween(from, from + 1);
  FollowSettings();
}

// -- Callbacks --

void FxnBringBaseCursors(const ControlEvent&) {
  BringStretch(BaseStart, 0.25, 0.5, Analysis.BaselineStart, Analysis.BaselinePts);
}

void FxnBringAnalysisCursors(const ControlEvent&) {
  BringStretch(SearchStart, 1.0 / 3.0, 2.0 / 3.0, Analysis.StartAnalysis, Analysis.PeakSearchPts);
}

void AnalysisExpand(const ControlEvent&) {
  const DataRange x = ViewRange(View(), 'x');
  const double span = x.max - x.min;
  if (span < NarrowestSpan) return;
  SetXRange(x.min, span < SmallestShrunk ? x.min + NarrowestSpan : x.max - SpanStep * span);
}

void AnalysisCompress(const ControlEvent&) {
  const DataRange x = ViewRange(View(), 'x');
  SetXRange(x.min, std::min(x.min + (1.0 + SpanStep) * (x.max - x.min), Points()));
}

void AnalysisFullScale(const ControlEvent&) {
  State().zoomArea = false;
  SetXRange(0.0, Points());
  PlaceAnalysisCursors();
}

/// Places the zoom pair in the view in place of all other cursors.
void FxnMenuZoomArea(const ControlEvent&) {
  State().zoomArea = !State().zoomArea;
  if (State().zoomArea) {
    const DataRange x = ViewRange(View(), 'x');
    const DataRange y = ViewRange(View(), 'y');
    CursorAt(ZoomFirst).x = x.min + (x.max - x.min) / 4.0;
    CursorAt(ZoomSecond).x = x.max - (x.max - x.min) / 4.0;
    CursorAt(ZoomFirst).y = y.min + (y.max - y.min) / 4.0;
    CursorAt(ZoomSecond).y = y.max - (y.max - y.min) / 4.0;
  }
  HideCursorsOutside();
}

void AnalysisZoom(const ControlEvent&) {
  const Cursor a = CursorAt(ZoomFirst);
  const Cursor b = CursorAt(ZoomSecond);
  State().zoomArea = false;
  SetXRange(std::min(a.x, b.x), std::max(a.x, b.x));
  if (a.y != b.y) SetAxisRange(View(), 'y', std::min(a.y, b.y), std::max(a.y, b.y));
  HideCursorsOutside();
  DrawMarks();
}

void FxnRescale(const ControlEvent&) {
  if (Analysis.AutoRescale != 0) {
    FitYToView();
  } else {
    State().gainRange = ViewRange(View(), 'y');
    ApplyGains();
  }
  DrawMarks();
}

void FxnYGain(const ControlEvent&) {
  if (Analysis.AutoRescale != 0) return;
  ApplyGains();
  DrawMarks();
}

void FxnLockCursors(const ControlEvent&) {
  LockReadCursors();
  ShowReadouts();
}

constexpr auto Number = ControlKind::Number;
constexpr auto Switch = ControlKind::Switch;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl ViewControls[] = {
    // name                  kind     label                unit  format  command                    action
    {"AutoRescale",          Switch,  "Auto Rescale",      "",   "%d",   "FxnRescale",              FxnRescale,
     "Fit the y axis to the samples in view. When it is off, the y axis keeps its range, multiplied by "
     "the two gains.", 0, 0, "off|on"},
    {"YMinGain",             Number,  "Y min x",           "",   "%g",   "FxnYMin",                 FxnYGain,
     "Multiplies the lower limit that the y axis had when Auto Rescale was switched off."},
    {"YMaxGain",             Number,  "Y max x",           "",   "%g",   "FxnYMax",                 FxnYGain,
     "Multiplies the upper limit that the y axis had when Auto Rescale was switched off."},
    {"AnalysisExpandButton", Button,  "Expand",            "",   "",     "AnalysisExpand",          AnalysisExpand,
     "Show 20 % less of the trace. The left edge stays in place."},
    {"AnalysisCompressButton", Button, "Compress",         "",   "",     "AnalysisCompress",        AnalysisCompress,
     "Show 20 % more of the trace. The left edge stays in place."},
    {"AnalysisFullButton",   Button,  "Full scale",        "",   "",     "AnalysisFullScale",       AnalysisFullScale,
     "Show the whole trace, with each cursor at the time of its field."},
    {"ZoomAreaButton",       Button,  "Zoom area",         "",   "",     "FxnMenuZoomArea",         FxnMenuZoomArea,
     "Show two cursors at the corners of a rectangle, and hide all other cursors. Zoom then shows the "
     "rectangle. Press again to cancel."},
    {"AnalysisZoomButton",   Button,  "Zoom",              "",   "",     "AnalysisZoom",            AnalysisZoom,
     "Show the rectangle between the two zoom cursors."},
    {"BringBaseButton",      Button,  "Bring baseline",    "",   "",     "FxnBringBaseCursors",     FxnBringBaseCursors,
     "Move the two baseline cursors to one quarter and one half of the view. The baseline is then "
     "measured there."},
    {"BringAnalysisButton",  Button,  "Bring peak search", "",   "",     "FxnBringAnalysisCursors", FxnBringAnalysisCursors,
     "Move the two cursors of the peak search to one third and two thirds of the view. The peak is then "
     "searched there."},
    {"AnalysisDisplay[1]",   Switch,  "Lock on trace",     "",   "%d",   "FxnLockCursors",          FxnLockCursors,
     "Keep the two readout cursors on the trace.", 0, 0, "off|on"},
    {"CursorTime[%d]",       Readout, "Cursor %d",         "ms", "%.6g", "",                        nullptr,
     "Time at readout cursor %d.", 7, 8},
    {"CursorIndex[%d]",      Readout, "Sample %d",         "",   "%.0f", "",                        nullptr,
     "Number of the sample at readout cursor %d.", 7, 8},
    {"CursorValue[%d]",      Readout, "Value %d",          "",   "%.6g", "",                        nullptr,
     "Height of readout cursor %d. While the cursors are locked, the height of the trace at this time.", 7, 8},
    {"CursorTimeDifference", Readout, "Time difference",   "ms", "%.6g", "",                        nullptr,
     "Time from readout cursor 7 to cursor 8."},
    {"CursorIndexDifference", Readout, "Samples between",  "",   "%.0f", "",                        nullptr,
     "Samples from readout cursor 7 to cursor 8."},
    {"CursorValueDifference", Readout, "Value difference", "",   "%.6g", "",                        nullptr,
     "Height of readout cursor 8 minus height of readout cursor 7."},
};
// clang-format on

/// The trace stays, the marks go.
void ShowNothingMeasured() {
  KeepPlots(View(), 1);
  ShowMeasures();
}

}  // namespace

void AddAnalysisView() {
  State() = ViewState{};
  AddControls(AnalysisPanelName, "view", ViewControls);
  Graph& graph = AddGraph(AnalysisPanelName, AnalysisPanelName, "Time (ms)", "Amplitude (pA)", CursorCount);
  graph.x.max = 100.0;
  graph.y.max = 100.0;
  graph.x.automatic = false;
  for (std::size_t c = 0; c < CursorCount; ++c) {
    const bool zoomPair = c == ZoomFirst || c == ZoomSecond;
    graph.cursors[c] = {10.0 * static_cast<double>(c + 1), 50.0, !zoomPair, CursorColours[c]};
  }
  graph.cursorMoved = CursorMoved;
  graph.axisChanged = RangeChanged;
  MeasuresForgotten.Add(ShowNothingMeasured);
  MarksChanged.Add(ShowAnalysisMarks);
  ResponseToShow.Add(RefreshAnalysisView);
  ResponseGone.Add(ClearAnalysisPlots);
  TraceChanged.Add(ShowNewTrace);
}

void PlaceAnalysisCursors() {
  CursorAt(BaseStart).x = SampleOf(Analysis.BaselineStart);
  CursorAt(BaseEnd).x = CursorAt(BaseStart).x + Analysis.BaselinePts;
  CursorAt(SearchStart).x = SampleOf(Analysis.StartAnalysis);
  CursorAt(SearchEnd).x = CursorAt(SearchStart).x + Analysis.PeakSearchPts;
  CursorAt(Latency).x = SampleOf(Analysis.LatencyPos);
  for (const std::size_t c : {BaseStart, BaseEnd, SearchStart, SearchEnd, Latency}) RideOnTrace(c);
  HideCursorsOutside();
}

void RefreshAnalysisView() {
  Graph& graph = View();
  const bool wasZoomed = Zoomed() && graph.x.max <= Points();
  ClearPlots(graph);
  graph.x.gain = Model.ADInterval > 0.0F ? static_cast<double>(Model.ADInterval) : 1.0;
  if (Trace.TraceValid != 0) PlotWave(graph, PlotStyle::Line, DarkBlue, RecordedTrace(), 0.0, 1.0);
  graph.fullXMin = 0.0;
  graph.fullXMax = Points();
  if (const auto y = DataRangeOf(graph, 'y')) {
    graph.fullYMin = y->min;
    graph.fullYMax = y->max;
  }
  if (!wasZoomed) SetAxisRange(graph, 'x', 0.0, Points());
  PlaceAnalysisCursors();
  LockReadCursors();
  ShowReadouts();
  ShowMeasures();
  ShowNewRange();
}

void ShowAnalysisMarks() {
  DrawMarks();
}

void ShowNewTrace() {
  ForgetMeasures();
  if (PanelVisible(AnalysisPanelName)) ShowAnalysisSettings();
  RefreshAnalysisView();
}

SampleRange SamplesInView() {
  const SampleRange whole = {0, std::max(Model.NumPoints, 0)};
  if (!Zoomed()) return whole;
  const DataRange between = ZoomSpan();
  const auto within = [&whole](double x) {
    return static_cast<int>(std::clamp(x, 0.0, static_cast<double>(whole.last)));
  };
  return {within(std::ceil(between.min)), within(std::floor(between.max))};
}

void ClearAnalysisPlots() {
  ClearPlots(View());
}

}  // namespace zelvane
