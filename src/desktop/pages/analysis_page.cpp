#include "desktop/pages/analysis_page.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>

#include "analysis/analysis_panel.h"
#include "analysis/analysis_store.h"
#include "desktop/graph/graph_cursors.h"
#include "desktop/graph/graph_legend.h"
#include "desktop/graph/graph_widget.h"
#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/readout_strip.h"
#include "desktop/widgets/side_form.h"
#include "desktop/widgets/table_widget.h"
#include "desktop/widgets/text.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr int Gap = 6;
constexpr int GraphShare = 5;  // of the page's height, against the table's
constexpr int TableShare = 3;
constexpr int EpisodeWidth = 64;   // pixels
constexpr int MeasuresInARow = 7;  // of the strip of readouts
constexpr int FitResultsInARow = 6;
constexpr int TableDigits = 6;  // that a cell shows; what is copied has all

/// Columns, from 0, that hold no measure: row number, file, episode; pixels.
constexpr std::pair<int, int> ColumnWidths[] = {{0, 42}, {1, 140}, {2, 66}};

constexpr const char* Measures[] = {"PeakValue",  "Amplitude",   "RiseTime",   "DecayTime",   "FracWidth",
                                    "Integral",   "Coastline",   "Baseline",   "BaselineVar", "RiseSlope",
                                    "RisePoints", "LatencyRise", "LatencyPeak"};
constexpr const char* FitResults[] = {"FitAmp1", "FitTau1", "FitAmp2", "FitTau2", "FitOffset", "FitGoodness"};

/// The colours are those of the graph's own cursors and marks.
std::vector<LegendEntry> LegendOf(const Graph& graph) {
  using Sign = LegendEntry::Sign;
  const auto cursor = [&](int number) { return graph.cursors[static_cast<std::size_t>(number) - 1].colour; };
  return {{Sign::Cursors, cursor(1), "Baseline", "1 2"}, {Sign::Cursors, cursor(3), "Peak search", "3 4"},
          {Sign::Cursors, cursor(9), "Latency", "9"},    {Sign::Cursors, cursor(7), "Readout", "7 8"},
          {Sign::Cross, PeakMark, "Peak", {}},           {Sign::Points, RiseMark, "Rise", {}},
          {Sign::Line, DecayMark, "Decay, width", {}},   {Sign::Line, IntegralMark, "Integral", {}}};
}

}  // namespace

AnalysisPage::AnalysisPage(Panel& panel, QWidget* parent) : TaskPage(panel, parent) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 8, 0, 6);
  layout->setSpacing(10);
  auto* left = new QVBoxLayout;
  left->setSpacing(Gap);
  left->addWidget(makeHeader());
  measures_ = new ReadoutStrip(Measures, MeasuresInARow, this);
  fit_ = new ReadoutStrip(FitResults, FitResultsInARow, this);
  left->addWidget(measures_);
  left->addWidget(fit_);
  auto* splitter = new QSplitter(Qt::Vertical, this);
  splitter->setChildrenCollapsible(false);
  splitter->addWidget(makeGraph());
  splitter->addWidget(makeTable());
  splitter->setSizes({100 * GraphShare, 100 * TableShare});
  splitter->setStretchFactor(0, GraphShare);
  splitter->setStretchFactor(1, TableShare);
  left->addWidget(splitter, 1);
  layout->addLayout(left, 1);
  layout->addWidget(makeSide());
}

ControlWidget* AnalysisPage::add(QBoxLayout* row, const char* control) {
  Control& record = ControlNamed(control);
  controls_.push_back(new ControlWidget(record, this, LookOf(record)));
  row->addWidget(controls_.back());
  return controls_.back();
}

QWidget* AnalysisPage::makeHeader() {
  auto* part = new QWidget(this);
  auto* row = new QHBoxLayout(part);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Gap);
  for (const char* button : {"AnalyzeButton", "AnalyzeNextButton", "AutoAnalyzeButton"}) add(row, button);
  stop_ = add(row, "StopAnalysisButton");
  row->addStretch();
  add(row, "AnalysisDataName");
  row->addSpacing(Gap);
  row->addWidget(makeStepper());
  row->addSpacing(Gap);
  add(row, "AnalysisRsStatus");
  return part;
}

/// Steps through the episodes of a recording.
QWidget* AnalysisPage::makeStepper() {
  stepper_ = new QWidget(this);
  auto* row = new QHBoxLayout(stepper_);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(new QLabel("Episode", stepper_));
  add(row, "SectionNumber")->setFixedWidth(EpisodeWidth);
  row->addWidget(new QLabel("of", stepper_));
  add(row, "EpisodeCount");
  for (const auto& [arrow, control] :
       {std::pair{Qt::LeftArrow, "AnalysisLast"}, {Qt::RightArrow, "AnalysisNext"}}) {
    Control& record = ControlNamed(control);
    auto* button = new QToolButton(stepper_);
    button->setObjectName(control);
    button->setArrowType(arrow);
    button->setToolTip(ToQt(record.help));
    button->setAccessibleName(ToQt(record.label));
    connect(button, &QToolButton::clicked, this, [&record] { Press(record); });
    row->addWidget(button);
  }
  return stepper_;
}

QWidget* AnalysisPage::makeGraph() {
  auto* part = new QWidget(this);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  Graph& graph = *panel().graphs.front();
  graph_ = new GraphWidget(graph, part);
  graph_->setReadoutCursors({7, 8});
  graph_->cursors().setBands({{1, 2}, {3, 4}});
  graph_->installEventFilter(this);
  layout->addWidget(new GraphLegend(LegendOf(graph), part));
  layout->addWidget(graph_, 1);
  return part;
}

QWidget* AnalysisPage::makeTable() {
  auto* part = new QWidget(this);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 4, 0, 0);
  layout->setSpacing(4);
  auto* row = new QHBoxLayout;
  row->setSpacing(Gap);
  row->addWidget(SectionLabel("Results", part));
  row->addStretch();
  for (const char* button : {"DeleteMeasures", "ClearResults", "ReadTable", "SaveTable", "ExportTable"}) {
    add(row, button);
  }
  table_ = new TableWidget(*panel().tables.front(), part);
  table_->setDigits(TableDigits);
  table_->setFilled([](int filledRow) { return filledRow < Analysis.TableRow; });
  table_->verticalHeader()->hide();
  for (const auto& [column, width] : ColumnWidths) table_->setColumnWidth(column, width);
  layout->addLayout(row);
  layout->addWidget(table_, 1);
  return part;
}

QWidget* AnalysisPage::makeSide() {
  auto* part = new QWidget(this);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  settings_ = new SideForm(panel(), part);
  layout->addWidget(settings_, 1);
  auto* done = new QHBoxLayout;
  done->setContentsMargins(4, 0, 10, 0);
  add(done, "AnalysisHelpButton");
  done->addStretch();
  add(done, "AnalysisDone");
  layout->addLayout(done);
  return part;
}

void AnalysisPage::refresh(const std::set<Graph*>& changed) {
  for (ControlWidget* control : controls_) control->refresh();
  measures_->refresh();
  fit_->refresh();
  fit_->setVisible(Analysis.FitRan != 0);
  stop_->setEnabled(Screen.busy > 0);
  stepper_->setVisible(Trace.EpisodeCount > 1);
  settings_->form().refresh();
  table_->refresh();
  if (changed.contains(&graph_->graph())) graph_->refresh();
}

/// Home and End go to the first and last episode here, also while the graph has the keys.
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
