#include "app/graph_properties.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "analysis/analysis_panel.h"
#include "model/model_store.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char PropertiesPanel[] = "GraphPropertiesPanel";
constexpr char NoXRange[] = "The left limit must be below the right limit.";
constexpr char NoYRange[] = "The lower limit must be below the upper limit.";
constexpr double AutoYMargin = 1.0 / 18.0;  // share of the range, on each side

struct TimeUnit {
  const char* left;
  const char* right;
  const char* span;
  double ms;
};
constexpr TimeUnit Units[] = {
    {"Left Limit (ms):", "Right Limit (ms):", "X span is %0.3f ms = %i samples", 1.0},
    {"Left Limit (s):", "Right Limit (s):", "X span is %0.3f s = %i samples", 1000.0},
    {"Left Limit (min):", "Right Limit (min):", "X span is %0.3f minutes = %i samples", 60000.0}};

Graph* GraphInFront() {
  for (Panel& panel : Screen.panels) {
    if (panel.visible && !panel.tag.empty() && !panel.graphs.empty()) return panel.graphs.front();
  }
  return nullptr;
}

const TimeUnit& UnitShown() {
  return Units[static_cast<std::size_t>(ControlNumber("GraphTimeUnit"))];
}

double IntervalMs() {
  return static_cast<double>(Model.ADInterval);
}

/// Largest relative error of a time divided by a 32-bit interval, for decimals such as 20 ms and 0.1 ms.
constexpr double QuotientError = 1.5e-7;

/// Returns the place of a time on the x axis in samples, with a fraction, limited to the range of an int.
double SampleAt(double ms) {
  const double sample = IntervalMs() > 0.0 ? ms / IntervalMs() : 0.0;
  const double whole = std::round(sample);
  const bool meansWhole = std::abs(sample - whole) <= std::abs(sample) * QuotientError;
  return std::clamp(meansWhole ? whole : sample, -2147483647.0, 2147483647.0);
}

/// Returns the length of a sample along the x axis of a graph: 1 where the axis counts samples, the interval
/// where it counts ms.
double SampleStep(const Graph& graph) {
  return graph.x.gain > 0.0 ? IntervalMs() / graph.x.gain : IntervalMs();
}

void ShowSpans() {
  const TimeUnit& unit = UnitShown();
  const double samples = ControlNumber("GraphRightSample") - ControlNumber("GraphLeftSample");
  const double span = ControlNumber("GraphRightTime") - ControlNumber("GraphLeftTime");
  ShowText("GraphXSpan",
           FormatText(unit.span, span,
                      static_cast<int>(std::round(std::clamp(samples, -2147483647.0, 2147483647.0)))));
  ShowText("GraphYSpan",
           FormatText("Y span is %0.2f pA", ControlNumber("GraphYMax") - ControlNumber("GraphYMin")));
}

void ShowTimes() {
  const TimeUnit& unit = UnitShown();
  ControlNamed("GraphLeftTime").label = unit.left;
  ControlNamed("GraphRightTime").label = unit.right;
  ShowNumber("GraphLeftTime", ControlNumber("GraphLeftSample") * IntervalMs() / unit.ms);
  ShowNumber("GraphRightTime", ControlNumber("GraphRightSample") * IntervalMs() / unit.ms);
}

// -- FxnUpdateSpans, one for each kind of field --

void UpdateFromSamples(const ControlEvent&) {
  ShowTimes();
  ShowSpans();
}

void UpdateFromTimes(const ControlEvent&) {
  ShowNumber("GraphLeftSample", SampleAt(ControlNumber("GraphLeftTime") * UnitShown().ms));
  ShowNumber("GraphRightSample", SampleAt(ControlNumber("GraphRightTime") * UnitShown().ms));
  ShowSpans();
}

void UpdateFromY(const ControlEvent&) {
  ShowSpans();
}

/// Dims the limits of an automatic axis.
void DimProperties() {
  const bool autoX = ControlNumber("GraphAutoX") != 0.0;
  const bool autoY = ControlNumber("GraphAutoY") != 0.0;
  for (const char* name : {"GraphLeftSample", "GraphRightSample", "GraphLeftTime", "GraphRightTime"}) {
    SetDimmed(name, autoX);
  }
  for (const char* name : {"GraphYMin", "GraphYMax"}) SetDimmed(name, autoY);
}

void FxnSignalsCheckBox(const ControlEvent&) {
  DimProperties();
}

/// A value of the page's second tab when the page was opened.
struct KeptValue {
  std::string name;
  double number;
};

