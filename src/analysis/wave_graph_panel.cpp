// The graphs of WaveAnalysisPanel: the whole record with two cursors, and the stretch between them with nine.
#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "analysis/analysis_plot_panels.h"
#include "analysis/analysis_views.h"
#include "analysis/analyze.h"
#include "analysis/averages.h"
#include "analysis/averages_store.h"
#include "analysis/shown_counts.h"
#include "analysis/wave_panel.h"
#include "analysis/wave_views.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "screen/pyramid.h"
#include "screen/screen.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr Colour SearchColour{192, 0, 0};
constexpr Colour ZoomColour{192, 192, 192};
constexpr Colour AlignColour{0, 0, 128};
constexpr Colour RiseColour{224, 112, 0};
constexpr Colour SteepColour{144, 0, 144};
constexpr Colour AverageColour{0, 144, 0};
constexpr Colour BandColour{120, 190, 120};
constexpr Colour SweepColour{112, 112, 112};

constexpr std::array<Colour, AnalysisCursorCount> CursorColours = {
    BaselineColour, BaselineColour, SearchColour, SearchColour, ZoomColour,
    ZoomColour,     AlignColour,    AlignColour,  LatencyColour};

constexpr double FirstEnd = 0.025;  // first places of the compressed cursors, as parts of the record
constexpr double SecondEnd = 0.5;
constexpr double YMargin = 1.0 / 18.0;
constexpr double NarrowestPart = 0.1;  // of the record, in the expanded view

Graph& Expanded() {
  return GraphNamed(ExpandedName);
}

Graph& Compressed() {
  return GraphNamed(CompressedName);
}

Cursor& WaveCursor(std::size_t cursor) {
  return Expanded().cursors[cursor];
}

int CountBetween(std::size_t from, std::size_t to) {
  return static_cast<int>(std::clamp(std::trunc(WaveCursor(to).x - WaveCursor(from).x), 0.0, 2147483647.0));
}

void HideOutside() {
  const DataRange x = ViewRange(Expanded(), 'x');
  for (std::size_t c = 0; c < AnalysisCursorCount; ++c) {
    Cursor& cursor = WaveCursor(c);
    const bool zoomPair = c == ZoomFirstCursor || c == ZoomSecondCursor;
    cursor.enabled = !zoomPair && cursor.x >= x.min && cursor.x <= x.max;
  }
}

/// Shows a range, at least a tenth of the record wide and within it.
void ShowRange(double first, double last) {
  const double points = PointsOfTrace();
  const double width = std::clamp(last - first, std::min(points * NarrowestPart, points), points);
  const double left = std::clamp(first, 0.0, points - width);
  SetAxisRange(Expanded(), 'x', left, left + width);
}

void CursorMoved(Graph& /*graph*/, int number) {
  ReadWavePanel();
  const auto moved = Index(number) - 1;
  switch (moved) {
    case BaseStartCursor:
      Averages.WaveBaselineStart = MsOf(WaveCursor(moved).x);
      CutStretch(Averages.WaveBaselineStart, Averages.WaveBaselinePts);
      break;
    case BaseEndCursor:
      if (WaveCursor(BaseEndCursor).x >= WaveCursor(BaseStartCursor).x)
        Averages.WaveBaselinePts = CountBetween(BaseStartCursor, BaseEndCursor);
      CutStretch(Averages.WaveBaselineStart, Averages.WaveBaselinePts);
      break;
    case SearchStartCursor:
      Averages.WaveStartAnalysis = MsOf(WaveCursor(moved).x);
      CutStretch(Averages.WaveStartAnalysis, Averages.WavePeakSearchPts);
      break;
    case SearchEndCursor:
      if (WaveCursor(SearchEndCursor).x >= WaveCursor(SearchStartCursor).x)
        Averages.WavePeakSearchPts = CountBetween(SearchStartCursor, SearchEndCursor);
      CutStretch(Averages.WaveStartAnalysis, Averages.WavePeakSearchPts);
      break;
    case LatencyCursor:
      Averages.WaveLatencyPos = MsOf(WaveCursor(moved).x);
      break;
    case ReadFirstCursor:
      Averages.AlignCursor = WaveCursor(moved).x;
      ShowFreeCursor();
      break;
    default:
      break;
  }
  RefreshWavePanel();
}

