// The graph of the monitored response, or of a recording, on MainPanel.
#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "model/model_events.h"
#include "model/model_store.h"
#include "screen/screen.h"
#include "screen/zoom_graph.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_graph.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Titles of further units, only of recordings, from TraceMicrovolts on.
constexpr std::array RecordedUnitTitles = {"Potential uV", "Potential mV", "Macroscopic Current nA"};

Graph& MainGraph() {
  return GraphNamed(MainPanelName);
}

void ShowUnitsOf(int units) {
  const auto word = static_cast<std::size_t>(std::clamp(units, UnitsChannels, UnitsProbability));
  SetAxisTitle(MainGraph(), 'y', ControlNamed("DisplayUnits").choices[word]);
}

Colour SimulatorColour() {
  switch (Trace.TraceFromFile != 0 ? Model.SimulatorKind : Trace.TraceSimulator) {
    case MonteCarlo:
      return Black;
    case AdaptiveIntegrator:
      return DarkRed;
    default:
      return DarkBlue;
  }
}

/// Widens the full ranges of the graph by its newest plot; the first plot sets them.
void WidenFullRange(Graph& graph) {
  const Plot& newest = graph.plots.back();
  const bool first = graph.plots.size() == 1;
  const auto widen = [first](double& fullMin, double& fullMax, const std::optional<DataRange>& range) {
    if (!range) return;
    fullMin = first ? range->min : std::min(fullMin, range->min);
    fullMax = first ? range->max : std::max(fullMax, range->max);
  };
  widen(graph.fullXMin, graph.fullXMax, PlotRange(newest, 'x'));
  widen(graph.fullYMin, graph.fullYMax, PlotRange(newest, 'y'));
}

/// Moves cursors from outside the view into it, at thirds of the time axis, because the user cannot drag them
/// there.
void BringCursors(Graph& graph) {
  const DataRange x = ViewRange(graph, 'x');
  const double count = static_cast<double>(graph.cursors.size()) + 1.0;
  double place = 0.0;
  for (Cursor& cursor : graph.cursors) {
    place += 1.0;
    if (cursor.x < x.min || cursor.x > x.max) cursor.x = x.min + (x.max - x.min) * place / count;
  }
}

/// Most samples of all plotted traces. With more, the oldest traces are removed.
constexpr std::size_t MaxPlottedSamples = 4U * MaxStimPoints;

void DropOldestPlots(Graph& graph, std::size_t toCome) {
  std::size_t samples = toCome;
  for (const Plot& plot : graph.plots) samples += plot.y.size();
  while (!graph.plots.empty() && samples > MaxPlottedSamples) {
    samples -= graph.plots.front().y.size();
    graph.plots.erase(graph.plots.begin());
  }
}

/// Makes both axes automatic and sets the full ranges to those of the trace.
void RefreshMainGraph() {
  Graph& graph = MainGraph();
  SetAxisAuto(graph, 'x');
  SetAxisAuto(graph, 'y');
  PlotTrace(true);
  const DataRange x = ViewRange(graph, 'x');
  const DataRange y = ViewRange(graph, 'y');
  ZoomSetFullRange(graph, 'x', x.min, x.max);
  ZoomSetFullRange(graph, 'y', y.min, y.max);
}

}  // namespace

void AddTraceGraph() {
  Graph& graph = AddGraph(MainPanelName, MainPanelName, "Time (ms)", "", 2);
  graph.x.max = 100.0;
  graph.y.max = 100.0;
  graph.cursors[0] = {33.0, 66.0, true, DarkBlue};
  graph.cursors[1] = {66.0, 33.0, true, DarkBlue};
  ShowDisplayUnits();
  ShowTimeAxis();
  RunLengthTaken.Add(FollowRunLength);
  TraceToPlot.Add(PlotTrace);
  TraceGone.Add(RemoveTracePlots);
  WholeTraceToShow.Add(ShowWholeTrace);
  TraceChanged.Add(RefreshMainGraph);
}

void PlotTrace(bool erase) {
  Graph& graph = MainGraph();
  if (erase) ClearPlots(graph);
  ShowTraceUnits();
  ShowTimeAxis();
  const auto samples = static_cast<std::size_t>(std::clamp(Model.NumPoints, 0, MaxStimPoints));
  DropOldestPlots(graph, samples);
  PlotWave(graph, PlotStyle::Line, SimulatorColour(), Trace.SimTrace.first(samples), 0.0,
           static_cast<double>(Model.ADInterval));
  WidenFullRange(graph);
  if (graph.x.automatic) BringCursors(graph);
}

void RemoveTracePlots() {
  ClearPlots(MainGraph());
}

void ShowWholeTrace() {
  Graph& graph = MainGraph();
  SetAxisAuto(graph, 'x');
  SetAxisAuto(graph, 'y');
}

void ShowDisplayUnits() {
  ShowUnitsOf(Model.DisplayUnits);
}

void ShowTraceUnits() {
  if (Trace.TraceUnits <= UnitsProbability) {
    ShowUnitsOf(Trace.TraceUnits);
    return;
  }
  const auto unit = static_cast<std::size_t>(std::min(Trace.TraceUnits, TraceNanoamps) - TraceMicrovolts);
  SetAxisTitle(MainGraph(), 'y', RecordedUnitTitles[unit]);
}

void ShowTimeAxis() {
  MainGraph().x.decimals = AxisDecimals(static_cast<float>(Model.NumPoints) * Model.ADInterval);
}

int AxisDecimals(float lengthMs) {
  if (lengthMs < 10.0F) return 2;
  return lengthMs < 100.0F ? 1 : 0;
}

}  // namespace zelvane
