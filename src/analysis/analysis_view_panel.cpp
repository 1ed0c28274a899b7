// The plot of AnalysisPanel: the trace, with cursors and marks on it.
#include <algorithm>

#include "analysis/analysis_panel.h"
#include "analysis/analysis_plot_panels.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "analysis/analyze.h"
#include "model/model_store.h"
#include "screen/screen.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

void ShowWholeResponse() {
  Analysis.AutoRescale = 1;
  ShowField("AutoRescale");
  ShowWholeAnalysisRange();
}

/// Removes the marks and keeps the trace.
void ShowNothingMeasured() {
  KeepPlots(AnalysisGraph(), 1);
  ShowMeasures();
}

}  // namespace

void AddAnalysisView() {
  Graph& graph =
      AddGraph(AnalysisPanelName, AnalysisPanelName, "Time (ms)", "Amplitude (pA)", AnalysisCursorCount);
  graph.x.max = 100.0;
  graph.y.max = 100.0;
  graph.x.automatic = false;
  graph.axisChanged = FollowAnalysisRange;
  Graph& residual = AddGraph(AnalysisPanelName, AnalysisResidualName, "Time (ms)", "Residual (pA)");
  residual.axisChanged = FollowResidualRange;
  AddAnalysisRanges();
  AddAnalysisCursors();
  AddCursorReadouts();
  MeasuresForgotten.Add(ShowNothingMeasured);
  WholeTraceToShow.Add(ShowWholeResponse);
  ResponseToShow.Add(RefreshAnalysisView);
  ResponseGone.Add(ClearAnalysisPlots);
  TraceChanged.Add(ShowNewTrace);
}

Graph& AnalysisGraph() {
  return GraphNamed(AnalysisPanelName);
}

double PointsOfTrace() {
  return std::max(Model.NumPoints, 1);
}

double SampleOf(float ms) {
  return Model.ADInterval > 0.0F ? static_cast<double>(ms / Model.ADInterval) : 0.0;
}

float MsOf(double sample) {
  return static_cast<float>(sample) * Model.ADInterval;
}

void RefreshAnalysisView() {
  Graph& graph = AnalysisGraph();
  const bool wasZoomed = AnalysisViewIsZoomed() && graph.x.max <= PointsOfTrace();
  ClearPlots(graph);
  graph.x.gain = Model.ADInterval > 0.0F ? static_cast<double>(Model.ADInterval) : 1.0;
  GraphNamed(AnalysisResidualName).x.gain = graph.x.gain;
  if (Trace.TraceValid != 0) PlotWave(graph, PlotStyle::Line, DarkBlue, RecordedTrace(), 0.0, 1.0);
  graph.fullXMin = 0.0;
  graph.fullXMax = PointsOfTrace();
  if (const auto y = DataRangeOf(graph, 'y')) {
    graph.fullYMin = y->min;
    graph.fullYMax = y->max;
  }
  if (!wasZoomed) SetAxisRange(graph, 'x', 0.0, PointsOfTrace());
  PlaceAnalysisCursors();
  LockReadoutCursors();
  ShowCursorReadouts();
  ShowMeasures();
  ShowNewAnalysisRange();
}

void ShowNewTrace() {
  ForgetMeasures();
  if (PanelVisible(AnalysisPanelName)) ShowAnalysisSettings();
  RefreshAnalysisView();
}

void ClearAnalysisPlots() {
  ClearPlots(AnalysisGraph());
}

}  // namespace zelvane
