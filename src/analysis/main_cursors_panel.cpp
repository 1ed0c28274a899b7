// Mean and variance of the trace between the two cursors of MainPanel.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "analysis/analysis_views.h"
#include "analysis/measures.h"
#include "screen/screen.h"
#include "trace/trace_events.h"

namespace zelvane {
namespace {

// clang-format off
constexpr ControlDecl BetweenControls[] = {
    {.name = "MeanBetweenCursors", .kind = ControlKind::Readout, .label = "Mean", .format = "%.5g",
     .help = "Mean of the samples from one cursor of the graph to the other. The last of them is that before the "
     "right cursor."},
    {.name = "VarBetweenCursors", .kind = ControlKind::Readout, .label = "Var", .format = "%.5g",
     .help = "Variance of the samples from one cursor of the graph to the other. It needs at least two samples."},
};
// clang-format on

void ShowIfMeasured(const char* control, float value, bool measured) {
  if (measured)
    ShowNumber(control, static_cast<double>(value));
  else
    ShowText(control, "");
}

/// Largest relative error of a time divided by a 32-bit interval, for decimals such as 20 ms and 0.05 ms.
constexpr double QuotientError = 1.5e-7;

/// Returns the number of the sample of a plot at or before a time; the first or last for a time outside.
std::int64_t SampleBefore(const Plot& plot, double ms) {
  const double sample = std::trunc((ms - plot.start) / plot.step * (1.0 + QuotientError));
  return static_cast<std::int64_t>(std::clamp(sample, 0.0, static_cast<double>(plot.y.size()) - 1.0));
}

/// Shows the values of the newest trace of the graph.
void ShowBetween(double fromMs, double toMs) {
  const Graph& graph = GraphNamed(MainPanelName);
  ResponseMeasures between;
  if (!graph.plots.empty() && !graph.plots.back().y.empty() && graph.plots.back().step > 0.0) {
    const Plot& plot = graph.plots.back();
    const auto [first, last] = std::minmax({SampleBefore(plot, fromMs), SampleBefore(plot, toMs)});
    BaselineOf(plot.y, first, last - first, between);
  }
  const std::string unit = TraceUnitWord();
  ControlNamed("MeanBetweenCursors").label = unit.empty() ? "Mean (#)" : "Mean (" + unit + ')';
  ControlNamed("VarBetweenCursors").label = unit.empty() ? "Var (#2)" : "Var (" + unit + "2)";
  ShowIfMeasured("MeanBetweenCursors", between.Baseline, (between.measured & MeasuredBaseline) != 0);
  ShowIfMeasured("VarBetweenCursors", between.BaselineVar, (between.measured & MeasuredVariance) != 0);
}

void CursorDragged(Graph& graph, int cursor, double x) {
  ShowBetween(x, graph.cursors[cursor == 1 ? 1 : 0].x);
}

}  // namespace

void ShowBetweenCursors() {
  const Graph& graph = GraphNamed(MainPanelName);
  ShowBetween(graph.cursors[0].x, graph.cursors[1].x);
}

void AddMainCursorReadouts() {
  AddControls(MainPanelName, "cursors", BetweenControls);
  Graph& graph = GraphNamed(MainPanelName);
  graph.cursorMoved = [](Graph&, int) { ShowBetweenCursors(); };
  graph.cursorDragged = CursorDragged;
  TraceToPlot.Add([](bool) { ShowBetweenCursors(); });
  TraceGone.Add(ShowBetweenCursors);
  TraceChanged.Add(ShowBetweenCursors);
}

}  // namespace zelvane
