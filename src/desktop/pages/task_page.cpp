#include "desktop/pages/task_page.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "desktop/graph/graph_widget.h"
#include "desktop/widgets/drawer_frame.h"
#include "desktop/widgets/flow_row.h"
#include "desktop/widgets/fold_button.h"
#include "desktop/widgets/readout_strip.h"
#include "desktop/widgets/remembered_splitter.h"
#include "desktop/widgets/section_label.h"
#include "desktop/widgets/side_form.h"
#include "desktop/widgets/table_widget.h"
#include "desktop/widgets/text.h"
#include "desktop/window/settings.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr int PartGap = 6;        // pixels
constexpr int SideGap = 10;       // pixels
constexpr int EpisodeWidth = 64;  // pixels
constexpr int LowPage = 560;      // pixels of height; on a lower page readouts take one line each

}  // namespace

TaskPage::TaskPage(Panel& panel, Settings& settings, QWidget* parent)
    : QWidget(parent), panel_(panel), settings_(settings), key_("page/" + ToQt(panel.name)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  frame_ = new DrawerFrame(newMain(), newColumn(), settings, key_, this);
  layout->addWidget(frame_);
}

// -- Parts --

QWidget* TaskPage::newMain() {
  auto* main = new QWidget(this);
  auto* layout = new QVBoxLayout(main);
  layout->setContentsMargins(10, 8, 8, 6);
  layout->setSpacing(PartGap);
  header_ = new FlowRow(main);
  strips_ = new QVBoxLayout;
  strips_->setSpacing(PartGap);
  parts_ = new RememberedSplitter(Qt::Vertical, settings_, key_ + "/parts", main);
  layout->addWidget(header_);
  layout->addLayout(strips_);
  besideParts_ = new QHBoxLayout;
  besideParts_->setSpacing(SideGap);
  besideParts_->addWidget(parts_, 1);
  layout->addLayout(besideParts_, 1);
  return main;
}

QWidget* TaskPage::newColumn() {
  auto* column = new QWidget(this);
  auto* layout = new QVBoxLayout(column);
  layout->setContentsMargins(4, 8, 0, 6);
  layout->setSpacing(PartGap);
  aboveForm_ = new QVBoxLayout;
  aboveForm_->setContentsMargins(4, 0, 10, 0);
  settingsForm_ = new SideForm(panel_, settings_, key_, column);
  foot_ = new FlowRow(column);
  auto* belowForm = new QVBoxLayout;
  belowForm->setContentsMargins(4, 0, 10, 0);
  belowForm->addWidget(foot_);
  layout->addLayout(aboveForm_);
  layout->addWidget(settingsForm_, 1);
  layout->addLayout(belowForm);
  return column;
}

FormPage& TaskPage::form() {
  return settingsForm_->form();
}

ReadoutStrip& TaskPage::addStrip(std::span<const char* const> controls) {
  readoutStrips_.push_back(new ReadoutStrip(controls, this));
  strips_->addWidget(readoutStrips_.back());
  return *readoutStrips_.back();
}

TaskPage::Part TaskPage::addPart(int share) {
  auto* part = new QWidget(parts_);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(PartGap);
  auto* row = new FlowRow(part);
  auto* content = new QWidget(part);
  auto* body = new QVBoxLayout(content);
  body->setContentsMargins(0, 0, 0, 0);
  body->setSpacing(PartGap);
  layout->addWidget(row);
  layout->addWidget(content, 1);
  parts_->addWidget(part);
  shares_.push_back(100 * share);
  return {row, content, body};
}

QVBoxLayout& TaskPage::addSide(int width) {
  auto* side = new QWidget(this);
  side->setFixedWidth(width);
  auto* layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(PartGap);
  besideParts_->insertWidget(0, side);
  return *layout;
}

GraphWidget& TaskPage::addGraph(QVBoxLayout& body, Graph& graph, int share) {
  graphs_.push_back(new GraphWidget(graph, this));
  body.addWidget(graphs_.back(), share);
  return *graphs_.back();
}

TableWidget& TaskPage::addTable(QVBoxLayout& body, Table& table) {
  tables_.push_back(new TableWidget(table, this));
  tables_.back()->verticalHeader()->hide();
  body.addWidget(tables_.back(), 1);
  return *tables_.back();
}

void TaskPage::finishParts() {
  parts_->restore(shares_);
}

// -- Controls --

ControlWidget& TaskPage::newControl(const char* control, QWidget* parent) {
  return newControl(control, parent, LookOf(ControlNamed(control)));
}

