#include "desktop/pages/model_page.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "desktop/graph/graph_widget.h"
#include "desktop/scheme/rate_table_view.h"
#include "desktop/scheme/scheme_view.h"
#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/side_form.h"
#include "desktop/widgets/text.h"
#include "model/model_store.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char TablePanelName[] = "TableModelPanel";
constexpr int SchemeShare = 10;  // of the page's height, against the response's
constexpr int ResponseShare = 9;
constexpr int HeaderGap = 6;
constexpr int EpisodeWidth = 64;  // pixels

QToolButton* FormButton(const QString& text, const char* command, QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setText(text);
  button->setCheckable(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->setProperty("role", "segment");
  QObject::connect(button, &QToolButton::clicked, button, [button, command] {
    button->setChecked(!button->isChecked());  // shown by refresh() when the program has changed the form
    if (MenuItem* item = FindMenu(command)) PressMenu(*item);
  });
  return button;
}

bool TableShows() {
  const Panel* table = FindPanel(TablePanelName);
  return table != nullptr && table->visible;
}

}  // namespace

ModelPage::ModelPage(Panel& panel, QWidget* parent) : TaskPage(panel, parent) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 8, 0, 6);
  layout->setSpacing(10);
  auto* splitter = new QSplitter(Qt::Vertical, this);
  splitter->setChildrenCollapsible(false);
  splitter->addWidget(makeScheme());
  splitter->addWidget(makeResponse());
  splitter->setSizes({100 * SchemeShare, 100 * ResponseShare});
  splitter->setStretchFactor(0, SchemeShare);
  splitter->setStretchFactor(1, ResponseShare);
  settings_ = new SideForm(panel, this);
  layout->addWidget(splitter, 1);
  layout->addWidget(settings_);
}

ControlWidget* ModelPage::add(QHBoxLayout* row, const char* control, int stretch) {
  Control* record = FindControl(control);
  if (record == nullptr) return nullptr;
  controls_.push_back(new ControlWidget(*record, this));
  row->addWidget(controls_.back(), stretch);
  return controls_.back();
}

QWidget* ModelPage::makeScheme() {
  auto* part = new QWidget(this);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(HeaderGap);
  auto* header = new QHBoxLayout;
  header->setSpacing(8);
  header->addWidget(makeFormSwitch());
  title_ = add(header, "ModelTitle", 1);
  for (const char* control : {"GetGraphModel", "SetGraphModel", "ClearTable"}) {
    tableCommands_.push_back(add(header, control));
  }
  header->addStretch();  // where the title goes out of sight
  add(header, "OpenConductance");
  add(header, "OpenStartState");
  scheme_ = new SchemeView(part);
  table_ = new RateTableView(part);
  forms_ = new QStackedWidget(part);
  forms_->addWidget(scheme_);
  forms_->addWidget(table_);
  layout->addLayout(header);
  layout->addWidget(forms_, 1);
  return part;
}

QWidget* ModelPage::makeFormSwitch() {
  auto* part = new QWidget(this);
  auto* layout = new QHBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  gridButton_ = FormButton("Grid", "FxnMainModel", part);
  tableButton_ = FormButton("Table", "FxnTableModel", part);
  gridButton_->setToolTip("Show the scheme as states on a grid. A run uses this form.");
  tableButton_->setToolTip(
      "Show the scheme as a table of rates between any two states. A run uses this "
      "form.");
  layout->addWidget(gridButton_);
  layout->addWidget(tableButton_);
  return part;
}

QWidget* ModelPage::makeResponse() {
  auto* part = new QWidget(this);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(HeaderGap);
  auto* header = new QHBoxLayout;
  header->setSpacing(4);
  auto* label = SectionLabel("Monitored states", part);
  header->addWidget(label);
  header->addSpacing(6);
  for (int state = 1; state <= MaxStates; ++state) {
    Control& control = ControlNamed(FormatText("StateMonitored[%d]", state));
    monitors_.push_back(new ControlWidget(control, part, ControlWidget::Look::Chip));
    header->addWidget(monitors_.back());
  }
  header->addStretch();
  addEpisodes(header);
  add(header, "RunText");
  add(header, "SimRefresh");
  graph_ = new GraphWidget(GraphNamed("MainPanel"), part);
  layout->addLayout(header);
  layout->addWidget(graph_, 1);
  return part;
}

/// Steps through the episodes of a recording.
void ModelPage::addEpisodes(QHBoxLayout* header) {
  episodes_ = new QWidget(this);
  auto* row = new QHBoxLayout(episodes_);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(new QLabel("Episode", episodes_));
  ControlWidget* index = add(row, "EpisodeIndex");
  if (index != nullptr) index->setFixedWidth(EpisodeWidth);
  row->addWidget(new QLabel("of", episodes_));
  add(row, "EpisodeCount");
  for (const auto& [arrow, control] :
       {std::pair{Qt::LeftArrow, "LastSection"}, {Qt::RightArrow, "NextSection"}}) {
    Control& record = ControlNamed(control);
    auto* button = new QToolButton(episodes_);
    button->setArrowType(arrow);
    button->setToolTip(ToQt(record.help));
    button->setAccessibleName(ToQt(record.label));
    connect(button, &QToolButton::clicked, this, [&record] { Press(record); });
    row->addWidget(button);
  }
  episodes_->hide();
  header->addWidget(episodes_);
}

void ModelPage::refresh(const std::set<Graph*>& changed) {
  const bool table = TableShows();
  gridButton_->setChecked(!table);
  tableButton_->setChecked(table);
  forms_->setCurrentIndex(table ? 1 : 0);
  if (table)
    table_->refresh();
  else
    scheme_->refresh();
  for (ControlWidget* control : controls_) control->refresh();
  // The table's commands take the place of the title, so that its rows have the height.
  title_->setVisible(!table);
  for (ControlWidget* command : tableCommands_) command->setVisible(table);
  for (ControlWidget* monitor : monitors_) {
    monitor->refresh();
    // A state that is off and not monitored has nothing to show.
    const auto state = static_cast<std::size_t>(monitor->control().index);
    monitor->setVisible(table || Model.StateOn[state] != 0 || monitor->control().number != 0.0);
  }
  episodes_->setVisible(Trace.EpisodeCount > 1);
  settings_->form().refresh();
  if (changed.contains(&graph_->graph())) graph_->refresh();
}

}  // namespace zelvane
