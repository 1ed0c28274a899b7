// The graphs of dose-response curves.
#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "analysis/analysis_views.h"
#include "analysis/dose_panel.h"
#include "analysis/dose_response.h"
#include "analysis/dose_store.h"
#include "analysis/dose_views.h"
#include "platform/index.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr Colour PairsColour{0, 0, 208};  // before a fit
constexpr Colour CurveColour{0, 0, 208};
constexpr Colour SmoothColour{96, 144, 240};
constexpr Colour HalfColour{192, 0, 0};
constexpr Colour Grey{128, 128, 128};
constexpr int SmoothPoints = 200;
constexpr double EdgeFactor = 10.0;  // a concentration of 0 stands a decade below the smallest other
constexpr double Margin = 1.5;       // of a logarithmic range, on both sides

Graph& DoseGraph() {
  return GraphNamed(DosePanelName);
}

std::span<const float> Concentrations() {
  return std::span<const float>(Dose.DoseConc)
      .first(Index(std::clamp(static_cast<int>(Dose.DoseCount), 0, MaxDosePairs)));
}

/// Returns the smallest and the largest concentration above 0; 0 and 0 without one.
DataRange PositiveRange(std::span<const float> conc) {
  DataRange range;
  for (const float c : conc) {
    const auto x = static_cast<double>(c);
    if (!(x > 0.0) || !std::isfinite(x)) continue;
    range.min = range.min == 0.0 ? x : std::min(range.min, x);
    range.max = std::max(range.max, x);
  }
  return range;
}

bool IsLog(std::span<const float> conc) {
  return Dose.DoseLogAxis != 0 && PositiveRange(conc).max > 0.0;
}

/// Returns the places of concentrations on the axis.
std::vector<double> PlacesOf(std::span<const float> conc) {
  const bool log = IsLog(conc);
  const double edge = PositiveRange(conc).min / EdgeFactor;
  std::vector<double> places;
  for (const float c : conc) places.push_back(log && !(c > 0.0F) ? edge : static_cast<double>(c));
  return places;
}

void SetRange(Graph& graph, std::span<const float> conc) {
  const bool log = IsLog(conc);
  SetAxisLog(graph, 'x', log);
  if (!log) {
    SetAxisAuto(graph, 'x');
    return;
  }
  const DataRange positive = PositiveRange(conc);
  const bool zero = std::any_of(conc.begin(), conc.end(), [](float c) { return !(c > 0.0F); });
  SetAxisRange(graph, 'x', (zero ? positive.min / EdgeFactor : positive.min) / Margin, positive.max * Margin);
}

/// Draws pairs. On a logarithmic axis a concentration of 0 is a cross at its left edge.
void DrawPairs(Graph& graph, Colour colour, std::span<const float> conc, std::span<const float> response) {
  const std::vector<double> places = PlacesOf(conc);
  PlotPoints(graph, PlotStyle::Points, colour, places, response);
  if (!IsLog(conc)) return;
  std::vector<double> x;
  std::vector<float> y;
  for (std::size_t i = 0; i < conc.size(); ++i) {
    if (conc[i] > 0.0F) continue;
    x.push_back(places[i]);
    y.push_back(response[i]);
  }
  if (!x.empty()) PlotPoints(graph, PlotStyle::Cross, HalfColour, x, y);
}

std::array<double, HillParameters + 1> Values() {
  return {0.0, Dose.DoseEC50, Dose.DoseSlope, Dose.DoseMax, Dose.DoseMin};
}

/// Draws the curve between the concentrations, evenly on the axis.
void DrawSmooth(Graph& graph, Colour colour, std::span<const float> conc) {
  const DataRange range = PositiveRange(conc);
  if (!(range.max > range.min)) return;
  const bool log = IsLog(conc);
  std::vector<double> x;
  std::vector<float> y;
  for (int k = 0; k <= SmoothPoints; ++k) {
    const double part = static_cast<double>(k) / SmoothPoints;
    const double at =
        log ? range.min * std::pow(range.max / range.min, part) : range.min + part * (range.max - range.min);
    x.push_back(at);
    y.push_back(static_cast<float>(HillAt(Values(), at)));
  }
  PlotPoints(graph, PlotStyle::Line, colour, x, y);
}

/// Marks EC50 by a broken line from the minimum, and a cross on the curve.
void DrawHalf(Graph& graph) {
  const auto half = static_cast<float>(HillAt(Values(), Dose.DoseEC50));
  const std::array<double, 2> x = {Dose.DoseEC50, Dose.DoseEC50};
  PlotPoints(graph, PlotStyle::Dashed, HalfColour, x, std::array{static_cast<float>(Dose.DoseMin), half});
  PlotPoints(graph, PlotStyle::Cross, HalfColour, std::span(x).first(1), std::array{half});
}

