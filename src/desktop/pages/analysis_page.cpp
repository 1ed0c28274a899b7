#include "desktop/pages/analysis_page.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include "analysis/analysis_panel.h"
#include "analysis/analysis_store.h"
#include "desktop/graph/graph_cursors.h"
#include "desktop/graph/graph_legend.h"
#include "desktop/graph/graph_widget.h"
#include "desktop/widgets/flow_row.h"
#include "desktop/widgets/readout_strip.h"
#include "desktop/widgets/table_widget.h"
#include "desktop/widgets/text.h"
#include "platform/index.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr int GraphShare = 5;  // share of the page's height, relative to the table's
constexpr int TableShare = 3;
constexpr int TableDigits = 6;        // digits that a cell shows; a copy has all
constexpr int LeastTableHeight = 62;  // pixels; one row fits

/// Width in pixels of the columns, from 0, that hold no measure: row number, file, episode.
constexpr std::pair<int, int> ColumnWidths[] = {{0, 42}, {1, 140}, {2, 66}};

constexpr const char* Readouts[] = {"PeakValue", "Amplitude", "RiseTime", "DecayTime", "FracWidth",
                                    "Integral", "Coastline", "Baseline", "BaselineVar", "RiseSlope",
                                    "RisePoints", "LatencyRise", "LatencyPeak",
                                    // of a fit
                                    "FitAmp1", "FitTau1", "FitAmp2", "FitTau2", "FitOffset", "FitGoodness"};
constexpr int FirstOfFit = 13;

/// Returns the legend in the colours of the graph's own cursors and marks.
std::vector<LegendEntry> LegendOf(const Graph& graph) {
  using Sign = LegendEntry::Sign;
  const auto cursor = [&](int number) { return graph.cursors[Index(number) - 1].colour; };
  return {{Sign::Cursors, cursor(1), "Baseline", "1 2"}, {Sign::Cursors, cursor(3), "Peak search", "3 4"},
          {Sign::Cursors, cursor(9), "Latency", "9"},    {Sign::Cursors, cursor(7), "Readout", "7 8"},
          {Sign::Cross, PeakMark, "Peak", {}},           {Sign::Points, RiseMark, "Rise", {}},
          {Sign::Line, DecayMark, "Decay, width", {}},   {Sign::Line, IntegralMark, "Integral", {}}};
}

}  // namespace

AnalysisPage::AnalysisPage(Panel& panel, Settings& settings, QWidget* parent)
    : TaskPage(panel, settings, parent) {
  add(header(), {"AnalyzeButton", "AnalyzeNextButton", "AutoAnalyzeButton"});
  stop_ = &add(header(), "StopAnalysisButton");
  header().addStretch();
  add(header(), "AnalysisDataName");
  addStepper(header(), {"SectionNumber", "EpisodeCount", "AnalysisLast", "AnalysisNext"});
  add(header(), "AnalysisRsStatus");
  readouts_ = &addStrip(Readouts);
  addResponse();
  addResults();
  finishParts();
  add(foot(), "AnalysisHelpButton");
  foot().addStretch();
  add(foot(), "AnalysisDone");
}

void AnalysisPage::addResponse() {
  const Part part = addPart(GraphShare);
  part.body->addWidget(new GraphLegend(LegendOf(*panel().graphs.front()), this));
  GraphWidget& graph = addGraph(part, *panel().graphs.front());
  graph.setReadoutCursors({7, 8});
  graph.cursors().setBands({{1, 2}, {3, 4}});
  graph.installEventFilter(this);
}

void AnalysisPage::addResults() {
  const Part part = addPart(TableShare);
  addFold(part, "Results");
  part.row->addStretch();
  add(*part.row, {"DeleteMeasures", "ClearResults", "ReadTable", "SaveTable", "ExportTable"});
  TableWidget& table = addTable(part, *panel().tables.front());
  table.setDigits(TableDigits);
  table.setFilled([](int filledRow) { return filledRow < Analysis.TableRow; });
  for (const auto& [column, width] : ColumnWidths) table.setColumnWidth(column, width);
  table.setMinimumHeight(LeastTableHeight);
}

void AnalysisPage::refreshMore() {
  readouts_->showFrom(FirstOfFit, Analysis.FittedMode != 0);
  stop_->setEnabled(Screen.busy > 0);
}

/// Goes to the first or last episode with Home or End, also while the graph has the keys.
bool AnalysisPage::pressKey(int key) {
  if (key != Qt::Key_Home && key != Qt::Key_End) return false;
  PressKey(panel(), key == Qt::Key_Home ? "Home" : "End");
  return true;
}

bool AnalysisPage::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && pressKey(static_cast<QKeyEvent*>(event)->key())) return true;
  return TaskPage::eventFilter(watched, event);
}

void AnalysisPage::keyPressEvent(QKeyEvent* event) {
  if (!pressKey(event->key())) TaskPage::keyPressEvent(event);
}

}  // namespace zelvane