ControlWidget& TaskPage::newControl(const char* control, QWidget* parent, ControlWidget::Look look) {
  controls_.push_back(new ControlWidget(ControlNamed(control), parent, look));
  return *controls_.back();
}

ControlWidget& TaskPage::add(FlowRow& row, const char* control, ControlWidget::Look look) {
  ControlWidget& widget = newControl(control, &row, look);
  row.add(&widget);
  return widget;
}

ControlWidget& TaskPage::add(FlowRow& row, const char* control) {
  return add(row, control, LookOf(ControlNamed(control)));
}

void TaskPage::add(FlowRow& row, std::initializer_list<const char*> controls) {
  for (const char* control : controls) add(row, control);
}

ControlWidget& TaskPage::addLabelled(FlowRow& row, const char* control, const QString& label) {
  auto* pair = new QWidget(&row);
  auto* layout = new QHBoxLayout(pair);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* text = new QLabel(label, pair);
  ControlWidget& widget = newControl(control, pair);
  widget.adopt(text);
  layout->addWidget(text);
  layout->addWidget(&widget, 1);
  row.add(pair);
  return widget;
}

void TaskPage::addTitle(FlowRow& row, const QString& title) {
  row.add(NewSectionLabel(title, &row));
}

void TaskPage::addFold(const Part& part, const QString& title, bool opened) {
  auto* fold = new FoldButton(title, part.row);
  part.row->add(fold);
  const QString key = key_ + "/part" + QString::number(parts_->count()) + "Open";
  QWidget* frame = part.content->parentWidget();
  const QSizePolicy::Policy height = frame->sizePolicy().verticalPolicy();
  const auto show = [this, part, frame, height](bool open) {
    part.content->setVisible(open);
    // A folded part takes only the height of its row.
    frame->setSizePolicy(QSizePolicy::Preferred, open ? height : QSizePolicy::Maximum);
    finishParts();
  };
  connect(fold, &QToolButton::clicked, this, [this, key, show](bool open) {
    settings_.setValue(key, open);
    show(open);
  });
  fold->setChecked(settings_.flag(key, opened));
  if (!fold->isChecked()) show(false);
}

void TaskPage::addStepper(FlowRow& row, const EpisodeControls& controls) {
  stepper_ = new QWidget(&row);
  auto* layout = new QHBoxLayout(stepper_);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto addNumber = [&](const char* control) {
    ControlWidget& widget = newControl(control, stepper_);
    layout->addWidget(&widget);
    return &widget;
  };
  layout->addWidget(new QLabel("Episode", stepper_));
  addNumber(controls.index)->setFixedWidth(EpisodeWidth);
  layout->addWidget(new QLabel("of", stepper_));
  addNumber(controls.count);
  for (const auto& [arrow, control] :
       {std::pair{Qt::LeftArrow, controls.last}, {Qt::RightArrow, controls.next}}) {
    Control& record = ControlNamed(control);
    auto* button = new QToolButton(stepper_);
    button->setObjectName(control);
    button->setArrowType(arrow);
    button->setToolTip(ToQt(record.help));
    button->setAccessibleName(ToQt(record.label));
    connect(button, &QToolButton::clicked, this, [&record] { Press(record); });
    layout->addWidget(button);
  }
  stepper_->hide();
  row.add(stepper_);
}

// -- Showing --

void TaskPage::refresh(const std::set<Graph*>& changed) {
  for (ControlWidget* control : controls_) control->refresh();
  for (ReadoutStrip* strip : readoutStrips_) strip->refresh();
  if (stepper_ != nullptr) stepper_->setVisible(Trace.EpisodeCount > 1);
  form().refresh();
  for (TableWidget* table : tables_) table->refresh();
  refreshGraphs(changed);
  refreshMore();
}

void TaskPage::refreshGraphs(const std::set<Graph*>& changed) {
  for (GraphWidget* graph : graphs_) {
    if (changed.contains(&graph->graph())) graph->refresh();
  }
}

bool TaskPage::settingsOpen() const {
  return frame_->isOpen();
}

void TaskPage::openSettings(bool open) {
  frame_->setOpen(open);
}

void TaskPage::contextMenuEvent(QContextMenuEvent* event) {
  if (!panel_.help.empty()) MessagePopup(HelpTitle, panel_.help);
  event->accept();
}

void TaskPage::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  for (ReadoutStrip* strip : readoutStrips_) strip->setCompact(height() < LowPage);
}

}  // namespace zelvane
