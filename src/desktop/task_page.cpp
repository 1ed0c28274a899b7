#include "desktop/task_page.h"

#include <QContextMenuEvent>

#include "desktop/model_page.h"
#include "desktop/stimulus_page.h"

namespace zelvane {

void TaskPage::contextMenuEvent(QContextMenuEvent* event) {
  if (!panel_.help.empty()) MessagePopup(HelpTitle, panel_.help);
  event->accept();
}

TaskPage* MakeTaskPage(Panel& panel, QWidget* parent) {
  if (panel.name == "MainPanel") return new ModelPage(panel, parent);
  if (panel.name == "StimulusPanel") return new StimulusPage(panel, parent);
  return nullptr;
}

}  // namespace zelvane
