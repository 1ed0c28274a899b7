#include "desktop/pages/wave_page.h"

#include <QVBoxLayout>

#include "desktop/graph/graph_cursors.h"
#include "desktop/graph/graph_legend.h"
#include "desktop/graph/graph_widget.h"
#include "desktop/widgets/flow_row.h"
#include "desktop/widgets/form_page.h"
#include "desktop/widgets/readout_strip.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr int RecordShare = 1;  // share of the page's height, relative to the stretch in view
constexpr int StretchShare = 4;
constexpr int LeastWidth = 240;   // pixels
constexpr int LeastRecord = 100;  // pixels, with the numbers of x
constexpr const char* Readouts[] = {"AverageCount",   "WaveBaseline", "WavePeak",     "WaveRiseTime",
                                    "WaveRisePoints", "SteepestTime", "SteepestValue"};

/// Returns the legend in the colours of the graph's own cursors.
std::vector<LegendEntry> LegendOf(const Graph& graph) {
  using Sign = LegendEntry::Sign;
  const auto cursor = [&](int number) { return graph.cursors[Index(number) - 1].colour; };
  return {
      {Sign::Cursors, cursor(1), "Baseline", "1 2"}, {Sign::Cursors, cursor(3), "Peak search", "3 4"},
      {Sign::Cursors, cursor(7), "Alignment", "7"},  {Sign::Cursors, cursor(9), "Latency", "9"},
      {Sign::Line, {0, 144, 0}, "Average", {}},      {Sign::Line, {120, 190, 120}, "Standard deviation", {}}};
}

}  // namespace

WavePage::WavePage(Panel& panel, Settings& settings, QWidget* parent) : TaskPage(panel, settings, parent) {
  add(header(), {"WaveRead", "AddAverage", "AverageNext", "AverageAll", "ClearAverage"});
  header().addStretch();
  add(header(), "WaveDataName");
  addStepper(header(), {"WaveSection", "WaveEpisodes", "WaveLast", "WaveNext"});
  addStrip(Readouts);
  Graph& compressed = GraphNamed("WaveAnalysisPanel.compressed");
  Graph& expanded = GraphNamed("WaveAnalysisPanel.expanded");
  const Part record = addPart(RecordShare);
  addFold(record, "Whole record");
  record.row->addStretch();
  add(*record.row, "CompressedRange");
  addGraph(record, compressed).setLeastSize({LeastWidth, LeastRecord});
  const Part stretch = addPart(StretchShare);
  addTitle(*stretch.row, "In view");
  stretch.row->addStretch();
  add(*stretch.row, "ShowAverage", ControlWidget::Look::Toggle);
  add(*stretch.row, {"ShowAverageNow", "UpdateWavePlot"});
  stretch.body->addWidget(new GraphLegend(LegendOf(expanded), this));
  GraphWidget& graph = addGraph(stretch, expanded);
  graph.setReadoutCursors({7, 8});
  graph.cursors().setBands({{1, 2}, {3, 4}});
  finishParts();
  form().setHidesDimmed(true);
  foot().addStretch();
  add(foot(), "WaveDone");
}

}  // namespace zelvane
