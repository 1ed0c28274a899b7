#include "desktop/pages/stimulus_page.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QSplitter>
#include <QVBoxLayout>

#include "desktop/graph/graph_widget.h"
#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/side_form.h"
#include "desktop/widgets/table_widget.h"
#include "desktop/widgets/text.h"

namespace zelvane {
namespace {

constexpr int Gap = 8;
constexpr int GraphShare = 3;  // of the page's height, against the table's
constexpr int CreatorColumns = 2;

/// Just high enough for all rows of a small table.
void FitHeight(QTableView& table) {
  table.resizeColumnsToContents();
  int height = table.horizontalHeader()->sizeHint().height() + 2 * table.frameWidth();
  for (int row = 0; row < table.model()->rowCount(); ++row) height += table.rowHeight(row);
  table.setFixedHeight(height + table.style()->pixelMetric(QStyle::PM_ScrollBarExtent));
}

}  // namespace

StimulusPage::StimulusPage(Panel& panel, QWidget* parent) : TaskPage(panel, parent) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 8, 0, 6);
  layout->setSpacing(10);
  auto* left = new QVBoxLayout;
  left->setSpacing(Gap);
  left->addWidget(makeHeader());
  graph_ = new GraphWidget(*panel.graphs.front(), this);
  left->addWidget(graph_, GraphShare);
  left->addWidget(makeTable());
  layout->addLayout(left, 1);
  layout->addWidget(makeSide());
}

ControlWidget* StimulusPage::make(const char* control) {
  Control& record = ControlNamed(control);
  controls_.push_back(new ControlWidget(record, this, LookOf(record)));
  return controls_.back();
}

ControlWidget* StimulusPage::add(QHBoxLayout* row, const char* control) {
  auto* label = new QLabel(ToQt(ControlNamed(control).label), this);
  ControlWidget* widget = make(control);
  widget->adopt(label);
  row->addWidget(label);
  row->addWidget(widget);
  row->addSpacing(Gap);
  return widget;
}

QWidget* StimulusPage::makeHeader() {
  auto* part = new QWidget(this);
  auto* row = new QHBoxLayout(part);
  row->setContentsMargins(0, 0, 0, 0);
  controls_.push_back(new ControlWidget(ControlNamed("StimMode"), part, ControlWidget::Look::Segmented));
  row->addWidget(controls_.back());
  row->addSpacing(Gap);
  add(row, "StimTarget");
  row->addStretch();
  row->addWidget(make("StimLogAxis"));  // its words say what it is
  return part;
}

QWidget* StimulusPage::makeTable() {
  auto* part = new QWidget(this);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  auto* row = new QHBoxLayout;
  row->addWidget(SectionLabel("Sweeps: one group a column", part));
  row->addStretch();
  row->addWidget(make("ClearMultiStim"));
  table_ = new TableWidget(TableNamed("MultiStimTable"), part);
  table_->verticalHeader()->hide();
  table_->setWordWrap(false);
  FitHeight(*table_);
  layout->addLayout(row);
  layout->addWidget(table_);
  return part;
}

QWidget* StimulusPage::makeCreators() {
  auto* part = new QWidget(this);
  auto* grid = new QGridLayout(part);
  grid->setContentsMargins(4, 0, 10, 0);
  grid->setSpacing(6);
  grid->addWidget(SectionLabel("Add to the stimulus shown", part), 0, 0, 1, CreatorColumns);
  int i = CreatorColumns;
  for (const char* button :
       {"CreateStim", "CreateExpStim", "CreateExp", "CreateTrain", "FilterStim", "EraseStim"}) {
    grid->addWidget(make(button), i / CreatorColumns, i % CreatorColumns);
    ++i;
  }
  return part;
}

QWidget* StimulusPage::makeSide() {
  auto* part = new QWidget(this);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(12);
  settings_ = new SideForm(panel(), part);
  settings_->form().setHidesDimmed(true);
  layout->addWidget(makeCreators());
  layout->addWidget(settings_, 1);
  auto* done = new QHBoxLayout;
  done->setContentsMargins(4, 0, 10, 0);
  done->addStretch();
  done->addWidget(make("StimDone"));
  layout->addLayout(done);
  return part;
}

void StimulusPage::refresh(const std::set<Graph*>& changed) {
  for (ControlWidget* control : controls_) control->refresh();
  settings_->form().refresh();
  table_->refresh();
  if (changed.contains(&graph_->graph())) graph_->refresh();
}

}  // namespace zelvane
