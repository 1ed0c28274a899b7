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
constexpr int TableDigits = 6;           // digits that a cell shows; a copy has all
constexpr int LeastTableHeight = 62;     // pixels; one row fits
constexpr int LeastGraphWidth = 240;     // pixels
constexpr int BarWidth = 15;             // pixels, of the bar beside the response
constexpr int LeastResidualHeight = 74;  // pixels, with the numbers of x

/// Width in pixels of the columns, from 0, that hold no measure: row number, file, episode.
constexpr std::pair<int, int> ColumnWidths[] = {{0, 42}, {1, 140}, {2, 66}};

constexpr const char* Readouts[] = {
    "PeakValue", "Amplitude", "RiseTime", "DecayTime", "FracWidth", "Integral", "Coastline", "Baseline",
    "BaselineVar", "RiseSlope", "RisePoints", "LatencyRise", "LatencyPeak",
    // of a fit
    "FitAmp1", "FitTau1", "FitAmp2", "FitTau2", "FitOffset", "FitGoodness", "AnalysisNormResidual"};
constexpr int FirstOfFit = 13;

/// Returns the legend in the colours of the graph's own cursors and marks.
std::vector<LegendEntry> LegendOf(const Graph& graph) {
  using Sign = LegendEntry::Sign;
  const auto cursor = [&](int number) { return graph.cursors[Index(number) - 1].colour; };
  return {{Sign::Cursors, cursor(1), "Baseline", "1 2"},
          {Sign::Cursors, cursor(3), "Peak search", "3 4"},
          {Sign::Cursors, cursor(9), "Latency", "9"},
          {Sign::Cursors, cursor(7), "Readout", "7 8"},
          {Sign::Cross, PeakMark, "Peak", {}},
          {Sign::Points, RiseMark, "Rise", {}},
          {Sign::Line, DecayMark, "Decay, width", {}},
          {Sign::Line, IntegralMark, "Integral", {}},
          {Sign::Line, FitMark, "Fit", {}}};
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
  addDoses();
  finishParts();
  add(foot(), "AnalysisHelpButton");
  foot().addStretch();
  add(foot(), "AnalysisDone");
}

void AnalysisPage::addResponse() {
  const Part part = addPart(GraphShare);
  part.body->addWidget(new GraphLegend(LegendOf(*panel().graphs.front()), this));
  part.body->setSpacing(0);
  response_ = &addGraph(*part.body, GraphNamed("AnalysisPanel"), 3);
  residualRoom_ = new QWidget(this);  // ends where the response does, whose bar stands at its right
  auto* room = new QVBoxLayout(residualRoom_);
  room->setContentsMargins(0, 0, BarWidth, 0);
  GraphWidget& residual = addGraph(*room, GraphNamed("AnalysisPanel.residual"));
  residual.setLeastSize({LeastGraphWidth, LeastResidualHeight});
  part.body->addWidget(residualRoom_, 1);
  response_->standOn(residual);
  response_->setReadoutCursors({7, 8});
  response_->cursors().setBands({{1, 2}, {3, 4}});
  response_->installEventFilter(this);
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

/// Adds the small curve of a template, folded until it is wanted.
void AnalysisPage::addDoses() {
  const Part part = addPart(TableShare);
  addFold(part, "Dose-response of this trace", false);
  addGraph(part, GraphNamed("AnalysisPanel.template")).setLeastSize({LeastGraphWidth, LeastResidualHeight});
}

void AnalysisPage::refreshMore() {
  readouts_->showFrom(FirstOfFit, Analysis.FittedMode != 0);
  stop_->setEnabled(Screen.busy > 0);
  showResidual(Analysis.ShowFitResidual != 0);
}

/// Shows the residual below the response, which then has no numbers along its own axis of time.
void AnalysisPage::showResidual(bool shown) {
  if (residualRoom_->isVisibleTo(this) == shown && residualPlaced_) return;
  residualPlaced_ = true;
  residualRoom_->setVisible(shown);
  response_->setShowsX(!shown);
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
