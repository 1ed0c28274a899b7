#include "desktop/pages/model_page.h"

#include <QHBoxLayout>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "desktop/scheme/rate_table_view.h"
#include "desktop/scheme/scheme_view.h"
#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/flow_row.h"
#include "desktop/widgets/side_form.h"
#include "desktop/widgets/text.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char TablePanelName[] = "TableModelPanel";
constexpr int SchemeShare = 10;  // share of the page's height, relative to the response's
constexpr int ResponseShare = 9;
constexpr int ChipGap = 3;  // pixels

QToolButton* NewFormButton(const QString& text, const char* command, QWidget* parent) {
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

ModelPage::ModelPage(Panel& panel, Settings& settings, QWidget* parent) : TaskPage(panel, settings, parent) {
  addScheme();
  addResponse();
  finishParts();
  add(foot(), "MainHelp");
  foot().addStretch();
}

void ModelPage::addScheme() {
  const Part part = addPart(SchemeShare);
  addFold(part, {});
  part.row->add(newFormSwitch(part.row));
  title_ = &add(*part.row, "ModelTitle");
  title_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  for (const char* control : {"GetGraphModel", "SetGraphModel", "ClearTable", "QuitTable"}) {
    tableCommands_.push_back(&add(*part.row, control));
  }
  part.row->addStretch();
  add(*part.row, {"OpenConductance", "OpenStartState", "OpenConstraints", "OpenLoops"});
  scheme_ = new SchemeView(this);
  table_ = new RateTableView(this);
  forms_ = new QStackedWidget(this);
  forms_->addWidget(scheme_);
  forms_->addWidget(table_);
  part.body->addWidget(forms_, 1);
}

QWidget* ModelPage::newFormSwitch(QWidget* parent) {
  auto* part = new QWidget(parent);
  auto* layout = new QHBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  gridButton_ = NewFormButton("Grid", "FxnMainModel", part);
  tableButton_ = NewFormButton("Table", "FxnTableModel", part);
  gridButton_->setToolTip("Show the scheme as states on a grid. A run uses this form.");
  tableButton_->setToolTip(
      "Show the scheme as a table of rates between any two states. A run uses this "
      "form.");
  layout->addWidget(gridButton_);
  layout->addWidget(tableButton_);
  return part;
}

void ModelPage::addResponse() {
  const Part part = addPart(ResponseShare);
  part.row->setGap(ChipGap);
  addTitle(*part.row, "Monitored states");
  for (int state = 1; state <= MaxStates; ++state) {
    const std::string control = FormatText("StateMonitored[%d]", state);
    monitors_.push_back(&add(*part.row, control.c_str(), ControlWidget::Look::Chip));
  }
  part.row->addStretch();
  addStepper(*part.row, {"EpisodeIndex", "EpisodeCount", "LastSection", "NextSection"});
  add(*part.row, {"RunText", "SimRefresh"});
  addGraph(part, GraphNamed(MainPanelName));
}

void ModelPage::refreshMore() {
  const bool table = TableShows();
  gridButton_->setChecked(!table);
  tableButton_->setChecked(table);
  forms_->setCurrentIndex(table ? 1 : 0);
  if (table)
    table_->refresh();
  else
    scheme_->refresh();
  // The table's commands replace the title, to leave more height to its rows.
  title_->setVisible(!table);
  for (ControlWidget* command : tableCommands_) command->setVisible(table);
  for (ControlWidget* monitor : monitors_) {
    // A state that is off and not monitored has nothing to show.
    const auto state = Index(monitor->control().index);
    monitor->setVisible(table || Model.StateOn[state] != 0 || monitor->control().number != 0.0);
  }
}

}  // namespace zelvane