void CompressedMoved(Graph& /*graph*/, int /*cursor*/) {
  ReadWavePanel();
  TakeCompressedRange();
}

/// Draws a cross or a point of the expanded graph.
void Mark(PlotStyle style, Colour colour, double x, float y) {
  PlotPoints(Expanded(), style, colour, std::array{x}, std::array{y});
}

void DrawLevel(Colour colour, float level) {
  const std::array<double, 2> ends = {0.0, PointsOfTrace()};
  PlotPoints(Expanded(), PlotStyle::Line, colour, ends, std::array{level, level});
}

/// Fits y to the samples in view and to the levels of baseline and peak.
void FitYToView() {
  const std::span<const float> trace = RecordedTrace();
  const DataRange x = ViewRange(Expanded(), 'x');
  const auto size = static_cast<double>(trace.size());
  const auto first = static_cast<std::size_t>(std::clamp(std::ceil(x.min), 0.0, size));
  const auto last = static_cast<std::size_t>(std::clamp(std::floor(x.max) + 1.0, 0.0, size));
  const MinMax range = last > first ? RangeOfSamples(trace.subspan(first, last - first)) : MinMax{};
  const double span = static_cast<double>(range.max) - static_cast<double>(range.min);
  if (range.empty || !(span > 0.0)) {
    SetAxisAuto(Expanded(), 'y');
    return;
  }
  SetAxisRange(Expanded(), 'y', static_cast<double>(range.min) - span * YMargin,
               static_cast<double>(range.max) + span * YMargin);
}

float SampleAt(int i) {
  const std::span<const float> trace = RecordedTrace();
  return trace.empty() ? 0.0F : trace[Index(std::clamp(i, 0, static_cast<int>(trace.size()) - 1))];
}

void DrawMarks() {
  if (Averages.WaveMeasured == 0) return;
  DrawLevel(BaselineColour, Averages.WaveBaseline);
  DrawLevel(SearchColour, Averages.WavePeak);
  Mark(PlotStyle::Cross, SearchColour, Averages.WavePeakPos, Averages.WavePeak);
  const float height = Averages.WavePeak - Averages.WaveBaseline;
  const std::array<double, 2> x = {static_cast<double>(Averages.WaveRiseStartPos),
                                   static_cast<double>(Averages.WaveRiseEndPos)};
  PlotPoints(Expanded(), PlotStyle::Points, RiseColour, x,
             std::array{Averages.WaveBaseline + height * Averages.WaveRiseStartFrac,
                        Averages.WaveBaseline + height * Averages.WaveRiseEndFrac});
  Mark(PlotStyle::Cross, SteepColour, Averages.SteepestPos, SampleAt(Averages.SteepestPos));
}

/// Draws the average, one standard deviation above and below it, and the sweeps behind it.
void DrawAverage(Graph& graph) {
  const std::vector<float> mean = MeanWave();
  if (Averages.AverageCount > 1) {
    const std::vector<float> variance = VarianceWave();
    for (const float side : {1.0F, -1.0F}) {
      std::vector<float> band = mean;
      for (std::size_t k = 0; k < band.size(); ++k) band[k] += side * std::sqrt(variance[k]);
      PlotWave(graph, PlotStyle::Line, BandColour, band, 0.0, 1.0);
    }
  }
  PlotWave(graph, PlotStyle::Line, AverageColour, mean, 0.0, 1.0);
}

void DrawFaint(Graph& graph) {
  for (const FaintSweep& sweep : Averages.Faint) {
    PlotWave(graph, PlotStyle::Line, SweepColour, sweep.samples, sweep.start, sweep.step);
    graph.plots.back().faint = true;
  }
}

void SetFullRange(Graph& graph) {
  graph.x.gain = Model.ADInterval > 0.0F ? static_cast<double>(Model.ADInterval) : 1.0;
  graph.fullXMin = 0.0;
  graph.fullXMax = PointsOfTrace();
}

}  // namespace

