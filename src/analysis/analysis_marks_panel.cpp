// The marks of the measures on the plot of AnalysisPanel.
#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_panel.h"
#include "analysis/analysis_plot_panels.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "analysis/measures.h"
#include "numerics/rounding.h"
#include "screen/screen.h"

namespace zelvane {

extern const Colour PeakMark{192, 0, 0};
extern const Colour RiseMark{224, 112, 0};
extern const Colour DecayMark{144, 0, 144};
extern const Colour IntegralMark{96, 96, 96};
extern const Colour FitMark{208, 0, 112};

namespace {

constexpr double BarHeight = 0.02;  // height of the bar above the foot of the view, as a part of the view

void DrawLine(double fromX, double toX, float y, Colour colour, PlotStyle style = PlotStyle::Line) {
  const std::array<double, 2> x = {fromX, toX};
  const std::array<float, 2> level = {y, y};
  PlotPoints(AnalysisGraph(), style, colour, x, level);
}

/// Draws a bar along the foot of the picture under the stretch of the integral.
void DrawIntegralBar(const MeasureSettings& settings) {
  const Graph& graph = AnalysisGraph();
  const DataRange y = ViewRange(graph, 'y');
  const auto foot = static_cast<float>(y.min + (y.max - y.min) * BarHeight);
  const double start = std::max(SampleOf(settings.startAnalysis), 0.0);
  const double end = std::min(start + static_cast<double>(settings.integralPts), PointsOfTrace());
  if (end > start) DrawLine(start, end, foot, IntegralMark);
}

void DrawRise(const MeasureSettings& settings, const ResponseMeasures& m) {
  const float amplitude = m.PeakValue - m.Baseline;
  const std::array<double, 2> x = {static_cast<double>(m.RiseStartPos), static_cast<double>(m.RiseEndPos)};
  const std::array<float, 2> y = {m.Baseline + amplitude * settings.riseStartFrac,
                                  m.Baseline + amplitude * settings.riseEndFrac};
  PlotPoints(AnalysisGraph(), PlotStyle::Points, RiseMark, x, y);
}

void DrawBaseline(const MeasureSettings& settings, const ResponseMeasures& m) {
  const double start = WholeSamples(std::trunc(settings.baselineStart) / settings.intervalMs);
  DrawLine(start, std::min(start + settings.baselinePts, PointsOfTrace()), m.Baseline, BaselineColour);
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

/// Draws the curve of the fit over the response, and what it leaves below it.
void DrawFit() {
  const FittedCurve& curve = AnalysisFit.Curve;
  if (curve.sample.empty() || MeasuresOnPanel().live) return;
  PlotPoints(AnalysisGraph(), PlotStyle::Line, FitMark, curve.sample, curve.value);
  Graph& residual = GraphNamed(AnalysisResidualName);
  const std::array<double, 2> ends = {curve.sample.front(), curve.sample.back()};
  PlotPoints(residual, PlotStyle::Line, IntegralMark, ends, std::array{0.0F, 0.0F});
  PlotPoints(residual, PlotStyle::Line, FitMark, curve.sample, curve.residual);
}

}  // namespace

void DrawAnalysisMarks() {
  KeepPlots(AnalysisGraph(), 1);
  ClearPlots(GraphNamed(AnalysisResidualName));
  const ShownMeasures shown = MeasuresOnPanel();
  const MeasureSettings& settings = shown.settings;
  const ResponseMeasures& m = shown.measures;
  const auto made = [bits = m.measured](unsigned bit) { return (bits & bit) != 0; };
  if (AnalysisGraph().plots.empty() || !(settings.intervalMs > 0.0F)) return;
  if (made(MeasuredIntegral)) DrawIntegralBar(settings);
  if (made(MeasuredBaseline)) DrawBaseline(settings, m);
  if (made(MeasuredPeak)) {
    const std::array<double, 1> x = {static_cast<double>(m.PeakPos)};
    PlotPoints(AnalysisGraph(), PlotStyle::Cross, PeakMark, x, std::array{m.PeakValue});
  }
  if (made(MeasuredRise)) DrawRise(settings, m);
  if (made(MeasuredDecay)) DrawDecay(settings, m);
  if (made(MeasuredLatencyRise)) DrawLatency(settings, m);
  DrawFit();
}

void ShowAnalysisMarks() {
  DrawAnalysisMarks();
}

}  // namespace zelvane