std::vector<KeptValue>& Kept() {
  static std::vector<KeptValue> kept;
  return kept;
}

void FxnGraphProperties() {
  const Graph* graph = GraphInFront();
  if (graph == nullptr) return;
  const DataRange x = ViewRange(*graph, 'x');
  const DataRange y = ViewRange(*graph, 'y');
  ShowNumber("GraphLeftSample", SampleAt(x.min * graph->x.gain));
  ShowNumber("GraphRightSample", SampleAt(x.max * graph->x.gain));
  ShowNumber("GraphYMin", y.min);
  ShowNumber("GraphYMax", y.max);
  ShowNumber("GraphAutoX", graph->x.automatic ? 1.0 : 0.0);
  ShowNumber("GraphAutoY", graph->y.automatic ? 1.0 : 0.0);
  ShowNumber("GraphLogY", graph->y.log ? 1.0 : 0.0);
  ShowTimes();
  ShowSpans();
  Kept().clear();
  for (const Control* control : PanelNamed(PropertiesPanel).controls) {
    if (control->group == "view") Kept().push_back({control->name, control->number});
  }
  ShowPanel(PropertiesPanel);
}

/// Returns why the axes cannot get the limits of the page, or nullptr.
const char* WrongLimits() {
  const bool x = ControlNumber("GraphAutoX") == 0.0;
  const bool y = ControlNumber("GraphAutoY") == 0.0;
  if (x && !(ControlNumber("GraphLeftSample") < ControlNumber("GraphRightSample"))) return NoXRange;
  if (y && !(ControlNumber("GraphYMin") < ControlNumber("GraphYMax"))) return NoYRange;
  return nullptr;
}

void FxnPropertiesOk(const ControlEvent&) {
  if (const char* wrong = WrongLimits()) {  // the page stays open for a correction
    Note(wrong);
    return;
  }
  HidePanel(PropertiesPanel);
  Graph* graph = GraphInFront();
  if (graph == nullptr) return;
  const double left = ControlNumber("GraphLeftSample");
  const double right = ControlNumber("GraphRightSample");
  if (ControlNumber("GraphAutoX") != 0.0) {
    SetAxisAuto(*graph, 'x');
  } else {
    SetAxisRange(*graph, 'x', left * SampleStep(*graph), right * SampleStep(*graph));
  }
  if (graph->axisChanged != nullptr) graph->axisChanged(*graph);  // may change y; its own limits come next
  if (ControlNumber("GraphAutoY") != 0.0) {
    SetAxisAuto(*graph, 'y');
  } else {
    SetAxisRange(*graph, 'y', ControlNumber("GraphYMin"), ControlNumber("GraphYMax"));
  }
  SetAxisLog(*graph, 'y', ControlNumber("GraphLogY") != 0.0);
  if (graph->axisChanged != nullptr) graph->axisChanged(*graph);
}

void CancelChanges() {
  HidePanel(PropertiesPanel);
  for (const KeptValue& kept : Kept()) ShowNumber(kept.name, kept.number);
  DimProperties();
}

void FxnPropertiesCancel(const ControlEvent&) {
  CancelChanges();
}