void DrawFit(Graph& graph) {
  const auto pairs = Index(Dose.DoseFitted);
  const auto conc = std::span<const float>(Dose.DoseConc).first(pairs);
  const auto curve = std::span<const float>(Dose.DoseCurve).first(pairs);
  DrawSmooth(graph, SmoothColour, conc);
  PlotPoints(graph, PlotStyle::Line, CurveColour, PlacesOf(conc), curve);
  DrawHalf(graph);
  std::vector<float> residual;
  for (std::size_t i = 0; i < pairs; ++i) residual.push_back(Dose.DoseResponse[i] - curve[i]);
  Graph& below = GraphNamed(DoseResidualName);
  SetRange(below, conc);
  const std::vector<double> places = PlacesOf(conc);
  const auto [first, last] = std::minmax_element(places.begin(), places.end());
  PlotPoints(below, PlotStyle::Line, Grey, std::array{*first, *last}, std::array{0.0F, 0.0F});
  PlotPoints(below, PlotStyle::Points, Black, places, residual);
}

void ShowPlace(const Graph& graph, const char* x, const char* y) {
  ShowNumber(x, graph.cursors.front().x);
  ShowNumber(y, graph.cursors.front().y);
}

}  // namespace

void AddDoseGraphs() {
  Graph& graph = AddGraph(DosePanelName, DosePanelName, "Concentration (M)", "Response", 1);
  graph.cursorMoved = [](Graph&, int) { ShowDoseCursor(); };
  AddGraph(DosePanelName, DoseResidualName, "Concentration (M)", "Residual");
  Graph& small = AddGraph(AnalysisPanelName, TemplateGraphName, "Concentration (M)", "Response", 1);
  small.cursorMoved = [](Graph&, int) { ShowTemplateCursor(); };
  for (Graph* g : {&graph, &small}) g->cursors.front() = {1e-4, 0.5, true, HalfColour};
}

void DrawDoses() {
  Graph& graph = DoseGraph();
  const std::string unit = Dose.DoseUnits.empty() ? "" : " (" + Dose.DoseUnits + ')';
  SetAxisTitle(graph, 'y', "Response" + unit);
  SetAxisTitle(GraphNamed(DoseResidualName), 'y', "Residual" + unit);
  EraseDoses();
  const std::span<const float> conc = Concentrations();
  if (conc.empty()) return;
  SetRange(graph, conc);
  DrawPairs(graph, Dose.DoseFitted > 0 ? Black : PairsColour, conc,
            std::span<const float>(Dose.DoseResponse).first(conc.size()));
  if (Dose.DoseFitted > 0) DrawFit(graph);
}

void EraseDoses() {
  ClearPlots(DoseGraph());
  ClearPlots(GraphNamed(DoseResidualName));
}

void DrawLastDoses() {
  const auto pairs = Index(std::clamp(Dose.LastDoseCount, 0, MaxDosePairs));
  const auto conc = std::span<const float>(Dose.LastDoseConc).first(pairs);
  if (pairs == 0) return;
  if (DoseGraph().plots.empty()) SetRange(DoseGraph(), conc);
  PlotPoints(DoseGraph(), PlotStyle::Line, Grey, PlacesOf(conc),
             std::span<const float>(Dose.LastDoseResponse).first(pairs));
}

void DrawTemplate(bool fitted) {
  Graph& graph = GraphNamed(TemplateGraphName);
  const auto pairs = Index(std::clamp(Dose.TemplateCount, 0, MaxDosePairs));
  const auto conc = std::span<const float>(Dose.DoseConc).first(pairs);
  ClearPlots(graph);
  if (pairs == 0) return;
  SetRange(graph, conc);
  DrawPairs(graph, Grey, conc, std::span<const float>(Dose.DoseResponse).first(pairs));
  if (!fitted) return;
  PlotPoints(graph, PlotStyle::Line, Grey, PlacesOf(conc),
             std::span<const float>(Dose.TemplateCurve).first(pairs));
  graph.cursors.front().x = Dose.DoseEC50;
  graph.cursors.front().y = Dose.DoseMax / 2.0;
  ShowTemplateCursor();
}

void DrawLastTemplate() {
  const auto pairs = Index(std::clamp(Dose.LastDoseCount, 0, MaxDosePairs));
  if (pairs == 0) return;
  const auto conc = std::span<const float>(Dose.LastDoseConc).first(pairs);
  PlotPoints(GraphNamed(TemplateGraphName), PlotStyle::Dashed, Grey, PlacesOf(conc),
             std::span<const float>(Dose.LastDoseResponse).first(pairs));
}

void ShowDoseCursor() {
  ShowPlace(DoseGraph(), "DoseCursorConc", "DoseCursorResponse");
}

void ShowTemplateCursor() {
  ShowPlace(GraphNamed(TemplateGraphName), "TemplateCursorConc", "TemplateCursorResponse");
}

}  // namespace zelvane