void AddWaveGraphs() {
  Graph& compressed = AddGraph(WavePanelName, CompressedName, "Time (ms)", "Amplitude (pA)", 2);
  compressed.cursorMoved = CompressedMoved;
  compressed.cursors[0] = {10.0, 50.0, true, SearchColour};
  compressed.cursors[1] = {20.0, 50.0, true, SearchColour};
  Graph& expanded = AddGraph(WavePanelName, ExpandedName, "Time (ms)", "Amplitude (pA)", AnalysisCursorCount);
  expanded.cursorMoved = CursorMoved;
  expanded.axisChanged = [](Graph&) { HideOutside(); };
  for (std::size_t c = 0; c < AnalysisCursorCount; ++c) {
    const bool zoomPair = c == ZoomFirstCursor || c == ZoomSecondCursor;
    expanded.cursors[c] = {10.0 * static_cast<double>(c + 1), 50.0, !zoomPair, CursorColours[c]};
  }
}

void DrawWaves() {
  const bool averaged = Averages.ShowAverage != 0 && Averages.AverageCount > 0;
  for (Graph* graph : {&Compressed(), &Expanded()}) {
    ClearPlots(*graph);
    SetFullRange(*graph);
    const std::string unit = TraceUnitWord();
    SetAxisTitle(*graph, 'y', unit.empty() ? "Amplitude (#)" : "Amplitude (" + unit + ')');
    if (averaged && graph == &Expanded()) DrawFaint(*graph);
    if (Trace.TraceValid != 0) PlotWave(*graph, PlotStyle::Line, DarkBlue, RecordedTrace(), 0.0, 1.0);
  }
  SetAxisRange(Compressed(), 'x', 0.0, PointsOfTrace());
  DrawMarks();
  if (averaged) DrawAverage(Expanded());
  const DataRange x = ViewRange(Expanded(), 'x');
  ShowRange(x.min, x.max);
  FitYToView();
  HideOutside();
}

void PlaceWaveCursors() {
  WaveCursor(BaseStartCursor).x = SampleOf(Averages.WaveBaselineStart);
  WaveCursor(BaseEndCursor).x = WaveCursor(BaseStartCursor).x + Averages.WaveBaselinePts;
  WaveCursor(SearchStartCursor).x = SampleOf(Averages.WaveStartAnalysis);
  WaveCursor(SearchEndCursor).x = WaveCursor(SearchStartCursor).x + Averages.WavePeakSearchPts;
  WaveCursor(ReadFirstCursor).x = Averages.AlignCursor;
  WaveCursor(LatencyCursor).x = SampleOf(Averages.WaveLatencyPos);
  HideOutside();
}

void BeginWaveView() {
  Compressed().cursors[0].x = std::trunc(FirstEnd * PointsOfTrace());
  Compressed().cursors[1].x = std::trunc(SecondEnd * PointsOfTrace());
  TakeCompressedRange();
}

void TakeCompressedRange() {
  const auto [x1, x2] = std::minmax(Compressed().cursors[0].x, Compressed().cursors[1].x);
  Averages.WaveLatencyPos = Averages.WaveBaselineStart = Averages.WaveStartAnalysis = MsOf(x1);
  Averages.WavePeakSearchPts = static_cast<int>(std::clamp(std::trunc(x2 - x1), 0.0, 2147483647.0));
  ShowRange(x1, x2);
  WaveCursor(ZoomFirstCursor).x = x1;
  WaveCursor(ZoomSecondCursor).x = x2;
  RefreshWavePanel();
}

void MoveFreeCursor(float ms) {
  Averages.AlignCursor = SampleOf(ms);
  WaveCursor(ReadFirstCursor).x = Averages.AlignCursor;
  WaveCursor(ReadFirstCursor).y =
      static_cast<double>(SampleAt(static_cast<int>(std::clamp(Averages.AlignCursor, 0.0, 2e9))));
  ShowFreeCursor();
}

void ShowFreeCursor() {
  const auto sample = static_cast<int>(std::clamp(Averages.AlignCursor, 0.0, 2e9));
  const std::span<const float> trace = RecordedTrace();
  ShowNumber("ManualRiseIndex", sample);
  const bool inside = Trace.TraceValid != 0 && Index(sample) < trace.size();
  if (inside)
    ShowNumber("ManualRiseValue", static_cast<double>(trace[Index(sample)]));
  else
    ShowText("ManualRiseValue", "");
  if (inside && Index(sample) + 1 < trace.size())
    ShowNumber("ManualRiseStep", static_cast<double>(trace[Index(sample) + 1] - trace[Index(sample)]));
  else
    ShowText("ManualRiseStep", "");
}

CompressedEnds CompressedCursors() {
  return {Compressed().cursors[0].x, Compressed().cursors[1].x};
}

}  // namespace zelvane