// clang-format off
constexpr ControlDecl SpanControls[] = {
    {.name = "GraphTimeUnit", .kind = ControlKind::Choice, .label = "Unit of time", .format = "",
     .command = "FxnUpdateSpans", .action = UpdateFromSamples, .help = "Unit of the limits in time.",
     .choices = "ms|s|min"},
    {.name = "GraphLeftTime", .kind = ControlKind::Number, .label = "Left Limit (ms):", .format = "%.3f",
     .command = "FxnLeftTime", .action = UpdateFromTimes, .help = "Left limit of the x axis, in time."},
    {.name = "GraphRightTime", .kind = ControlKind::Number, .label = "Right Limit (ms):", .format = "%.3f",
     .command = "FxnRightTime", .action = UpdateFromTimes, .help = "Right limit of the x axis, in time."},
    {.name = "GraphLeftSample", .kind = ControlKind::Number, .label = "Left Limit (samples):", .format = "%.7g",
     .command = "FxnLeftSample", .action = UpdateFromSamples,
     .help = "Left limit of the x axis, in samples from the start."},
    {.name = "GraphRightSample", .kind = ControlKind::Number, .label = "Right Limit (samples):", .format = "%.7g",
     .command = "FxnRightSample", .action = UpdateFromSamples,
     .help = "Right limit of the x axis, in samples from the start."},
    {.name = "GraphXSpan", .kind = ControlKind::Readout, .format = "", .help = "Span of the x axis."},
    {.name = "GraphYMin", .kind = ControlKind::Number, .label = "Lower limit", .format = "%g",
     .command = "FxnLowerLimit", .action = UpdateFromY, .help = "Lower limit of the y axis."},
    {.name = "GraphYMax", .kind = ControlKind::Number, .label = "Upper limit", .format = "%g",
     .command = "FxnUpperLimit", .action = UpdateFromY, .help = "Upper limit of the y axis."},
    {.name = "GraphYSpan", .kind = ControlKind::Readout, .format = "", .help = "Span of the y axis."},
};
constexpr ControlDecl ViewControls[] = {
    {.name = "GraphAutoX", .kind = ControlKind::Switch, .label = "Automatic x", .format = "",
     .command = "FxnSignalsCheckBox", .action = FxnSignalsCheckBox, .help = "Fit the x axis to the data."},
    {.name = "GraphAutoY", .kind = ControlKind::Switch, .label = "Automatic y", .format = "",
     .command = "FxnSignalsAutoY", .action = FxnSignalsCheckBox, .help = "Fit the y axis to the data."},
    {.name = "GraphLogY", .kind = ControlKind::Switch, .label = "Logarithmic y", .format = "",
     .command = "FxnSignalsLogY", .action = FxnSignalsCheckBox, .help = "Draw a logarithmic y axis."},
};
constexpr ControlDecl ButtonControls[] = {
    {.name = "GraphPropertiesOk", .kind = ControlKind::Button, .label = "OK", .format = "",
     .command = "FxnGraphPropertiesOk", .action = FxnPropertiesOk, .help = "Use these limits."},
    {.name = "GraphPropertiesCancel", .kind = ControlKind::Button, .label = "Cancel", .format = "",
     .command = "FxnGraphPropertiesCancel", .action = FxnPropertiesCancel, .help = "Close the panel without a change."},
};
constexpr MenuDecl GraphMenu[] = {
    {"Graph/Full scale",    "FxnScaleAxes",       ScaleFull,          "Ctrl+0"},
    {"Graph/Auto y",        "FxnScaleAutoY",      ScaleAutoY,         "Ctrl+Y"},
    {"Graph/Properties...", "FxnGraphProperties", FxnGraphProperties},
};
// clang-format on

}  // namespace

void AddGraphPropertiesPanel() {
  AddPanel({.name = PropertiesPanel,
            .title = "Graph properties",
            .dim = DimProperties,
            .close = CancelChanges,
            .help = "Limits and scaling of the axes of the graph in front."});
  AddControls(PropertiesPanel, "span", SpanControls);
  AddControls(PropertiesPanel, "view", ViewControls);
  AddControls(PropertiesPanel, "buttons", ButtonControls);
  AddMenu(GraphMenu);
}

void ScaleFull() {
  Graph* graph = GraphInFront();
  if (graph == nullptr) return;
  SetAxisAuto(*graph, 'x');
  SetAxisAuto(*graph, 'y');
  if (graph->axisChanged != nullptr) graph->axisChanged(*graph);
  if (graph == FindGraph("AnalysisPanel")) SortAnalysisCursors();
}

void ScaleAutoY() {
  Graph* graph = GraphInFront();
  if (graph == nullptr) return;
  const auto trace = std::find_if(graph->plots.rbegin(), graph->plots.rend(), [](const Plot& candidate) {
    return candidate.x.empty() && candidate.step > 0.0 && !candidate.y.empty();
  });
  if (trace == graph->plots.rend()) return;
  const Plot& plot = *trace;  // the newest; marks have x values
  const DataRange view = ViewRange(*graph, 'x');
  const double last = static_cast<double>(plot.y.size()) - 1.0;
  const double left = std::clamp(std::ceil((view.min - plot.start) / plot.step), 0.0, last);
  const double right = std::clamp(std::floor((view.max - plot.start) / plot.step), 0.0, last);
  bool found = false;
  DataRange range;
  for (auto i = static_cast<std::size_t>(left); i <= static_cast<std::size_t>(right); i += 2) {
    const double value = static_cast<double>(plot.y[i]);
    if (!std::isfinite(value)) continue;
    range.min = found ? std::min(range.min, value) : value;
    range.max = found ? std::max(range.max, value) : value;
    found = true;
  }
  if (!found) return;
  const double margin = (range.max - range.min) * AutoYMargin;
  SetAxisRange(*graph, 'y', range.min - margin, range.max + margin);
  if (graph->axisChanged != nullptr) graph->axisChanged(*graph);
}

}  // namespace zelvane
