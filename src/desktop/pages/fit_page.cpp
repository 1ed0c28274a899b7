#include "desktop/pages/fit_page.h"

#include <QHeaderView>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/graph/graph_cursors.h"
#include "desktop/graph/graph_legend.h"
#include "desktop/graph/graph_widget.h"
#include "desktop/pages/fit_pairs.h"
#include "desktop/widgets/flow_row.h"
#include "desktop/widgets/form_page.h"
#include "desktop/widgets/readout_strip.h"
#include "desktop/widgets/section_label.h"
#include "desktop/widgets/table_widget.h"
#include "desktop/widgets/text.h"
#include "desktop/widgets/text_box_widget.h"
#include "fit/fit_rows.h"
#include "model/model_store.h"
#include "platform/index.h"

namespace zelvane {
namespace {

// Shares of the page's height.
constexpr int RecordingShare = 5;
constexpr int ComparisonShare = 5;
constexpr int LogShare = 2;

constexpr int SideWidth = 200;       // pixels
constexpr int ProgressHeight = 150;  // pixels
constexpr int LeastWidth = 240;
constexpr int LeastUpper = 78;  // pixels; a graph on another one
constexpr int LeastLower = 74;  // pixels; the graph below, with the numbers of x
constexpr int LowPage = 560;    // pixels; a lower page has neither legend nor the lower graphs
constexpr int FewestRows = 3;   // rows of the table of rates that always show
constexpr int MostRows = 9;
constexpr int LogGapMs = 500;  // between two drawings of the log during a session
constexpr int RateDigits = 5;

// Columns of FitRatesTable, from 1, with their least width in pixels.
constexpr int FixedColumn = 5;
constexpr int SetByColumn = 6;
constexpr int BeforeColumn = 7;
constexpr int BeforePlace = 2;  // from 0: beside the value
constexpr std::pair<int, int> ColumnWidths[] = {{1, 44}, {2, 62}, {3, 56}, {4, 64},
                                                {5, 42}, {6, 60}, {7, 62}};
constexpr int LeastTableWidth = 378;  // pixels

constexpr const char* Readouts[] = {"NumEvals", "FitNormResidual", "FitResidual", "FitEvalsPerSecond",
                                    "FitElapsed"};

/// Returns the legend in the colours of the graph's own cursors.
std::vector<LegendEntry> LegendOf(const Graph& graph) {
  using Sign = LegendEntry::Sign;
  const auto cursor = [&](int number) { return graph.cursors[Index(number) - 1].colour; };
  return {{Sign::Cursors, cursor(1), "Baseline", "1 2"},
          {Sign::Cursors, cursor(3), "Alignment", "3 4"},
          {Sign::Cursors, cursor(5), "End", "5"},
          {Sign::Cursors, cursor(6), "Peak search", "6"}};
}

}  // namespace

FitPage::FitPage(Panel& panel, Settings& settings, QWidget* parent) : TaskPage(panel, settings, parent) {
  add(header(), {"FitStart", "FitStartStim", "FitOneStep", "FitStimModel"});
  stop_ = &add(header(), "FitStop", ControlWidget::Look::Toggle);
  add(header(), "FitResultWord");
  header().addStretch();
  add(header(), {"FitTakeBack", "FitKeep"});
  addStrip(Readouts);
  addPairs();
  addRecording();
  addComparison();
  addLog();
  finishParts();
  addRates();
  addFoot();
  form().setHidesDimmed(true);
}

void FitPage::addPairs() {
  QVBoxLayout& side = addSide(SideWidth);
  auto* title = new FlowRow(this);
  addTitle(*title, "Waveforms");
  title->addStretch();
  add(*title, "FitListOn", ControlWidget::Look::Toggle);
  side.addWidget(title);
  pairs_ = new FitPairs(this);
  side.addWidget(pairs_, 1);
  auto* buttons = new FlowRow(this);
  add(*buttons, {"FitListSave", "FitClear"});
  side.addWidget(buttons);
  side.addWidget(NewSectionLabel("Progress", this));
  GraphWidget& progress = addGraph(side, GraphNamed("FitPanel.progress"), 0);
  progress.setLeastSize({SideWidth, ProgressHeight});
  progress.setMaximumHeight(ProgressHeight);
  progress.setMinimumHeight(ProgressHeight);
}

void FitPage::addRecording() {
  const Part part = addPart(RecordingShare);
  addFold(part, "Recording");
  add(*part.row, "FitShownProfile");
  part.row->addStretch();
  add(*part.row, "FitPositionButton", ControlWidget::Look::Toggle);
  add(*part.row, {"FitExpand", "FitCompress", "FitFullScale"});
  Graph& record = GraphNamed("FitPanel.data");
  legend_ = new GraphLegend(LegendOf(record), this);
  part.body->addWidget(legend_);
  recording_ = addStack(part, record, GraphNamed("FitPanel.stimulus"));
  recording_.upper->cursors().setBands({{1, 2}, {3, 4}});
}

void FitPage::addComparison() {
  const Part part = addPart(ComparisonShare);
  addFold(part, "Recording and simulation");
  part.row->addStretch();
  add(*part.row, "FitUpdate");
  comparison_ = addStack(part, GraphNamed("FitPanel.fit"), GraphNamed("FitPanel.residual"));
}

/// Adds a graph above a lower one.
FitPage::Stack FitPage::addStack(const Part& part, Graph& above, Graph& below) {
  part.body->setSpacing(0);
  const Stack stack{&addGraph(*part.body, above, 3), &addGraph(*part.body, below, 2)};
  stack.upper->setLeastSize({LeastWidth, LeastUpper});
  stack.lower->setLeastSize({LeastWidth, LeastLower});
  stack.upper->standOn(*stack.lower);
  return stack;
}

void FitPage::addLog() {
  const Part part = addPart(LogShare);
  log_ = new TextBoxWidget(*panel().textBoxes.front(), this);
  log_->setMinimumHeight(3 * fontMetrics().lineSpacing());
  part.body->addWidget(log_, 1);
  addFold(part, "Log", false);
}

void FitPage::addRates() {
  auto* title = new FlowRow(this);
  addTitle(*title, "Rates");
  title->addStretch();
  add(*title, {"WaveFitParams", "WaveStimFitParams"});
  aboveForm().addWidget(title);
  rates_ = &addTable(aboveForm(), *panel().tables.front());
  rates_->setDigits(RateDigits);
  rates_->setTickColumn(FixedColumn);
  rates_->setReadColumns({1, SetByColumn, BeforeColumn});
  rates_->horizontalHeader()->moveSection(BeforeColumn - 1, BeforePlace);
  rates_->horizontalHeader()->setStretchLastSection(false);
  rates_->horizontalHeader()->setMinimumSectionSize(1);
  rates_->setMinimumWidth(LeastTableWidth);
  for (const auto& [column, width] : ColumnWidths) rates_->setColumnWidth(column - 1, width);
}

void FitPage::addFoot() {
  add(foot(), {"FitHelpButton", "FitRefresh", "FitPrint"});
  foot().addStretch();
  add(foot(), "FitDone");
}

/// Shows as many rows as there are rates, within limits. Columns without any entry do not show.
void FitPage::showRates() {
  const int rows = std::clamp(panel().tables.front()->rows, FewestRows, MostRows);
  const int height = rates_->horizontalHeader()->sizeHint().height() + 2 * rates_->frameWidth() +
                     rows * rates_->verticalHeader()->defaultSectionSize() + 1;
  if (rates_->maximumHeight() != height) rates_->setFixedHeight(height);
  rates_->setColumnHidden(BeforeColumn - 1, CellText(*panel().tables.front(), 1, BeforeColumn).empty());
  const std::vector<FitRow> used = FitRowsInUse();
  const bool anySet =
      std::any_of(used.begin(), used.end(), [](const FitRow& row) { return RowIsForced(row.row); });
  rates_->setColumnHidden(SetByColumn - 1, !anySet);
}

/// Shows the log, during a session only now and then: it can have ten thousand lines.
void FitPage::showLog() {
  if (!log_->isVisible()) return;
  if (Model.FitActive != 0 && sinceLog_.isValid() && sinceLog_.elapsed() < LogGapMs) return;
  log_->refresh();
  sinceLog_.start();
}

void FitPage::refreshMore() {
  stop_->setEnabled(Model.FitActive != 0);
  pairs_->refresh();
  showRates();
  showLog();
}

void FitPage::resizeEvent(QResizeEvent* event) {
  TaskPage::resizeEvent(event);
  const bool low = height() < LowPage;
  legend_->setVisible(!low);
  for (const Stack& stack : {recording_, comparison_}) {
    stack.lower->setVisible(!low);
    stack.upper->setShowsX(low);
  }
}

}  // namespace zelvane
